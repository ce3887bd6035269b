#pragma once
// The log file of an instrument calibration: a file the person names, created anew, opened with
// a head that says what it is and when it was made, and then fed every raw byte of the
// dialogue as a raw log.

#include "data/user_prompt.h"
#include "link/raw_log.h"

#include <ctime>
#include <memory>
#include <string>

namespace rm {

constexpr const char* kCalibrationLogErrorTitle = "Error opening depth log file";
constexpr const char* kCalibrationLogErrorText = "Unable to open logfile - ";

// The head written at the top of a calibration log: the title, the program and the time.
std::string CalibrationLogHead(const std::string& title, std::time_t now);

// Asks `prompt` for a path with `extension` (without the point) and makes `log` the open file
// with its head written: 1. 0 when the person cancels (silently); -1 when the file cannot be
// created (after the box "Error opening depth log file").
int OpenCalibrationLog(UserPrompt& prompt, const std::string& extension, const std::string& title,
                       std::unique_ptr<RawLog>& log);

}  // namespace rm
