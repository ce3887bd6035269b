// ripplemark-cli profile FILE.kvr N [--json]: profile N (from 1) of a data file, decoded, with
// its read result.

#include <cstdio>
#include <exception>
#include <memory>
#include <string>

#include "cli/command.h"
#include "cli/json_output.h"
#include "cli/kvr_file_open.h"
#include "cli/profile_view.h"

namespace rm::cli {
namespace {

struct ProfileOptions {
    std::string path;
    long long number = 0;
    bool json = false;
};

int RunProfile(const ProfileOptions& options) {
    try {
        CKvrData data;
        const OpenResult opened = OpenKvrFile(options.path, data);
        if (!opened.ok()) {
            std::fprintf(stderr, "%s\n", opened.message.c_str());
            return kExitBadFile;
        }
        const int count = data.ProfileCount();
        if (options.number < 1 || options.number > count) {
            if (count == 0) {
                std::fprintf(stderr, "Profile %lld is out of range: the file holds no whole profile\n", options.number);
            } else {
                std::fprintf(stderr, "Profile %lld is out of range: the file holds profiles 1 to %d\n",
                             options.number, count);
            }
            return kExitUsage;
        }
        const int index = static_cast<int>(options.number - 1);
        const int result = data.LoadProfile(index, 0);
        if (result != kReadOk && result != kReadBadChecksum) {
            std::fprintf(stderr, "Profile %lld could not be read (read result %d)\n", options.number, result);
            if (options.json) PrintJson({{"number", options.number}, {"read_result", result}}, -1);
            return kExitBadFile;
        }
        if (result == kReadBadChecksum) {
            std::fprintf(stderr, "Profile %lld: the checksum does not match; the values are shown as read\n",
                         options.number);
        }
        const ProfileView view = MakeProfileView(data, data.Slot(0), static_cast<int>(options.number), result);
        if (options.json) {
            PrintJson(ProfileJson(view), -1);  // one line: the arrays would fill pages
        } else {
            const std::string text = FormatProfileText(view);
            std::fwrite(text.data(), 1, text.size(), stdout);
        }
        return kExitOk;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s: %s\n", options.path.c_str(), e.what());
        return kExitBadFile;
    }
}

const CommandRegistration registration{Command{
    "profile",
    "Show profile N (from 1) of a data file (.kvr), decoded, with its read result",
    [](CLI::App& sub) -> std::function<int()> {
        auto options = std::make_shared<ProfileOptions>();
        sub.add_option("FILE", options->path, "The data file")->required();
        sub.add_option("N", options->number, "The profile, from 1")->required();
        sub.add_flag("--json", options->json, "Print one JSON object instead of text");
        return [options] { return RunProfile(*options); };
    }}};

}  // namespace
}  // namespace rm::cli
