#pragma once
// Fetching the instrument's records into the document's CKvrData, with what the document learns
// from each, and sending the user setup back.

#include "data/kvr_data.h"
#include "link/link_state.h"
#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

namespace rm {

constexpr const char* kConfFailureText = "Failed to get the Kvr Sensor Configuration";
constexpr const char* kUserFailureText = "Failed to get the Kvr User Setup Configuration";
constexpr const char* kOperFailureText = "Failed to get the Kvr Operation Configuration";
constexpr const char* kWakeupErrorText = "Error on Wakeup";
constexpr const char* kTransferringUserParametersText = "Transferring User Parameters";
constexpr const char* kTransmitFailureText = "Unable to transmit user settings";

// "Get CONF": the configuration replaces the stored one and is decoded (a record that fails its
// header or ranges counts as not received). CTD and external sensor presence follow the
// record; temperature and salinity sources that were both still unchosen become the CTD's
// when one is installed, else the user's. 1, or 0 after "Failed to get the Kvr Sensor
// Configuration".
int GetConfRecord(PromptDialogue& dialogue, CKvrData& kvr, InstrumentLinkState& state, RawLog* raw = nullptr);

// "Get USER", decoded against the stored configuration: sets BottomTrackMode, PCMode,
// WavesEnabled and the wave set-up. 1, or 0 after "Failed to get the Kvr User Setup
// Configuration".
int GetUserRecord(PromptDialogue& dialogue, CKvrData& kvr, InstrumentLinkState& state, RawLog* raw = nullptr);

// "Get OPER". 1, or 0 after "Failed to get the Kvr Operation Configuration".
int GetOperRecord(PromptDialogue& dialogue, CKvrData& kvr, RawLog* raw = nullptr);

// "Get Druck": the sensor calibration block. 1, or 0 with no message of its own.
int GetDruckRecord(PromptDialogue& dialogue, CKvrData& kvr, RawLog* raw = nullptr);

// 1 when the setup runs the instrument in pulse-coherent mode: the PCMode byte is set or the
// bottom track uses the shallow-water ping.
int RecomputePCMode(const UserSetup& user);

// Wakes the instrument and writes the user setup encoded from the document's records, unless
// the instrument already holds the same one. 1, or 0 after "Error on Wakeup" or "Unable to
// transmit user settings".
int TransmitUserSettings(PromptDialogue& dialogue, const CKvrData& kvr, RawLog* raw = nullptr);

}  // namespace rm
