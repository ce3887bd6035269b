#include "link/prompt_dialogue.h"

#include "link/logged_reads.h"

#include <algorithm>
#include <utility>

namespace rm {

namespace {

// The command line buffer of the dialogue: text, carriage return and a terminating zero.
constexpr size_t kCommandBufferSize = 100;
constexpr uint32_t kSettleMs = 100;            // before anything is done
constexpr uint32_t kPromptWriteLimitMs = 2000;  // the empty line that asks for a fresh prompt
constexpr size_t kPromptBufferSize = 1024;
constexpr int kPromptRounds = 2500;
constexpr int kAttempts = 10;
constexpr uint32_t kSilenceSleepMs = 100;  // one step of the wait for a quiet line
// The acknowledgement wait: one read of a line per second of the caller's limit.
constexpr int kAckLineLength = 99;
constexpr uint32_t kAckReadLimitMs = 1000;

const char* const kBadTransmission = "   <------ Bad Transmission\r";

}  // namespace

PromptDialogue::PromptDialogue(SerialPort& port, UserPrompt& prompt, std::string commandLogPath)
    : port_(port), prompt_(prompt), commandLogPath_(std::move(commandLogPath)) {}

int PromptDialogue::SendCommand(const std::string& command, char promptChar, bool checkPrompt,
                                RawLog* raw) {
    const std::string line = command + '\r';
    if (line.size() + 1 > kCommandBufferSize) return 0;

    CommandLog log(commandLogPath_);
    port_.SleepMs(kSettleMs);
    if (port_.ClearTxBuffer() < 0) {
        prompt_.Message("FAIL TO CLEAR TRANSMIT BUFFER");
        return 0;
    }
    if (DrainReceive(port_, kDrainLimitMs, raw) != 0) {
        prompt_.Message("FAIL TO CLEAR RECEIVE BUFFER");
        return 0;
    }
    if (checkPrompt) {
        port_.WriteStringTimed("\r", kLineEnd, kPromptWriteLimitMs);
        std::string banner;
        if (!ReadUntilPattern(port_, banner, kPromptBufferSize, std::string(1, promptChar),
                              kPromptRounds, nullptr, raw)) {
            prompt_.Message("FAIL TO LOCATE PROMPT");
            return 0;
        }
    }

    int result = 0;
    for (int attempt = 0; attempt < kAttempts && result == 0; ++attempt) {
        // Wait for a quiet line: a step with nothing received ends the wait. A line that never
        // stays quiet for one step holds the dialogue here.
        int noted;
        do {
            port_.SleepMs(kSilenceSleepMs);
            noted = port_.RxCount();
            if (DrainReceive(port_, kDrainLimitMs, raw) != 0) {
                prompt_.Message("FAIL TO CLEAR RECEIVE BUFFER 2");
                return 0;
            }
        } while (noted > 0);

        std::string echo(line.size(), '\0');
        for (size_t i = 0; i < line.size(); ++i) SendCharEchoed(port_, line[i], echo[i], raw);
        // The echo counts up to its first zero, as a text: a character that never came back
        // leaves a zero there and the comparison fails.
        const std::string echoText(echo.c_str());
        log.Write(line);
        log.Write(std::string(1, promptChar) + echoText);
        if (echoText == line) {
            result = 1;
        } else {
            log.Write(kBadTransmission);
        }
    }
    return result;
}

int PromptDialogue::SendCommandNoWait(const std::string& command, RawLog* raw) {
    return SendCommand(command, kInstrumentPrompt, true, raw);
}

int PromptDialogue::SendCommandWaitOk(const std::string& command, uint32_t limitMs, RawLog* raw) {
    if (!SendCommand(command, kInstrumentPrompt, true, raw)) return 0;
    const int rounds = std::max<int>(1, static_cast<int>((static_cast<uint64_t>(limitMs) + 500) / 1000));
    std::string answer;
    std::string piece;
    for (int round = 0; round < rounds; ++round) {
        ReadStringLogged(port_, piece, kAckLineLength, kLineEnd, kAckReadLimitMs, raw);
        answer += piece;
        if (answer.find("OK") != std::string::npos || answer.find("Default") != std::string::npos) {
            return 1;
        }
    }
    ReadStringLogged(port_, piece, kAckLineLength, kLineEnd, kAckReadLimitMs, raw);
    return 0;
}

}  // namespace rm
