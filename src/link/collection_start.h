#pragma once
// Switching the instrument to binary output and starting it sending profiles. Both dialogues
// differ in pulse-coherent mode, where the instrument answers in its own way.

#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

namespace rm {

constexpr const char* kStartErrorTitle = "Start Data Collection Error";
constexpr const char* kStartErrorText =
    "Failed to start Kvr.\nAveraging Interval may be too short.\nIncreasing the Averaging Interval or "
    "reducing the profiling range may solve this problem.";
constexpr const char* kStartFailedText = "Failed to start Kvr.";
constexpr const char* kPcAveragingTooShortText =
    "Averaging interval is too short.\nIncrease averaging interval or reduce profiling range";

// "OF Binary", then "Setup", each confirmed with "OK"; in pulse-coherent mode the instrument
// first prints up to a 'U'. 1, or 0: after "Failed to start Kvr. Please try again." when the
// instrument stays silent or "Setup" is not confirmed, silently when "OF Binary" is answered
// without "OK".
int SetBinaryOutput(PromptDialogue& dialogue, bool pcMode, RawLog* raw = nullptr);

// "Start", then waits for "OK". Out of pulse-coherent mode an "ERROR" or no answer opens the
// "Start Data Collection Error" box with the fixed text and what the instrument sent; in
// pulse-coherent mode "ERROR" gives the averaging interval message and no answer "Failed to
// start Kvr. Please try again.". 1 when collecting, else 0.
int StartCollection(PromptDialogue& dialogue, bool pcMode, RawLog* raw = nullptr);

}  // namespace rm
