#include "link/instrument_options.h"

#include "link/logged_reads.h"
#include "link/variable_structure.h"

#include <vector>

namespace rm {

namespace {

constexpr int kShortAnswerLength = 79;
constexpr uint32_t kShortAnswerLimitMs = 100;

// The option commands' answer: at least ten bytes within 600 waits of 5 ms, then lines.
constexpr int kOptionAnswerMinBytes = 10;
constexpr int kOptionAnswerWaits = 600;
constexpr int kOptionLineLength = 1023;
constexpr uint32_t kOptionLineLimitMs = 1000;
constexpr uint32_t kOptionFlushLimitMs = 500;
constexpr int kOkReadTries = 10;

bool Contains(const std::string& text, const char* what) { return text.find(what) != std::string::npos; }

std::string ReadShortAnswer(SerialPort& port, RawLog* raw) {
    std::string answer;
    ReadStringLogged(port, answer, kShortAnswerLength, kLineEnd, kShortAnswerLimitMs, raw);
    return answer;
}

// Sends an option command and waits for the first bytes of its answer; false (after flushing
// what came) when they do not come.
bool SendOptionCommand(PromptDialogue& dialogue, const std::string& command, RawLog* raw) {
    SerialPort& port = dialogue.Port();
    dialogue.SendCommandNoWait(command, raw);
    if (WaitForRxCount(port, kOptionAnswerMinBytes, kOptionAnswerWaits)) return true;
    std::vector<uint8_t> flush(kOptionLineLength);
    ReadBufferLogged(port, flush.data(), kOptionLineLength, kOptionFlushLimitMs, raw);
    return false;
}

// Sends an option command and reads its answer lines until one holds "OK".
bool SendOptionCommandUntilOk(PromptDialogue& dialogue, const std::string& command, RawLog* raw) {
    if (!SendOptionCommand(dialogue, command, raw)) return false;
    std::string line;
    for (int i = 0; i < kOkReadTries; ++i) {
        ReadStringLogged(dialogue.Port(), line, kOptionLineLength, kLineEnd, kOptionLineLimitMs, raw);
        if (Contains(line, "OK")) return true;
    }
    return false;
}

}  // namespace

int QueryBottomTrackAvailable(PromptDialogue& dialogue, RawLog* raw) {
    std::string answer;
    if (!GetVariableFlag(dialogue, "enablebtrack", answer, raw)) {
        dialogue.Prompt().Message(kBottomTrackAvailabilityFailureText);
        return 0;
    }
    return answer == kFlagAnswerNo ? 0 : 1;
}

int QueryOptions(PromptDialogue& dialogue, UserSetup& user, InstrumentLinkState& state, RawLog* raw) {
    SerialPort& port = dialogue.Port();
    dialogue.SendCommandNoWait("bt", raw);
    const std::string bottomTrack = ReadShortAnswer(port, raw);
    if (!Contains(bottomTrack, "Current")) {
        user.BottomTrack = 0;
        state.BottomTrackMode = 0;
    } else {
        user.BottomTrack = 1;
        state.BottomTrackMode = Contains(bottomTrack, "YES") ? 1 : Contains(bottomTrack, "SW_PING") ? 2 : 0;
    }
    if (port.ClearRXBuffer() < 0) return 0;

    dialogue.SendCommandNoWait("enablewaves", raw);
    const std::string waves = ReadShortAnswer(port, raw);
    if (!Contains(waves, "YES") && !Contains(waves, "DIRECTIONAL")) {
        state.WavesEnabled = 0;
        state.Waves = WaveSetup();
    }
    return 1;
}

int ReadPulseCoherentOption(PromptDialogue& dialogue, UserSetup& user, InstrumentLinkState& state, RawLog* raw) {
    if (!SendOptionCommand(dialogue, "pm", raw)) {
        dialogue.Prompt().Message(kKvrCommunicationErrorText);
        return 0;
    }
    std::string answer;
    ReadStringLogged(dialogue.Port(), answer, kOptionLineLength, kLineEnd, kOptionLineLimitMs, raw);
    state.PCModeAvailable =
        !Contains(answer, "ERROR") && (Contains(answer, "Current") || Contains(answer, "PCMode"));
    if (state.PCModeAvailable) {
        const bool on = Contains(answer, "YES");
        state.PCMode = on ? 1 : 0;
        user.PCMode = on ? 1 : 0;
    }
    return 1;
}

int ApplyInstrumentOptions(PromptDialogue& dialogue, const OptionsChoice& choice, RawLog* raw) {
    if (!choice.pcModeChanged && !choice.restoreDefaults) return kOptionsNothingToSend;
    UserPrompt& prompt = dialogue.Prompt();
    const int steps = (choice.pcModeChanged ? 1 : 0) + (choice.restoreDefaults ? 1 : 0) + 1;
    int done = 0;
    auto step = [&](const char* text, const std::string& command) {
        prompt.Progress(done++, steps, text);
        return SendOptionCommandUntilOk(dialogue, command, raw);
    };
    bool ok = true;
    if (choice.pcModeChanged) ok = step(kTransmittingKvrModeText, choice.pcModeOn ? "pm yes" : "pm no");
    if (ok && choice.restoreDefaults) ok = step(kDefaultSettingsText, "def");
    if (ok) ok = step(kSaveSettingsText, "savesetup");
    if (!ok) {
        prompt.Message(kKvrCommunicationErrorText);
        return kOptionsFailed;
    }
    return kOptionsSaved;
}

}  // namespace rm
