#pragma once
// The check of each device of the "Systems" dialog by really talking to it: the instrument
// (wake-up and its two records), the instrument's own GPS receiver, an external GPS receiver
// and an echo sounder. Each check ends in a state of the dialog's list and the plain words that
// tell a person what is wrong with a cable or a receiver. Nothing here ends the dialog: every
// failure is a state and a text.

#include "data/nmea_echo_depth.h"
#include "data/node_tree.h"
#include "data/user_prompt.h"
#include "link/prompt_dialogue.h"
#include "link/serial_port.h"

#include <cstdint>
#include <string>

namespace rm {

// The rows of the dialog, in their order.
enum ConnectionDevice : int {
    kDeviceKvr = 0,
    kDeviceInternalGps = 1,
    kDeviceExternalGps = 2,
    kDeviceEchoSounder = 3,
};
constexpr int kConnectionDeviceCount = 4;

enum class ConnectionState { Checking, Unchecked, Found, Invalid };

// "KVR", "Internal GPS", "External GPS", "Echo Sounder".
const char* ConnectionDeviceName(int device);
// The text of a state in the list ("Checking", "click here to check", ...).
const char* ConnectionStateText(ConnectionState state);
// What the echo sounder's row shows while its check runs.
constexpr const char* kVerifyingText = "Verifying";

// The line under the list for the automatic verification setting.
const char* VerificationLineText(bool automaticOn);

// The trouble-shooting box of a row: its title, and the question that offers another try.
std::string TroubleShootingTitle(int device);
std::string RetryQuestion(int device);

// Closing the dialog with both GPS sources chosen is refused with this box.
constexpr const char* kGpsConflictTitle = "GPS Input Conflict";
constexpr const char* kGpsConflictText =
    "Only one source of GPS information is permitted.\nEither disable the external or internal GPS.";
bool GpsChoiceConflicts(bool externalChosen, bool internalChosen);

// Results of a check.
constexpr int kCheckFailed = 0;
constexpr int kCheckFound = 1;
constexpr int kCheckNoPort = 4;

struct CheckOutcome {
    int result = kCheckFailed;
    ConnectionState state = ConnectionState::Unchecked;
    std::string text;  // the trouble-shooting text
};

// What the instrument's check learned, needed by the internal GPS check.
struct KvrCheckFacts {
    bool checked = false;              // the last instrument check found it
    bool gpsInstalled = false;         // the configuration says a receiver is inside
    bool internalGpsEnabled = false;   // the user setup has it switched on
};

// How long each receiver is listened to.
constexpr uint32_t kCheckListenMs = 5000;

// Checks the instrument on the dialogue's port (none: no port chosen): wake-up, "Get CONF",
// "Get USER"; `facts` is refreshed from the decoded records.
CheckOutcome CheckKvr(PromptDialogue* dialogue, KvrCheckFacts& facts);

// Listens to an external receiver (none or closed: no port chosen) for a fix.
CheckOutcome CheckExternalGps(SerialPort* port, UserPrompt* progress, uint32_t limitMs = kCheckListenMs);

// Makes the instrument repeat its receiver's sentences and listens to them. The instrument must
// have been found by CheckKvr first, with a receiver installed and switched on.
CheckOutcome CheckInternalGps(PromptDialogue* dialogue, const KvrCheckFacts& facts, UserPrompt* progress,
                              uint32_t limitMs = kCheckListenMs);

// Listens to an echo sounder (none or closed: no port chosen) for a depth.
CheckOutcome CheckEchoSounder(SerialPort* port, const EchoSounderSettings& settings, UserPrompt* progress,
                              uint32_t limitMs = kCheckListenMs);

}  // namespace rm
