#include "link/logged_reads.h"

#include "data/byte_io.h"

namespace rm {

namespace {

// Rounds of the echo wait and their sleep, and the limit of the read of the echoed byte.
constexpr int kEchoWaits = 100;
constexpr uint32_t kEchoWaitMs = 5;
constexpr uint32_t kEchoReadLimitMs = 50;
constexpr uint32_t kCharWriteLimitMs = 5;
constexpr uint32_t kAfterCharSleepMs = 5;
// Markers dropped before reading a block length is given up.
constexpr int kMaxDroppedMarkers = 5;

}  // namespace

int DrainReceive(SerialPort& port, uint32_t limitMs, RawLog* raw) {
    uint32_t start = port.TickMs();
    for (;;) {
        int waiting = port.RxCount();
        if (waiting < 0) return -1;
        if (waiting == 0) return 0;
        int c = port.ReadChar();
        if (c >= 0) CopyToRawLog(raw, static_cast<uint8_t>(c));
        if (TicksSince(start, port.TickMs()) > limitMs) return -1;
    }
}

int ReadStringLogged(SerialPort& port, std::string& out, int maxLen, int terminator,
                     uint32_t limitMs, RawLog* raw) {
    int r = port.ReadStringTimed(out, maxLen, terminator, limitMs);
    CopyToRawLog(raw, out);
    return r;
}

int ReadBufferLogged(SerialPort& port, uint8_t* dst, int count, uint32_t limitMs, RawLog* raw) {
    int r = port.ReadBufferTimed(dst, count, limitMs);
    if (raw && r > 0) raw->Write(dst, static_cast<size_t>(r));
    return r;
}

int ReadUntilPattern(SerialPort& port, std::string& buffer, size_t bufferSize,
                     const std::string& pattern, int rounds, DisplayWindow* window, RawLog* raw) {
    bool changed = true;  // the buffer may hold the pattern already
    for (int round = 0; round < rounds; ++round) {
        port.SleepMs(1);
        if (port.RxCount() > 0) {
            int c = port.ReadCharTimed(1);
            if (c >= 0) {
                buffer.push_back(static_cast<char>(c));
                if (window) window->Append(static_cast<char>(c));
                CopyToRawLog(raw, static_cast<uint8_t>(c));
                changed = true;
            }
        }
        if (changed) {
            // Only the end of the buffer can hold a pattern that was not there before.
            size_t from = buffer.size() > pattern.size() + 1 ? buffer.size() - pattern.size() - 1 : 0;
            if (round == 0) from = 0;
            if (buffer.find(pattern, from) != std::string::npos) return 1;
            changed = false;
        }
        if (buffer.size() >= bufferSize) return 0;
    }
    return 0;
}

bool SendCharEchoed(SerialPort& port, char c, char& echo, RawLog* raw) {
    if (port.ClearTxBuffer() < 0) return false;
    if (DrainReceive(port, kDrainLimitMs, raw) != 0) return false;
    if (port.WriteCharTimed(static_cast<uint8_t>(c), kCharWriteLimitMs) < 0) return false;
    port.SleepMs(kAfterCharSleepMs);
    int waits = 0;
    int got;
    do {
        while (port.RxCount() == 0 && waits < kEchoWaits) {
            port.SleepMs(kEchoWaitMs);
            ++waits;
        }
        if (waits > kEchoWaits - 1) return false;
        got = port.ReadCharTimed(kEchoReadLimitMs);
        if (got >= 0) echo = static_cast<char>(got);
    } while (got == kSerialTimeout);
    if (got < 0) return false;  // the port itself failed
    CopyToRawLog(raw, static_cast<uint8_t>(got));
    return true;
}

bool WaitForRxCount(SerialPort& port, int minCount, int maxWaits, uint32_t stepMs) {
    for (int i = 0; i < maxWaits && port.RxCount() < minCount; ++i) port.SleepMs(stepMs);
    return port.RxCount() >= minCount;
}

bool SkipReplyMarker(SerialPort& port, RawLog* raw) {
    if (port.PeekChar() != kReplyMarker) return false;
    int c = port.ReadChar();
    if (c >= 0) CopyToRawLog(raw, static_cast<uint8_t>(c));
    return true;
}

int ReadBlockLength(SerialPort& port, RawLog* raw) {
    uint8_t bytes[2] = {0, 0};
    int have = 0;
    int dropped = 0;
    while (have < 2) {
        int c = port.ReadChar();
        if (c < 0) return -1;
        CopyToRawLog(raw, static_cast<uint8_t>(c));
        if (c == kReplyMarker) {
            if (++dropped >= kMaxDroppedMarkers) return -1;
            continue;
        }
        bytes[have++] = static_cast<uint8_t>(c);
    }
    return ByteReader(bytes, sizeof bytes).u16(0);
}

}  // namespace rm
