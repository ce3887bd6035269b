#pragma once
// The whole sequence behind Collect Data: open the instrument's port again, wake the
// instrument, switch it to binary output, read back its configuration and user setup, size
// the frames, and start it. Each step is reported through the progress of the UserPrompt.

#include "data/kvr_data.h"
#include "data/product.h"
#include "data/user_prompt.h"
#include "link/command_log.h"
#include "link/link_state.h"
#include "link/port_record.h"

#include <string>

namespace rm {

constexpr int kPrepareSteps = 8;
constexpr const char* kWakingUpKvrText = "Waking up KVR";
constexpr const char* kInitializeRecorderText = "Initialize Recorder";
constexpr const char* kSetupForCollectionText = "Setup KVR for Data Collection";
constexpr const char* kVerifySettingsText = "Verify KVR Settings";
constexpr const char* kInitializingBufferText = "Initializing Data Buffer";
constexpr const char* kStartDataCollectionText = "Start Data Collection";
constexpr const char* kInitializePortErrorText = "Error on Initialize Kvr Port";
constexpr const char* kSettingUpErrorText = "Error setting up KVR";
constexpr const char* kSetupForCollectionErrorText = "Error on Setup Kvr For Data Collection";
constexpr const char* kAcquisitionErrorText = "Error during data acquisition";
constexpr const char* kDownLookingOnlyText = " will only operate with DOWN looking systems";

// "Finding KVR on COM%d" with the port number plus 1; a port named only by its device path is
// named by the path.
std::string FindingKvrText(const SerialPortRecord& record);

constexpr int kPrepareStarted = 1;
constexpr int kPrepareFailed = 0;
constexpr int kPrepareStartFailed = -1;  // everything but the start command went well

// Runs the sequence on the record's port. On kPrepareStarted the instrument sends frames of
// state.Sizes; the caller then clears its last GPS position (time -1.0). The command log goes
// to `commandLogPath`.
int PrepareCollection(SerialPortFactory& factory, SerialPortRecord& record, UserPrompt& prompt, CKvrData& kvr,
                      InstrumentLinkState& state, const std::string& commandLogPath = kCommandLogName);

}  // namespace rm
