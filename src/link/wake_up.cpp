#include "link/wake_up.h"

namespace rm {

namespace {

constexpr size_t kBannerBufferSize = 512;
constexpr int kAnswerLength = 511;
const std::string kPromptText(1, kInstrumentPrompt);
const std::string kEscape = "++++++++++";

// Limits and rounds of the wake-up, in the order they are used.
constexpr uint32_t kFirstDrainLimitMs = 500;
constexpr uint32_t kBlankWriteLimitMs = 500;
constexpr int kAwakeRounds = 1500;
constexpr uint32_t kBreakMs = 200;
constexpr uint32_t kAfterBreakMs = 1000;
constexpr int kBreakBannerRounds = 2000;
constexpr int kCompassRounds = 15000;
constexpr uint32_t kAfterEscapeMs = 500;
constexpr uint32_t kEscapeReturnLimitMs = 1000;
constexpr int kEscapeRounds = 3000;
constexpr uint32_t kSettleAtPromptMs = 2000;
constexpr uint32_t kAnswerLimitMs = 1000;
constexpr uint32_t kSystemTypeLimitMs = 500;
constexpr uint32_t kRestLimitMs = 300;
constexpr uint32_t kSelectionByteLimitMs = 100;
constexpr uint32_t kAfterReportMs = 500;
// The short version question.
constexpr int kVersionLength = 79;
constexpr uint32_t kVersionLimitMs = 300;
constexpr size_t kVersionByteOffset = 4;

// The selection sequence of a non-zero address: 0xF0, 0xF0, 0xE0 and 0xF0 | address.
void SendSelection(SerialPort& port, int address) {
    if (address == 0) return;
    const uint8_t bytes[4] = {0xF0, 0xF0, 0xE0, static_cast<uint8_t>(0xF0 | address)};
    for (uint8_t b : bytes) port.WriteCharTimed(b, kSelectionByteLimitMs);
}

bool Contains(const std::string& text, const char* what) {
    return text.find(what) != std::string::npos;
}

// After a break that brought no prompt: wait out a compass printout, or send the escape.
// kWakeKvr stands for "the prompt came".
int WakeAfterSilentBreak(SerialPort& port, int address, const std::string& banner,
                         DisplayWindow* window, RawLog* raw) {
    // The break banner may have filled its buffer; the last wait gets a buffer of its own.
    std::string more;
    if (Contains(banner, "Compass")) {
        if (!ReadUntilPattern(port, more, kBannerBufferSize, kPromptText, kCompassRounds, window, raw)) {
            return kWakeNoPrompt;
        }
        return kWakeKvr;
    }
    if (DrainReceive(port, kDrainLimitMs, raw) != 0) return kWakeCannotDrain;
    if (port.WriteBuffer(reinterpret_cast<const uint8_t*>(kEscape.data()),
                         static_cast<int>(kEscape.size())) < 0) {
        return kWakeNoPrompt;
    }
    SendSelection(port, address);
    port.SleepMs(kAfterEscapeMs);
    port.WriteStringTimed("\r", kLineEnd, kEscapeReturnLimitMs);
    if (!ReadUntilPattern(port, more, kBannerBufferSize, kPromptText, kEscapeRounds, window, raw)) {
        return kWakeNoPrompt;
    }
    return kWakeKvr;
}

// Brings the instrument to its prompt: kWakeKvr when it is there, else the failure result.
int ReachPrompt(SerialPort& port, int address, DisplayWindow* window, RawLog* raw) {
    std::string banner;
    if (DrainReceive(port, kFirstDrainLimitMs, raw) != 0) return kWakeCannotDrain;
    SendSelection(port, address);
    port.WriteStringTimed(" ", kLineEnd, kBlankWriteLimitMs);
    if (ReadUntilPattern(port, banner, kBannerBufferSize, kPromptText, kAwakeRounds, window, raw)) {
        return kWakeKvr;  // it was awake
    }

    if (DrainReceive(port, kDrainLimitMs, raw) != 0) return kWakeCannotDrain;
    if (port.SendBreak(kBreakMs) < 0) return kWakeBreakFailed;
    SendSelection(port, address);
    port.SleepMs(kAfterBreakMs);
    bool prompt = false;
    if (port.RxCount() > 0) {
        prompt = ReadUntilPattern(port, banner, kBannerBufferSize, kPromptText, kBreakBannerRounds,
                                  window, raw) == 1;
    }
    if (Contains(banner, "SDI-12")) return kWakeSdi12;
    if (!prompt) {
        int r = WakeAfterSilentBreak(port, address, banner, window, raw);
        if (r != kWakeKvr) return r;
    }
    port.SleepMs(kSettleAtPromptMs);
    return kWakeKvr;
}

// One read that takes what follows the answer line, so the next command finds a clean line.
void ReadRest(SerialPort& port, RawLog* raw) {
    std::string rest;
    ReadStringLogged(port, rest, kAnswerLength, kLineEnd, kRestLimitMs, raw);
}

}  // namespace

bool WakeResultIsKvr(int result) { return result == kWakeKvr || result == kWakeHullstar; }

const char* WakeFailureName(int result) {
    switch (result) {
        case kWakeUnknownSystem: return "FAIL_TO_WAKE_UP_INSTRUMENT5";
        case kWakeVerNotSent: return "FAIL_TO_WAKE_UP_INSTRUMENT4";
        case kWakeNoPrompt: return "FAIL_TO_WAKE_UP_INSTRUMENT3";
        case kWakeBreakFailed: return "FAIL_TO_WAKE_UP_INSTRUMENT2";
        case kWakeCannotDrain: return "FAIL_TO_WAKE_UP_INSTRUMENT1";
        case kWakeFailed: return "FAIL_TO_WAKE_UP_INSTRUMENT";
        case kWakeNoResponse: return "NO_RESPONSE_FROM_INSTRUMENT";
        case kWakeZsn: return "INSTRUMENT_IS_ZSN";
        case kWakeSkiffjack: return "INSTRUMENT_IS_SKIFFJACK";
        default: return nullptr;
    }
}

std::string WakeResultText(int result) {
    switch (result) {
        case kWakeFailed: return "Failed to Wake Up Instrument";
        case kWakeKvr: return "KVR in standby mode";
        case kWakeZsn:
            return "ZSN is conected to port\nPlease connect an KVR to this port for correct program "
                   "operation";
        case kWakeSkiffjack:
            return "Skiffjack is conected to port\nPlease connect an KVR to this port for correct "
                   "program operation";
        case kWakeHullstar: return "Hullstar in standby mode";
        default: return "No Response from Instrument";
    }
}

int ClassifyVersionAnswer(const std::string& line) {
    struct Mark {
        const char* text;
        int result;
    };
    // "ZSN6600" before "ZSN": the first hit decides.
    static const Mark kMarks[] = {
        {"ZSN6600", kWakeZsn6600}, {"KVR", kWakeKvr}, {"WQD", kWakeHullstar},
        {"TLM", kWakeSkiffjack},   {"Flow", kWakeFlow}, {"VNQ", kWakeVnq},
        {"ZSN", kWakeZsn},
    };
    for (const Mark& m : kMarks) {
        if (Contains(line, m.text)) return m.result;
    }
    return kWakeUnknownSystem;
}

int WakeInstrument(PromptDialogue& dialogue, int address, DisplayWindow* window, RawLog* raw,
                   std::string* answerLine) {
    SerialPort& port = dialogue.Port();
    if (answerLine) answerLine->clear();
    int reached = ReachPrompt(port, address, window, raw);
    if (reached != kWakeKvr) return reached;

    if (!dialogue.SendCommand("Ver", kInstrumentPrompt, true, raw)) return kWakeVerNotSent;
    SkipReplyMarker(port, raw);
    std::string answer;
    ReadStringLogged(port, answer, kAnswerLength, kLineEnd, kAnswerLimitMs, raw);
    if (answerLine) *answerLine = answer;

    int result = ClassifyVersionAnswer(answer);
    if (result == kWakeSkiffjack) {
        dialogue.SendCommand("systemtype", kInstrumentPrompt, true, raw);
        std::string systemType;
        ReadStringLogged(port, systemType, kAnswerLength, kLineEnd, kSystemTypeLimitMs, raw);
        if (Contains(systemType, "ZSN")) result = kWakeSkiffjackZsn;
    }
    ReadRest(port, raw);
    return result;
}

int WakeAndReport(PromptDialogue& dialogue, RawLog* raw) {
    int result = WakeInstrument(dialogue, 0, nullptr, raw);
    if (const char* name = WakeFailureName(result)) dialogue.Prompt().Message(name);
    dialogue.Port().SleepMs(kAfterReportMs);
    return result;
}

int RenewedWakeUp(PromptDialogue& dialogue, RawLog* raw) {
    dialogue.Port().SendBreak(kBreakMs);
    dialogue.Port().SleepMs(kAfterBreakMs);
    return WakeInstrument(dialogue, 0, nullptr, raw);
}

int ReadInstrumentVersion(PromptDialogue& dialogue, uint8_t& cpuSoftwareVerNum) {
    SerialPort& port = dialogue.Port();
    if (!dialogue.SendCommand("Ver", kInstrumentPrompt, true, nullptr)) return 0;
    SkipReplyMarker(port, nullptr);
    std::string line;
    port.ReadStringTimed(line, kVersionLength, kLineEnd, kVersionLimitMs);
    const bool known = Contains(line, "KVR") || Contains(line, "WQD");
    // A zero byte ends the text, so there is no fifth character to take.
    if (!known || line.size() <= kVersionByteOffset || line[kVersionByteOffset] == '\0') {
        dialogue.Prompt().Message("Error communicating with System");
        return 0;
    }
    cpuSoftwareVerNum = static_cast<uint8_t>(line[kVersionByteOffset]);
    std::string rest;
    port.ReadStringTimed(rest, kVersionLength, kLineEnd, kVersionLimitMs);
    return 1;
}

}  // namespace rm
