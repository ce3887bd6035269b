#include "link/terminal.h"

#include <algorithm>
#include <vector>

namespace rm {

namespace {

constexpr int kScreenChunk = 1024;
constexpr uint32_t kWriteLimitMs = 1000;

// Moves what waits on the port to the screen: the number of bytes, or -1 when the port failed.
int ShowWaiting(SerialPort& port, DisplayWindow& screen, RawLog* raw) {
    int waiting = port.RxCount();
    if (waiting <= 0) return waiting < 0 ? -1 : 0;
    std::vector<uint8_t> chunk(static_cast<size_t>(std::min(waiting, kScreenChunk)));
    int got = port.ReadBuffer(chunk.data(), static_cast<int>(chunk.size()));
    if (got < 0) return -1;
    for (int i = 0; i < got; ++i) {
        screen.Append(static_cast<char>(chunk[static_cast<size_t>(i)]));
        CopyToRawLog(raw, chunk[static_cast<size_t>(i)]);
    }
    return got;
}

// Sends the typed bytes; true when the exit key was among them (nothing after it is sent).
bool SendTyped(SerialPort& port, const std::string& typed, const TerminalOptions& options, bool& failed) {
    std::string out;
    auto flush = [&] {
        if (!out.empty() && port.WriteStringTimed(out, kNoTerminator, kWriteLimitMs) < 0) failed = true;
        out.clear();
    };
    for (char ch : typed) {
        const int b = static_cast<uint8_t>(ch);
        if (b == options.exitKey) {
            flush();
            return true;
        }
        if (b == options.breakKey) {
            flush();
            if (port.SendBreak(options.breakMs) < 0) failed = true;
            continue;
        }
        out.push_back(options.lineFeedAsReturn && ch == '\n' ? '\r' : ch);
    }
    flush();
    return false;
}

}  // namespace

int RunTerminal(SerialPort& port, TerminalInput& input, DisplayWindow& screen, const TerminalOptions& options,
                RawLog* raw) {
    bool inputOpen = true;
    uint32_t quietSince = 0;
    for (;;) {
        bool busy = false;
        if (inputOpen) {
            std::string typed;
            inputOpen = input.Poll(typed);
            bool failed = false;
            const bool exit = SendTyped(port, typed, options, failed);
            if (failed) return kTerminalPortFailed;
            if (exit) return kTerminalEnded;
            busy = !typed.empty();
            if (!inputOpen) quietSince = port.TickMs();
        }
        const int shown = ShowWaiting(port, screen, raw);
        if (shown < 0) return kTerminalPortFailed;
        if (shown > 0) {
            busy = true;
            quietSince = port.TickMs();
        }
        if (!inputOpen && TicksSince(quietSince, port.TickMs()) >= options.quietAfterEndMs) return kTerminalEnded;
        if (!busy) port.SleepMs(options.idleSleepMs);
    }
}

}  // namespace rm
