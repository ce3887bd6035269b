#pragma once
// The GPS receiver inside the instrument: switching it on or off, making the instrument speak
// its sentences on the command line, and reading the declination from them.

#include <cstdint>
#include <string>

#include "link/logged_reads.h"
#include "link/nmea_port_reader.h"
#include "link/prompt_dialogue.h"

namespace rm {

// Limit of each command of the switch sequence.
constexpr uint32_t kInternalGpsCommandLimitMs = 3000;

// Step titles, shown in the display window with "Success" or "Failed" behind them.
constexpr const char* kEnableInternalGpsTitle = "Enable Internal GPS............ ";
constexpr const char* kSaveSetupTitle = "Save Setup..................... ";
constexpr const char* kDisplayGpsOutputTitle = "Display GPS Output.............  ";
constexpr const char* kStepSuccess = "Success";
constexpr const char* kStepFailed = "Failed";

// Texts of the Internal GPS dialog.
constexpr const char* kInternalGpsEnabledText = "Internal GPS is enabled";
constexpr const char* kInternalGpsDisabledText = "Internal GPS is disabled";
constexpr const char* kInternalGpsNotPresentText = "Internal GPS is not present";
constexpr const char* kInternalGpsErrorTitle = "Internal GPS Error";
constexpr const char* kInternalGpsErrorText = "Unable to change internal gps settings";

// The dialog's state line: not present when the instrument carries no receiver, else enabled
// or disabled by the setup's EnableInternalGps.
const char* InternalGpsStateText(bool receiverPresent, bool enabled);

// Sends "GPS yes" or "GPS no", then "SaveSetup", each waiting for "OK" for 3000 ms, with a line
// in `window` (may be null) for each step. The instrument must be awake. 1 on success; 0 at the
// first failed step, which ends the sequence.
int SetInternalGps(PromptDialogue& dialogue, bool on, DisplayWindow* window, RawLog* raw = nullptr);

// Sends "echo 1" so that the instrument repeats its receiver's sentences on the command line.
// 1 when the command's echo was right.
int ShowInternalGpsOutput(PromptDialogue& dialogue, DisplayWindow* window, RawLog* raw = nullptr);

// The declination from the internal receiver: wakes the instrument, sends "echo 1", then reads
// the instrument's line as ReadDeclination does for up to `limitMs`. 1 with `degrees`, else 0.
int ReadInternalDeclination(PromptDialogue& dialogue, uint32_t limitMs, double& degrees, RawLog* raw = nullptr);

}  // namespace rm
