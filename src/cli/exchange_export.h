#pragma once
// The flow data exchange files of one data file from the command line: the data set is computed
// to its last profile first, so that the measurement is final.

#include <string>

#include "cli/processing_session.h"

namespace rm::cli {

// A .fdx holding the one measurement: head, block, tail.
bool ExportFdxFile(ProcessingSession& session, const std::string& out);
// A .fpx of the measurement, created anew.
bool ExportFpxFile(ProcessingSession& session, const std::string& out);

}  // namespace rm::cli
