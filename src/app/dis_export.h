#pragma once
// The .dis file of a document: the full recomputation of its data set with a line per profile,
// in the units of the application's "Unit System" and with its "SignificantDigits".

#include <string>

#include "app/survey_document.h"
#include "processing/dis_file.h"

namespace rm {

constexpr const char* kWriteFileError = "Error writing to file";

// The head of the document's per-profile discharge text: data file name, start time, track and
// velocity references, and the application's unit system and significant digits.
DisFileHead DisFileHeadOf(const CSurveyKVRDoc& document, AppSettings& app);

// Runs the recomputation with a per-profile discharge text of head `head` written to `path`;
// "Error writing to file" and false when it cannot be written.
bool WriteDischargeText(CSurveyKVRDoc& document, const DisFileHead& head, UserPrompt& prompt, const std::string& path);

// Writes the .dis at `path`; "Error writing to file" and false when it cannot be written.
bool ExportDisFile(CSurveyKVRDoc& document, AppSettings& app, UserPrompt& prompt, const std::string& path);

}  // namespace rm
