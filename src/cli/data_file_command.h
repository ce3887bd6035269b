#pragma once
// The frame of the commands that show one data file (info, profile): the FILE argument and the
// --json flag, the file opened with the checks of OpenKvrFile, and every failure turned into a
// message and an exit status instead of a crash.

#include <functional>
#include <string>

#include "cli/command.h"
#include "data/kvr_data.h"

namespace rm::cli {

struct DataFileOptions {
    std::string path;
    bool json = false;  // one JSON object instead of text
};

// Shows the opened file; returns the exit status.
using DataFileShow = std::function<int(const DataFileOptions& options, CKvrData& data)>;

// The command `name` with FILE and --json. `addOptions` adds the command's own options (after
// FILE) and returns what shows the file. A file that does not open prints the message of
// OpenKvrFile; a failure of the reader (a count that asks for more memory than there is)
// prints "FILE: what". Both exit with kExitBadFile.
Command DataFileCommand(std::string name, std::string help,
                        std::function<DataFileShow(CLI::App& sub)> addOptions);

}  // namespace rm::cli
