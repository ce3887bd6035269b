#pragma once
// The Universal ASCII output of a transect: a head naming the data file, its start, the track
// and velocity references and the unit system; optionally the discharge summary of the whole
// transect; the column titles with their units; then one line per profile (the columns of the
// per-profile discharge text). Numbers are metric or English by the application's
// "Unit System"; missing values print as 32767 unchanged.

#include <string>

#include "app/app_settings.h"
#include "app/survey_document.h"
#include "data/user_prompt.h"

namespace rm {

// Writes the file at `path`. With `withSummary` the data set is computed once for its totals
// before the pass that writes the lines. "Error writing to file" and false on a file error.
bool WriteUniversalAscii(CSurveyKVRDoc& document, AppSettings& app, UserPrompt& prompt, const std::string& path,
                         bool withSummary);

}  // namespace rm
