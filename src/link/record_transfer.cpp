#include "link/record_transfer.h"

#include "link/variable_structure.h"
#include "link/wake_up.h"

#include <vector>

namespace rm {

namespace {

void Rederive(CKvrData& kvr) { kvr.derived = DeriveValues(kvr.conf, kvr.oper, kvr.user); }

}  // namespace

int GetConfRecord(PromptDialogue& dialogue, CKvrData& kvr, InstrumentLinkState& state, RawLog* raw) {
    std::vector<uint8_t> image;
    if (!GetVariableStructure(dialogue, "Get CONF", image, raw) ||
        DecodeConf(image.data(), image.size(), kvr.conf) != RecordStatus::Ok) {
        dialogue.Prompt().Message(kConfFailureText);
        return 0;
    }
    Rederive(kvr);
    const bool ctd = kvr.conf.CtdSensorInstalled != 0;
    state.CtdDataPresent = ctd ? 1 : 0;
    state.ExtSensorDataPresent = kvr.conf.ExtSensorInstalled != 0 ? 1 : 0;
    if (state.TemperatureSource == kSourceNotChosen && state.SalinitySource == kSourceNotChosen) {
        state.TemperatureSource = state.SalinitySource = ctd ? kSourceCtd : kSourceUser;
    }
    return 1;
}

int RecomputePCMode(const UserSetup& user) { return (user.PCMode != 0 || user.BottomTrack == 2) ? 1 : 0; }

int GetUserRecord(PromptDialogue& dialogue, CKvrData& kvr, InstrumentLinkState& state, RawLog* raw) {
    std::vector<uint8_t> image;
    if (!GetVariableStructure(dialogue, "Get USER", image, raw) ||
        DecodeUser(image.data(), image.size(), kvr.conf, kvr.user) != RecordStatus::Ok) {
        dialogue.Prompt().Message(kUserFailureText);
        return 0;
    }
    Rederive(kvr);
    state.BottomTrackMode = kvr.derived.bottomTrackMode;
    state.PCMode = RecomputePCMode(kvr.user);
    state.WavesEnabled = kvr.user.PressureTimeSeriesInterval;
    state.Waves = MakeWaveSetup(kvr.user);
    return 1;
}

int GetOperRecord(PromptDialogue& dialogue, CKvrData& kvr, RawLog* raw) {
    std::vector<uint8_t> image;
    if (!GetVariableStructure(dialogue, "Get OPER", image, raw) ||
        DecodeOper(image.data(), image.size(), kvr.conf, kvr.oper) != RecordStatus::Ok) {
        dialogue.Prompt().Message(kOperFailureText);
        return 0;
    }
    Rederive(kvr);
    return 1;
}

int GetDruckRecord(PromptDialogue& dialogue, CKvrData& kvr, RawLog* raw) {
    std::vector<uint8_t> block;
    if (!GetVariableStructure(dialogue, "Get Druck", block, raw) || block.size() < kCalibrationBlockSize) return 0;
    block.resize(kCalibrationBlockSize);
    kvr.calibration = std::move(block);
    return 1;
}

int TransmitUserSettings(PromptDialogue& dialogue, const CKvrData& kvr, RawLog* raw) {
    UserPrompt& prompt = dialogue.Prompt();
    prompt.Progress(0, 1, kTransferringUserParametersText);
    const int system = WakeAndReport(dialogue, raw);
    if (!WakeResultIsKvr(system)) {
        prompt.Message(kWakeupErrorText);
        return 0;
    }
    const std::array<uint8_t, kUserSize> image = EncodeUser(kvr.user, kvr.conf);
    if (!PutVariableStructure(dialogue, system, "USER", image.data(), image.size(), raw)) {
        prompt.Message(kTransmitFailureText);
        return 0;
    }
    return 1;
}

}  // namespace rm
