#pragma once
// What the instrument's firmware offers and how it is switched: bottom tracking and waves
// asked when the settings are retrieved, and the pulse-coherent mode of the "KVR Options"
// command with its defaults and saving.

#include "data/instrument_records.h"
#include "link/link_state.h"
#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

namespace rm {

constexpr const char* kBottomTrackAvailabilityFailureText = "Failed to get the Kvr Bottom Track Availability";
constexpr const char* kKvrCommunicationErrorText = "Kvr Communication Error";
constexpr const char* kTransmittingKvrModeText = "Transmitting KVR Mode";
constexpr const char* kDefaultSettingsText = "Default Settings";
constexpr const char* kSaveSettingsText = "Save Settings";

// "enablebtrack": 1 when the firmware offers bottom tracking; 0 when it does not, and after
// "Failed to get the Kvr Bottom Track Availability" when the question failed.
int QueryBottomTrackAvailable(PromptDialogue& dialogue, RawLog* raw = nullptr);

// "bt": the Bottom Track byte of `user` becomes 1 when the answer holds "Current", else 0;
// BottomTrackMode 1 for "YES", 2 for "SW_PING", else 0. "enablewaves": an answer with neither
// "YES" nor "DIRECTIONAL" clears the document's wave fields. 1, or 0 when the receive buffer
// cannot be cleared between the two.
int QueryOptions(PromptDialogue& dialogue, UserSetup& user, InstrumentLinkState& state, RawLog* raw = nullptr);

// "pm": whether pulse-coherent mode can be chosen (PCModeAvailable) and, when it can, whether
// it is on (PCMode and the PCMode byte of `user`). 1, or 0 after "Kvr Communication Error"
// when the instrument does not answer.
int ReadPulseCoherentOption(PromptDialogue& dialogue, UserSetup& user, InstrumentLinkState& state,
                            RawLog* raw = nullptr);

// What the person chose in the options dialog.
struct OptionsChoice {
    bool pcModeChanged = false;
    bool pcModeOn = false;
    bool restoreDefaults = false;
};

constexpr int kOptionsSaved = 1;         // the caller retrieves all settings again
constexpr int kOptionsFailed = 0;        // after "Kvr Communication Error"
constexpr int kOptionsNothingToSend = 2;  // no change and no defaults: nothing was sent

// Sends "pm yes"/"pm no" when the mode changed, "def" when defaults were asked, then
// "savesetup"; each must be answered with "OK". Progress tells each step.
int ApplyInstrumentOptions(PromptDialogue& dialogue, const OptionsChoice& choice, RawLog* raw = nullptr);

}  // namespace rm
