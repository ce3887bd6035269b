// ripplemark-cli tree FILE: lists the settings trees stored in any tree file
// (AppSettings.conf, .cfg, .scf, .way, .pmk).

#include <cstdio>
#include <memory>

#include "cli/command.h"
#include "cli/json_output.h"
#include "data/tree_listing.h"

namespace rm::cli {
namespace {

int RunTree(const std::string& path) {
    const TreeFileContents contents = ReadTreeFileForListing(path);
    if (!contents.readable) {
        std::fprintf(stderr, "%s: not a readable tree file: %s\n", path.c_str(), contents.problem.c_str());
        return kExitBadFile;
    }
    PrintText(FormatTreeListing(contents));
    if (!contents.trees.back().complete) {
        std::fprintf(stderr, "%s: the last tree is incomplete\n", path.c_str());
    }
    return kExitOk;
}

const CommandRegistration registration{Command{
    "tree",
    "List the settings trees of a tree file (AppSettings.conf, .cfg, .scf, .way, .pmk)",
    [](CLI::App& sub) -> std::function<int()> {
        auto path = std::make_shared<std::string>();
        sub.add_option("FILE", *path, "The tree file to list")->required();
        return [path] { return RunTree(*path); };
    }}};

}  // namespace
}  // namespace rm::cli
