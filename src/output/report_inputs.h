#pragma once
// What the measurement report takes from a processed data set and from the application's
// settings, beside the discharge record itself.

#include <string>

#include "app/app_settings.h"
#include "app/survey_document.h"
#include "output/report_tree.h"

namespace rm {

// The salinity the computation used (the user's corrected salinity when the sound speed is
// corrected with it, else the salinity input to the instrument), whether the recording holds
// echo sounder data, and the profiles of the measured range that gave no discharge (unreadable,
// or without a total). The document must have been recomputed over its whole range; profiles
// no longer held in its window are not counted.
TransectFacts TransectFactsOf(const CSurveyKVRDoc& document);

// "Unit System", "SignificantDigits" and "UseUsgsRoundingFormat" of the application's General
// node; `reportDate` is left empty.
ReportSettings ReportSettingsOf(const AppSettings& app);

}  // namespace rm
