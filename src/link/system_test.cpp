#include "link/system_test.h"

#include "link/internal_gps.h"
#include "link/wake_up.h"

#include <cstdio>
#include <memory>

namespace rm {

namespace {

constexpr size_t kStepBufferSize = 65536;
constexpr uint32_t kCommandWriteLimitMs = 1000;
constexpr int kListenChunk = 256;
const char* const kLineEndText = "\r\n";

// Everything shown goes to the log as well; the instrument's chatter of the sensor check goes
// to the log alone.
class TestOutput : public DisplayWindow {
public:
    TestOutput(std::FILE* log, DisplayWindow* window) : log_(log), window_(window) {}
    void Append(char c) override {
        Log(&c, 1);
        if (window_) window_->Append(c);
    }
    void Show(const std::string& text) {
        for (char c : text) Append(c);
    }
    void Log(const char* bytes, size_t count) {
        if (count > 0) std::fwrite(bytes, 1, count, log_);
    }
    DisplayWindow* LogOnly() { return &logOnly_; }

private:
    class LogOnlyWindow : public DisplayWindow {
    public:
        explicit LogOnlyWindow(TestOutput& out) : out_(out) {}
        void Append(char c) override { out_.Log(&c, 1); }

    private:
        TestOutput& out_;
    };

    std::FILE* log_;
    DisplayWindow* window_;
    LogOnlyWindow logOnly_{*this};
};

struct FileCloser {
    void operator()(std::FILE* f) const {
        if (f) std::fclose(f);
    }
};

int RunPromptStep(SerialPort& port, const PromptStep& step, int rounds, TestOutput& out, RawLog* raw) {
    out.Show(step.title);
    port.WriteStringTimed(step.command, '\r', kCommandWriteLimitMs);
    std::string buffer;
    return ReadUntilPattern(port, buffer, kStepBufferSize, std::string(1, kInstrumentPrompt), rounds, &out, raw);
}

// Sends a command that makes the instrument print continuously, keeps what comes for
// `listenMs` in the log, then wakes the instrument, which ends the printing.
int ListenThenWake(PromptDialogue& dialogue, const char* command, uint32_t listenMs, TestOutput& out, RawLog* raw) {
    SerialPort& port = dialogue.Port();
    port.WriteStringTimed(command, '\r', kCommandWriteLimitMs);
    const uint32_t start = port.TickMs();
    uint8_t chunk[kListenChunk];
    for (uint32_t elapsed = 0; elapsed < listenMs; elapsed = TicksSince(start, port.TickMs())) {
        int got = ReadBufferLogged(port, chunk, kListenChunk, listenMs - elapsed, raw);
        if (got < 0) break;  // the port failed: the wake-up below tells
        if (got > 0) out.Log(reinterpret_cast<const char*>(chunk), static_cast<size_t>(got));
    }
    return WakeResultIsKvr(WakeInstrument(dialogue, 0, out.LogOnly(), raw)) ? 1 : 0;
}

}  // namespace

std::string TestLogPath(const std::string& directory, const std::string& deploymentName) {
    std::string path = directory;
    if (!path.empty() && path.back() != '/' && path.back() != '\\') path += '/';
    return path + deploymentName + kTestLogExtension;
}

const std::vector<PromptStep>& SystemTestPromptSteps() {
    static const std::vector<PromptStep> steps = {
        {"System Test.................... \n", "test"},
        {"Show Conf...................... \n", "show conf"},
        {"Show System.................... \n", "show system"},
        {"Show Setup..................... \n", "show setup"},
        {"Show Deploy.................... \n", "show deploy"},
        {"Show Other..................... \n", "show other"},
    };
    return steps;
}

int RunSystemTest(PromptDialogue& dialogue, const std::string& logPath, bool compassInstalled,
                  DisplayWindow* window, RawLog* raw, const SystemTestTiming& timing) {
    std::unique_ptr<std::FILE, FileCloser> log(std::fopen(logPath.c_str(), "ab"));
    if (!log) {
        dialogue.Prompt().TitledMessage(kTestLogErrorTitle, kTestLogErrorText);
        return kSystemTestNoLog;
    }
    TestOutput out(log.get(), window);
    auto finish = [&](bool passed) {
        out.Show(std::string(passed ? kSystemTestSuccess : kSystemTestFailed) + kLineEndText);
        return passed ? kSystemTestPassed : kSystemTestStepFailed;
    };

    for (const PromptStep& step : SystemTestPromptSteps()) {
        if (!RunPromptStep(dialogue.Port(), step, timing.promptRounds, out, raw)) return finish(false);
    }
    out.Show(kCheckingSensorsTitle);
    if (!ListenThenWake(dialogue, "sensor cont", timing.sensorReadMs, out, raw)) return finish(false);
    if (compassInstalled && !ListenThenWake(dialogue, "compass cont", timing.compassReadMs, out, raw)) {
        return finish(false);
    }
    return finish(true);
}

int RunInternalGpsSetup(PromptDialogue& dialogue, DisplayWindow* window, RawLog* raw) {
    auto show = [window](const std::string& text) {
        if (window) {
            for (char c : text) window->Append(c);
        }
    };
    show(kWakingUpSystemTitle);
    const bool awake = WakeResultIsKvr(WakeInstrument(dialogue, 0, nullptr, raw));
    show(std::string(awake ? kStepSuccess : kStepFailed) + kLineEndText);
    if (!awake || SetInternalGps(dialogue, true, window, raw) != 1) return 0;
    return ShowInternalGpsOutput(dialogue, window, raw) == 1 ? 1 : 0;
}

}  // namespace rm
