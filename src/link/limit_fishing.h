#pragma once
// The instrument has no command that tells its limits, so the system asks for a value that is
// far too large and reads the limits out of the error line, e.g. for "cs 9999":
//
//   Cell Size out of range: 0.10 to 4.00 m
//
// The answer counts when it has exactly nine words (split at blanks) and begins with the two
// expected words; the numbers stand at fixed word positions.

#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

#include <string>
#include <vector>

namespace rm {

constexpr const char* kSystemLimitsFailureText = "Failed to get System Limits";

// The words of an answer line, split at blanks; the line end is not a word.
std::vector<std::string> SplitAnswerWords(const std::string& line);

// The cell size limits from an answer: nine words beginning "Cell" "Size", minimum at word 5,
// maximum at word 7 (from 0). False when the form or a number does not fit.
bool ParseCellSizeLimits(const std::string& line, double& minimum, double& maximum);
// The greatest number of cells from an answer: nine words beginning "Number" "of", the
// maximum at word 8. False when the form or the number does not fit.
bool ParseNumberOfCellsLimit(const std::string& line, int& maximum);

// Sends "cs 9999" and reads the limits from the second line that follows. 1, or 0 after
// "Failed to get System Limits" with the outputs unchanged.
int GetCellSizeLimits(PromptDialogue& dialogue, double& minimum, double& maximum, RawLog* raw = nullptr);
// Sends "nc 99999" likewise.
int GetNumberOfCellsLimit(PromptDialogue& dialogue, int& maximum, RawLog* raw = nullptr);

}  // namespace rm
