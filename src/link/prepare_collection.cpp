#include "link/prepare_collection.h"

#include "link/collection_start.h"
#include "link/profile_sizes.h"
#include "link/prompt_dialogue.h"
#include "link/record_transfer.h"
#include "link/wake_up.h"

namespace rm {

namespace {

// The wait for the prompt after the wake-up ends at the prompt, or when the line has given
// nothing for this long (the wake-up may have taken the prompt already).
constexpr uint32_t kPromptQuietMs = 500;

void SkipToPrompt(SerialPort& port) {
    for (;;) {
        int c = port.ReadCharTimed(kPromptQuietMs);
        if (c < 0 || c == kInstrumentPrompt) return;
    }
}

}  // namespace

std::string FindingKvrText(const SerialPortRecord& record) {
    if (record.PortIndex < 0 && !record.PortPath.empty()) return "Finding KVR on " + record.PortPath;
    return "Finding KVR on COM" + std::to_string(record.PortIndex + 1);
}

int PrepareCollection(SerialPortFactory& factory, SerialPortRecord& record, UserPrompt& prompt, CKvrData& kvr,
                      InstrumentLinkState& state, const std::string& commandLogPath) {
    int step = 0;
    auto report = [&](const std::string& text) { prompt.Progress(step++, kPrepareSteps, text); };
    auto fail = [&](const char* text) {
        prompt.Message(text);
        prompt.Message(kSettingUpErrorText);
        return kPrepareFailed;
    };

    report(FindingKvrText(record));
    if (ReopenPortRecord(factory, record) != 1 || !record.Port) return fail(kInitializePortErrorText);
    SerialPort& port = *record.Port;
    PromptDialogue dialogue(port, prompt, commandLogPath);

    report(kWakingUpKvrText);
    if (!WakeResultIsKvr(WakeAndReport(dialogue, nullptr))) return fail(kWakeupErrorText);
    SkipToPrompt(port);
    ReadInstrumentVersion(dialogue, kvr.conf.CPUSoftwareVerNum);

    report(kInitializeRecorderText);
    report(kSetupForCollectionText);
    if (!SetBinaryOutput(dialogue, state.PCMode != 0)) return fail(kSetupForCollectionErrorText);

    report(kVerifySettingsText);
    if (!GetConfRecord(dialogue, kvr, state)) return kPrepareFailed;
    if (kvr.conf.SensorOrientation != 0) {
        prompt.Message(std::string(kProgramName) + kDownLookingOnlyText);
        return kPrepareFailed;
    }
    if (!GetUserRecord(dialogue, kvr, state)) return kPrepareFailed;

    report(kInitializingBufferText);
    state.Sizes = ComputeProfileSizes(kvr.conf, kvr.user, state);

    report(kStartDataCollectionText);
    if (!StartCollection(dialogue, state.PCMode != 0)) {
        prompt.Message(kAcquisitionErrorText);
        return kPrepareStartFailed;
    }
    return kPrepareStarted;
}

}  // namespace rm
