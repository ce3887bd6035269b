#pragma once
// Measurement station files (.dms): the facts of a gauging station that the report shows, one
// "Key=Value" a line, e.g.
//
//   # Station of the spring campaign
//   StationName=Millbrook at Weir Lane
//   StationNumber=04-2231
//   Party=A. Hale, R. Osei
//
// Keys are letters, digits and '_' (a template names them as Collection.<Key>); the value is the
// rest of the line with its surrounding blanks removed. Blank lines and lines that start with
// '#' or ';' are skipped. A CR before the line end is dropped, so files from either platform read
// alike. A line without '=', a key of other characters or a key given twice is an error.

#include <string>

#include "output/report_tree.h"

namespace rm {

// Parses the text of a station file into `fields` in file order. False with `error` (naming
// the line) on the first bad line; `fields` then holds nothing.
bool ParseStationText(const std::string& text, ReportFields& fields, std::string& error);

// Reads and parses a station file; an unreadable file is an error naming the path.
bool ReadStationFile(const std::string& path, ReportFields& fields, std::string& error);

}  // namespace rm
