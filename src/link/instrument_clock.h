#pragma once
// The instrument's clock: reading its date and time at the command line, and setting them,
// e.g. to the computer's time. The instrument writes dates year first ("2024/05/07") and
// times with seconds ("13:04:59").

#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

#include <ctime>
#include <string>

namespace rm {

struct ClockTime {
    int year = 0, month = 0, day = 0;
    int hour = 0, minute = 0, second = 0;
};

constexpr const char* kClockReadErrorTitle = "Communications Error";
constexpr const char* kClockReadErrorText = "Unable to get system time.";
constexpr const char* kClockWakeErrorText = "Unable to wake up system.";
constexpr const char* kClockDateErrorText = "Unable to set system date.";
constexpr const char* kClockTimeErrorText = "Unable to set system time.";
constexpr const char* kClockSetTitle = "System Time";

// The date of an answer to "Date": "Current date is" is removed, then "%d/%02d/%02d" is read
// (year, month, day), blanks and line ends before the numbers allowed. False when fewer than
// three numbers stand there.
bool ParseDateAnswer(const std::string& text, ClockTime& time);
// The time of an answer to "Time": "Current time is" removed, then "%d:%02d:%02d".
bool ParseTimeAnswer(const std::string& text, ClockTime& time);

// "Date %d/%02d/%02d" and "Time %02d:%02d:%02d".
std::string DateCommand(const ClockTime& time);
std::string TimeCommand(const ClockTime& time);
// "System time has been set to %02d:%02d:%02d %02d/%02d/%d" (time, then month/day/year).
std::string ClockSetText(const ClockTime& time);

// The computer's local time.
ClockTime ComputerClockTime(std::time_t now);

// Wakes the instrument from a break and asks "Date" and "Time". 1 with `time` filled; 0 after
// the "Communications Error" box "Unable to get system time.".
int ReadInstrumentClock(PromptDialogue& dialogue, ClockTime& time, RawLog* raw = nullptr);

// Wakes the instrument from a break and sends the date and the time, each waiting 3000 ms for
// "OK". 1 after the "System Time" box; 0 after the message of the failed step.
int SetInstrumentClock(PromptDialogue& dialogue, const ClockTime& time, RawLog* raw = nullptr);

}  // namespace rm
