#include "link/collection_start.h"

#include "link/logged_reads.h"
#include "link/variable_structure.h"

#include <vector>

namespace rm {

namespace {

constexpr uint32_t kWaitStepMs = 5;
// SetBinaryOutput
constexpr int kFirstByteWaits = 300;
constexpr int kAnswerLength = 79;
constexpr uint32_t kAnswerLimitMs = 100;
constexpr int kPcBannerRounds = 500;
constexpr int kSetupAnswerWaits = 500;
constexpr size_t kSetupBufferSize = 4096;
constexpr int kSetupRounds = 5000;
// StartCollection out of pulse-coherent mode
constexpr int kStartRounds = 3000;
constexpr size_t kStartBufferSize = 3000;
constexpr uint32_t kStartCharLimitMs = 5;
// StartCollection in pulse-coherent mode
constexpr int kPcStartMinBytes = 10;
constexpr int kPcStartFirstWaits = 3000;
constexpr int kPcStartSecondWaits = 600;
constexpr int kPcStartLines = 15;
constexpr int kPcStartLineLength = 2999;
constexpr uint32_t kPcStartLineLimitMs = 1000;
// What is read after a failure, to show it or to clear the line.
constexpr int kTailLength = 99;
constexpr uint32_t kShortTailLimitMs = 100;
constexpr uint32_t kLongTailLimitMs = 2000;

bool Contains(const std::string& text, const char* what) { return text.find(what) != std::string::npos; }

std::string ReadTail(SerialPort& port, uint32_t limitMs, RawLog* raw) {
    std::vector<uint8_t> bytes(kTailLength);
    int got = ReadBufferLogged(port, bytes.data(), kTailLength, limitMs, raw);
    return std::string(bytes.begin(), bytes.begin() + (got > 0 ? got : 0));
}

// Reads and drops characters until `wanted` comes, at most `rounds` of them.
void SkipUntilChar(SerialPort& port, char wanted, int rounds, RawLog* raw) {
    for (int i = 0; i < rounds; ++i) {
        int c = port.ReadChar();
        if (c >= 0) CopyToRawLog(raw, static_cast<uint8_t>(c));
        if (c == static_cast<uint8_t>(wanted)) return;
        port.SleepMs(kWaitStepMs);
    }
}

int StartOutOfPcMode(PromptDialogue& dialogue, RawLog* raw) {
    SerialPort& port = dialogue.Port();
    std::string buffer;
    for (int round = 0; round < kStartRounds; ++round) {
        port.SleepMs(kWaitStepMs);
        if (port.RxCount() > 0) {
            int c = port.ReadCharTimed(kStartCharLimitMs);
            if (c >= 0 && buffer.size() < kStartBufferSize) {
                buffer.push_back(static_cast<char>(c));
                CopyToRawLog(raw, static_cast<uint8_t>(c));
            }
        }
        if (Contains(buffer, "OK")) return 1;
        if (Contains(buffer, "ERROR")) {
            buffer += ReadTail(port, kLongTailLimitMs, raw);
            dialogue.Prompt().TitledMessage(kStartErrorTitle, kStartErrorText + buffer);
            return 0;
        }
    }
    buffer += ReadTail(port, kShortTailLimitMs, raw);
    dialogue.Prompt().TitledMessage(kStartErrorTitle, kStartFailedText + buffer);
    return 0;
}

int StartInPcMode(PromptDialogue& dialogue, RawLog* raw) {
    SerialPort& port = dialogue.Port();
    UserPrompt& prompt = dialogue.Prompt();
    if (!WaitForRxCount(port, kPcStartMinBytes, kPcStartFirstWaits, kWaitStepMs) ||
        !WaitForRxCount(port, kPcStartMinBytes, kPcStartSecondWaits, kWaitStepMs)) {
        ReadTail(port, kShortTailLimitMs, raw);
        prompt.Message(kFailedToStartKvrText);
        return 0;
    }
    std::string line;
    for (int i = 0; i < kPcStartLines; ++i) {
        ReadStringLogged(port, line, kPcStartLineLength, kLineEnd, kPcStartLineLimitMs, raw);
        if (Contains(line, "OK")) return 1;
        if (Contains(line, "ERROR")) {
            ReadTail(port, kLongTailLimitMs, raw);
            prompt.Message(kPcAveragingTooShortText);
            return 0;
        }
    }
    ReadTail(port, kLongTailLimitMs, raw);
    prompt.Message(kFailedToStartKvrText);
    return 0;
}

}  // namespace

int SetBinaryOutput(PromptDialogue& dialogue, bool pcMode, RawLog* raw) {
    SerialPort& port = dialogue.Port();
    UserPrompt& prompt = dialogue.Prompt();
    dialogue.SendCommandNoWait("OF Binary", raw);
    if (!WaitForRxCount(port, 1, kFirstByteWaits, kWaitStepMs)) {
        prompt.Message(kFailedToStartKvrText);
        return 0;
    }
    std::string answer;
    ReadStringLogged(port, answer, kAnswerLength, kLineEnd, kAnswerLimitMs, raw);
    SkipReplyMarker(port, raw);
    if (!Contains(answer, "OK")) return 0;

    const int c = port.ReadChar();  // the rest of the answer line
    if (c >= 0) CopyToRawLog(raw, static_cast<uint8_t>(c));
    dialogue.SendCommandNoWait("Setup", raw);
    if (pcMode) SkipUntilChar(port, 'U', kPcBannerRounds, raw);
    if (!WaitForRxCount(port, 1, kSetupAnswerWaits, kWaitStepMs)) {
        prompt.Message(kFailedToStartKvrText);
        return 0;
    }
    std::string buffer;
    if (!ReadUntilPattern(port, buffer, kSetupBufferSize, "OK", kSetupRounds, nullptr, raw)) {
        prompt.Message(kFailedToStartKvrText);
        return 0;
    }
    return 1;
}

int StartCollection(PromptDialogue& dialogue, bool pcMode, RawLog* raw) {
    dialogue.SendCommandNoWait("Start", raw);
    return pcMode ? StartInPcMode(dialogue, raw) : StartOutOfPcMode(dialogue, raw);
}

}  // namespace rm
