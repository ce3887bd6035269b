#pragma once
// The "Ping Settings" dialog's transfer: blanking distance, cell size, lag, pulse length and
// the number of bottom pings go to the instrument one command each, and the operation record
// is read back so the document sees what the instrument made of them.

#include "data/kvr_data.h"
#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

#include <string>
#include <vector>

namespace rm {

// The dialog's values: the first four are the document's ping fields in hundredths, shown
// and sent as the field divided by 100.
struct PingSettings {
    double pulseLength = 0.0;
    double blankingDistance = 0.0;
    double cellSize = 0.0;
    double lag = 0.0;
    int bottomPings = 0;
};

constexpr const char* kSetCbdFailureText = "Set CBD command failed";
constexpr const char* kSetCcsFailureText = "Set CCS command failed";
constexpr const char* kSetCpgFailureText = "Set CPG command failed";
constexpr const char* kSetCplFailureText = "Set CPL command failed";
constexpr const char* kSetNbpFailureText = "Set NBP command failed";

// The five commands in the order they are sent: "cbd set %.2f", "ccs set %.2f",
// "cpg set %.2f", "cpl set %.2f", "nbp %d".
std::vector<std::string> PingSettingCommands(const PingSettings& settings);

// Wakes the instrument (a KVR or Hullstar only), sends the five commands, each waiting for
// "OK" for 3000 ms, a failed one shown with its message while the next still goes out, then
// reads the operation record back. 1 when everything went through; 0 otherwise.
int TransmitPingSettings(PromptDialogue& dialogue, const PingSettings& settings, CKvrData& kvr,
                         RawLog* raw = nullptr);

}  // namespace rm
