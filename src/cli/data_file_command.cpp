#include "cli/data_file_command.h"

#include <cstdio>
#include <exception>
#include <memory>

#include "cli/kvr_file_open.h"

namespace rm::cli {

namespace {

int ShowDataFile(const DataFileOptions& options, const DataFileShow& show) {
    try {
        CKvrData data;
        const OpenResult opened = OpenKvrFile(options.path, data);
        if (!opened.ok()) {
            std::fprintf(stderr, "%s\n", opened.message.c_str());
            return kExitBadFile;
        }
        return show(options, data);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s: %s\n", options.path.c_str(), e.what());
        return kExitBadFile;
    }
}

}  // namespace

Command DataFileCommand(std::string name, std::string help,
                        std::function<DataFileShow(CLI::App& sub)> addOptions) {
    return Command{std::move(name), std::move(help), [addOptions](CLI::App& sub) -> std::function<int()> {
                       auto options = std::make_shared<DataFileOptions>();
                       sub.add_option("FILE", options->path, "The data file")->required();
                       sub.add_flag("--json", options->json, "Print one JSON object instead of text");
                       DataFileShow show = addOptions(sub);
                       return [options, show] { return ShowDataFile(*options, show); };
                   }};
}

}  // namespace rm::cli
