// ripplemark-cli info FILE.kvr [--json]: what the load dialog shows of a data file, then the
// text dumps of its configuration, setup and cell table.

#include "cli/data_file_command.h"
#include "cli/file_info.h"
#include "cli/json_output.h"

namespace rm::cli {
namespace {

int ShowInfo(const DataFileOptions& options, CKvrData& data) {
    const KvrFileInfo info = CollectFileInfo(options.path, data);
    if (options.json) {
        PrintJson(FileInfoJson(info));
    } else {
        PrintText(FormatFileInfoText(info));
    }
    return kExitOk;
}

const CommandRegistration registration{DataFileCommand(
    "info", "Show what the load dialog shows of a data file (.kvr) and the dumps of its records",
    [](CLI::App&) -> DataFileShow { return ShowInfo; })};

}  // namespace
}  // namespace rm::cli
