#pragma once
// The per-profile diagnostic text dump: depth, sensor depth, blanking and cell size, the count
// of valid cells, the boat vector, the mean velocity of the top, measured and bottom layers,
// their discharges, and a line per valid cell with its depth and East and North velocity.
// Lines end in carriage return and line feed whatever the platform.

#include <string>

#include "app/survey_document.h"
#include "data/user_prompt.h"
#include "processing/recompute_pass.h"

namespace rm {

// The dump of the profile just processed in `slot` (the working values are its own).
std::string ProfileDumpText(const ProcessingContext& ctx, int item, int slot);

// Every profile of a full pass, one dump after the other, written in binary so the line ends
// stay as they are. "Error writing to file" and false on a file error.
bool WriteProfileDumpFile(CSurveyKVRDoc& document, const std::string& path, UserPrompt& prompt);

}  // namespace rm
