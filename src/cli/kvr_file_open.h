#pragma once
// Opening a data file for the commands that read one. The same checks as the desktop program
// makes before its load dialog (the file opens, its head is a valid configuration, the head
// reads), with messages for a terminal and the exit status each failure calls for.

#include <string>

#include "data/kvr_data.h"

namespace rm::cli {

// The message of a file whose head is not a data file's head.
inline constexpr const char* kNotKvrFileMessage = "The file is not a valid Kvr file";

enum class OpenOutcome {
    Ok,
    CannotOpen,  // missing, a folder, or not readable
    NotKvrFile,  // opened, but the head fails validation or does not read
};

struct OpenResult {
    OpenOutcome outcome = OpenOutcome::Ok;
    std::string message;  // empty when Ok

    bool ok() const { return outcome == OpenOutcome::Ok; }
};

// Opens `path` into `data`, validates it and reads its head with the record counts. The file
// stays open on success so that profiles can be read; the cache is set to one slot, since the
// commands read at most one profile.
OpenResult OpenKvrFile(const std::string& path, CKvrData& data);

}  // namespace rm::cli
