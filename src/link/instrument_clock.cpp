#include "link/instrument_clock.h"

#include "link/logged_reads.h"
#include "link/wake_up.h"

#include <cstdio>

namespace rm {

namespace {

constexpr int kAnswerRounds = 2500;
constexpr size_t kLineEndBufferSize = 2;
constexpr size_t kAnswerBufferSize = 260;
constexpr uint32_t kSetLimitMs = 3000;

std::string WithoutLabel(std::string text, const std::string& label) {
    size_t at = text.find(label);
    if (at != std::string::npos) text.erase(at, label.size());
    return text;
}

// Sends `command` and collects the answer up to the prompt: first the end of the echoed line,
// then the answer itself.
std::string AskClock(PromptDialogue& dialogue, const char* command, RawLog* raw) {
    SerialPort& port = dialogue.Port();
    dialogue.SendCommandNoWait(command, raw);
    std::string lineEnd;
    ReadUntilPattern(port, lineEnd, kLineEndBufferSize, "\n", kAnswerRounds, nullptr, raw);
    std::string answer;
    ReadUntilPattern(port, answer, kAnswerBufferSize, std::string(1, kInstrumentPrompt), kAnswerRounds, nullptr, raw);
    return answer;
}

std::string Format(const char* format, int a, int b, int c) {
    char text[64];
    std::snprintf(text, sizeof text, format, a, b, c);
    return text;
}

}  // namespace

bool ParseDateAnswer(const std::string& text, ClockTime& time) {
    const std::string rest = WithoutLabel(text, "Current date is");
    int y = 0, m = 0, d = 0;
    if (std::sscanf(rest.c_str(), "%d/%2d/%2d", &y, &m, &d) != 3) return false;
    time.year = y;
    time.month = m;
    time.day = d;
    return true;
}

bool ParseTimeAnswer(const std::string& text, ClockTime& time) {
    const std::string rest = WithoutLabel(text, "Current time is");
    int h = 0, m = 0, s = 0;
    if (std::sscanf(rest.c_str(), "%d:%2d:%2d", &h, &m, &s) != 3) return false;
    time.hour = h;
    time.minute = m;
    time.second = s;
    return true;
}

std::string DateCommand(const ClockTime& time) { return Format("Date %d/%02d/%02d", time.year, time.month, time.day); }

std::string TimeCommand(const ClockTime& time) {
    return Format("Time %02d:%02d:%02d", time.hour, time.minute, time.second);
}

std::string ClockSetText(const ClockTime& time) {
    char text[96];
    std::snprintf(text, sizeof text, "System time has been set to %02d:%02d:%02d %02d/%02d/%d", time.hour,
                  time.minute, time.second, time.month, time.day, time.year);
    return text;
}

ClockTime ComputerClockTime(std::time_t now) {
    std::tm local{};
    localtime_r(&now, &local);
    ClockTime t;
    t.year = local.tm_year + 1900;
    t.month = local.tm_mon + 1;
    t.day = local.tm_mday;
    t.hour = local.tm_hour;
    t.minute = local.tm_min;
    t.second = local.tm_sec;
    return t;
}

int ReadInstrumentClock(PromptDialogue& dialogue, ClockTime& time, RawLog* raw) {
    ClockTime read;
    const bool ok = WakeResultIsKvr(RenewedWakeUp(dialogue, raw)) &&
                    ParseDateAnswer(AskClock(dialogue, "Date", raw), read) &&
                    ParseTimeAnswer(AskClock(dialogue, "Time", raw), read);
    if (!ok) {
        dialogue.Prompt().TitledMessage(kClockReadErrorTitle, kClockReadErrorText);
        return 0;
    }
    time = read;
    return 1;
}

int SetInstrumentClock(PromptDialogue& dialogue, const ClockTime& time, RawLog* raw) {
    UserPrompt& prompt = dialogue.Prompt();
    const char* failure = nullptr;
    if (!WakeResultIsKvr(RenewedWakeUp(dialogue, raw))) {
        failure = kClockWakeErrorText;
    } else if (!dialogue.SendCommandWaitOk(DateCommand(time), kSetLimitMs, raw)) {
        failure = kClockDateErrorText;
    } else if (!dialogue.SendCommandWaitOk(TimeCommand(time), kSetLimitMs, raw)) {
        failure = kClockTimeErrorText;
    }
    if (failure) {
        prompt.Message(failure);
        return 0;
    }
    prompt.TitledMessage(kClockSetTitle, ClockSetText(time));
    return 1;
}

}  // namespace rm
