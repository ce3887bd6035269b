// ripplemark-cli info FILE.kvr [--json]: what the load dialog shows of a data file, then the
// text dumps of its configuration, setup and cell table.

#include <cstdio>
#include <exception>
#include <memory>
#include <string>

#include "cli/command.h"
#include "cli/file_info.h"
#include "cli/json_output.h"
#include "cli/kvr_file_open.h"

namespace rm::cli {
namespace {

struct InfoOptions {
    std::string path;
    bool json = false;
};

int RunInfo(const InfoOptions& options) {
    try {
        CKvrData data;
        const OpenResult opened = OpenKvrFile(options.path, data);
        if (!opened.ok()) {
            std::fprintf(stderr, "%s\n", opened.message.c_str());
            return kExitBadFile;
        }
        const KvrFileInfo info = CollectFileInfo(options.path, data);
        if (options.json) {
            PrintJson(FileInfoJson(info));
        } else {
            const std::string text = FormatFileInfoText(info);
            std::fwrite(text.data(), 1, text.size(), stdout);
        }
        return kExitOk;
    } catch (const std::exception& e) {
        // A file whose counts ask for more than the machine has, or any other failure of the
        // reader, is a file this tool cannot show: say so, never die.
        std::fprintf(stderr, "%s: %s\n", options.path.c_str(), e.what());
        return kExitBadFile;
    }
}

const CommandRegistration registration{Command{
    "info",
    "Show what the load dialog shows of a data file (.kvr) and the dumps of its records",
    [](CLI::App& sub) -> std::function<int()> {
        auto options = std::make_shared<InfoOptions>();
        sub.add_option("FILE", options->path, "The data file")->required();
        sub.add_flag("--json", options->json, "Print one JSON object instead of text");
        return [options] { return RunInfo(*options); };
    }}};

}  // namespace
}  // namespace rm::cli
