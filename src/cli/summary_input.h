#pragma once
// How the commands that list transects (summary, report) take in one file: a data file is opened
// and recomputed as `process` does, a .dis file is read back.

#include <functional>
#include <string>

#include "app/summary_list.h"
#include "app/survey_document.h"
#include "cli/processing_session.h"

namespace rm::cli {

// Adds the transect of `path` to `list`. For a data file, `onProcessed` (when given) sees the
// recomputed document before it closes. An exit status; the reason of a failure goes to stderr.
int AddTransectToSummary(const std::string& path, ProcessingOptions options, SummaryList& list,
                         const std::function<void(CSurveyKVRDoc&)>& onProcessed = {});

}  // namespace rm::cli
