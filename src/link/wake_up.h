#pragma once
// Bringing whatever sits on the instrument's port to its command prompt and telling what it is
// from the first line of its answer to "Ver". Only a KVR (2) and a Hullstar (8) let the system
// go on; the sibling families and everything else end the operation that asked.

#include "link/logged_reads.h"
#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

#include <cstdint>
#include <string>

namespace rm {

enum WakeResult : int {
    kWakeUnknownSystem = -6,  // prompt reached, but "Ver" names no known system
    kWakeVerNotSent = -5,     // prompt reached, but "Ver" could not be sent
    kWakeNoPrompt = -4,       // no prompt after all wake-up means
    kWakeBreakFailed = -3,    // the break could not be sent
    kWakeCannotDrain = -2,    // the line cannot be drained
    kWakeSdi12 = -1,          // an SDI-12 instrument answered the break
    kWakeFailed = 0,          // reserved: WakeInstrument never returns it
    kWakeNoResponse = 1,      // reserved: WakeInstrument never returns it
    kWakeKvr = 2,
    kWakeZsn = 3,
    kWakeSkiffjack = 4,
    kWakeFlow = 5,            // the answer contains "Flow"
    kWakeSkiffjackZsn = 6,    // a Skiffjack whose system type contains "ZSN"
    kWakeVnq = 7,
    kWakeHullstar = 8,        // system type "WQD", treated like a KVR everywhere
    kWakeZsn6600 = 10,
};

// True for the two results that let the system work with the instrument: 2 and 8.
bool WakeResultIsKvr(int result);

// The words WakeAndReport shows for a result, or nullptr for the results it shows nothing for.
const char* WakeFailureName(int result);

// The words of the finding dialog for a result.
std::string WakeResultText(int result);

// What the answer line to "Ver" names, in the order that decides: "ZSN6600", "KVR", "WQD",
// "TLM" (given as kWakeSkiffjack; the system type decides between 4 and 6), "Flow", "VNQ",
// "ZSN"; kWakeUnknownSystem for none of them.
int ClassifyVersionAnswer(const std::string& line);

// Wakes the instrument: a blank, then a break, then the escape of ten plus signs, until its
// prompt comes; then asks "Ver" and classifies the answer. A non-zero `address` sends the
// selection sequence after each wake-up means. `answerLine`, when given, receives the answer
// line to "Ver" (empty if it was never read).
int WakeInstrument(PromptDialogue& dialogue, int address, DisplayWindow* window, RawLog* raw,
                   std::string* answerLine = nullptr);

// WakeInstrument with address 0 and no window; shows the failure words of the result if it has
// any, then sleeps 500 ms.
int WakeAndReport(PromptDialogue& dialogue, RawLog* raw);

// A wake-up that starts from a break of its own (200 ms, then 1000 ms of quiet), for dialogues
// that may find the instrument collecting; the break's own result is not looked at.
int RenewedWakeUp(PromptDialogue& dialogue, RawLog* raw);

// Asks "Ver" again and keeps the fifth character of a KVR or Hullstar answer in
// `cpuSoftwareVerNum`: 1. 0 when the command cannot be sent (silently) or the answer is not of
// such a system ("Error communicating with System").
int ReadInstrumentVersion(PromptDialogue& dialogue, uint8_t& cpuSoftwareVerNum);

}  // namespace rm
