#pragma once
// "&Output to File..." of the "Discharge Calculation" dialog for a document: check the fields,
// recompute, and write the .sum file of the measurement.

#include <string>

#include "app/survey_document.h"
#include "output/sum_file.h"
#include "processing/dialog_check.h"

namespace rm {

// The file's inputs from a document's records, settings and measurement, in the application's
// "Unit System" and "SignificantDigits".
SumFileInputs SumFileInputsOf(const CSurveyKVRDoc& document, const AppSettings& app);

// Checks the dialog's fields (a failure is shown with its message and nothing is written),
// recomputes, and writes the file; "Error writing to file" when it cannot be written.
bool ExportSumFile(CSurveyKVRDoc& document, AppSettings& app, UserPrompt& prompt, const std::string& path);

}  // namespace rm
