#pragma once
// Reading everything the User Setup command needs from the instrument, in a fixed order: wake,
// options, configuration, user setup, operating limits, cell limits, the pressure sensor's
// calibration when it has one, and bottom track availability. The first failing step ends the
// sequence; its message has been shown by the step itself.

#include <string>

#include "data/kvr_data.h"
#include "link/link_state.h"
#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

namespace rm {

constexpr const char* kRetrievingSettingsTitle = "Retrieving KVR Settings";
constexpr const char* kInterfacingText = "Interfacing with KVR";
constexpr const char* kKvrOptionsText = "KVR Options";
constexpr const char* kKvrUserConfigurationText = "KVR User Configuration";
constexpr const char* kKvrUserSettingsText = "KVR User Settings";
constexpr const char* kOperationalSettingsText = "Operational Settings";
constexpr const char* kSystemLimitsText = "System Limits";
constexpr const char* kDruckSettingsText = "Druck Settings";
constexpr const char* kBottomTrackSettingsText = "Bottom Track Settings";
constexpr const char* kDownLookingOnlyManualText =
    " will only operate with DOWN looking systems. Please refer to the Ripplemark Manual for instructions on "
    "changing system orientation.";

// The steps, numbered as their failure results are (a failure of step n gives -n).
enum RetrievalStep : int {
    kStepInterfacing = 1,
    kStepOptions = 2,
    kStepConfiguration = 3,
    kStepUserSettings = 4,
    kStepOperational = 5,
    kStepSystemLimits = 6,
    kStepDruck = 7,
    kStepBottomTrack = 8,
};
constexpr int kRetrievalSteps = 8;
constexpr int kRetrievalDone = 1;

// True when the sensor calibration block is to be read: a table-driven pressure sensor (kinds 2
// and 3), firmware above 164 and a configuration record above version 1.
bool NeedsDruckRecord(const InstrumentConf& conf);

// Runs the sequence: kRetrievalDone, or -n for a failure at step n. An instrument that does not
// look down is refused at step 3. Progress shows the title first, then each step's text. The
// bottom track step never fails the sequence: an instrument that cannot say counts as one
// without bottom tracking.
int RetrieveUserSetup(PromptDialogue& dialogue, CKvrData& kvr, InstrumentLinkState& state, RawLog* raw = nullptr);

// The closing line for a person when the sequence failed: which step it stopped at, by the
// step's progress text, e.g. "Retrieving KVR Settings stopped at: Interfacing with KVR".
std::string RetrievalFailureText(int result);

}  // namespace rm
