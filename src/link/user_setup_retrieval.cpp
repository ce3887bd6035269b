#include "link/user_setup_retrieval.h"

#include "link/instrument_options.h"
#include "link/limit_fishing.h"
#include "link/prepare_collection.h"
#include "link/record_transfer.h"
#include "link/wake_up.h"

namespace rm {

namespace {

constexpr uint8_t kMinDruckFirmware = 165;
constexpr uint32_t kPressureRangeUnit = 1000000;

}  // namespace

bool NeedsDruckRecord(const InstrumentConf& conf) {
    const bool tableSensor = conf.ExtPressureSensorInstalled == 2 || conf.ExtPressureSensorInstalled == 3;
    return tableSensor && conf.CPUSoftwareVerNum >= kMinDruckFirmware && conf.version > 1;
}

int RetrieveUserSetup(PromptDialogue& dialogue, CKvrData& kvr, InstrumentLinkState& state, RawLog* raw) {
    UserPrompt& prompt = dialogue.Prompt();
    prompt.Progress(0, kRetrievalSteps, kRetrievingSettingsTitle);
    auto report = [&](RetrievalStep step, const char* text) { prompt.Progress(step - 1, kRetrievalSteps, text); };

    report(kStepInterfacing, kInterfacingText);
    if (!WakeResultIsKvr(WakeAndReport(dialogue, raw))) return -kStepInterfacing;

    report(kStepOptions, kKvrOptionsText);
    if (!QueryOptions(dialogue, kvr.user, state, raw)) return -kStepOptions;

    report(kStepConfiguration, kKvrUserConfigurationText);
    if (!GetConfRecord(dialogue, kvr, state, raw)) return -kStepConfiguration;
    if (kvr.conf.SensorOrientation != 0) {
        prompt.Message(std::string(kProgramName) + kDownLookingOnlyManualText);
        return -kStepConfiguration;
    }

    report(kStepUserSettings, kKvrUserSettingsText);
    if (!GetUserRecord(dialogue, kvr, state, raw)) return -kStepUserSettings;

    report(kStepOperational, kOperationalSettingsText);
    if (!GetOperRecord(dialogue, kvr, raw)) return -kStepOperational;

    report(kStepSystemLimits, kSystemLimitsText);
    if (!GetCellSizeLimits(dialogue, state.MinCellSize, state.MaxCellSize, raw) ||
        !GetNumberOfCellsLimit(dialogue, state.MaxNumberOfCells, raw)) {
        return -kStepSystemLimits;
    }

    if (NeedsDruckRecord(kvr.conf)) {
        report(kStepDruck, kDruckSettingsText);
        if (!GetDruckRecord(dialogue, kvr, raw)) return -kStepDruck;
        kvr.derived.pressureRangeCounts = kvr.conf.PressureRange * kPressureRangeUnit;
    }

    report(kStepBottomTrack, kBottomTrackSettingsText);
    state.BottomTrackAvailable = QueryBottomTrackAvailable(dialogue, raw);
    return kRetrievalDone;
}

std::string RetrievalFailureText(int result) {
    static const char* const kStepTexts[kRetrievalSteps] = {
        kInterfacingText,        kKvrOptionsText,   kKvrUserConfigurationText, kKvrUserSettingsText,
        kOperationalSettingsText, kSystemLimitsText, kDruckSettingsText,        kBottomTrackSettingsText};
    const int step = -result;
    const std::string where = step >= 1 && step <= kRetrievalSteps ? kStepTexts[step - 1] : std::to_string(result);
    return std::string(kRetrievingSettingsTitle) + " stopped at: " + where;
}

}  // namespace rm
