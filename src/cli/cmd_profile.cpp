// ripplemark-cli profile FILE.kvr N [--json]: profile N (from 1) of a data file, decoded, with
// its read result.

#include <cstdio>
#include <memory>

#include "cli/data_file_command.h"
#include "cli/json_output.h"
#include "cli/profile_view.h"

namespace rm::cli {
namespace {

int ShowProfile(const DataFileOptions& options, CKvrData& data, long long number) {
    const int count = data.ProfileCount();
    if (number < 1 || number > count) {
        if (count == 0) {
            std::fprintf(stderr, "Profile %lld is out of range: the file holds no whole profile\n", number);
        } else {
            std::fprintf(stderr, "Profile %lld is out of range: the file holds profiles 1 to %d\n", number, count);
        }
        return kExitUsage;
    }
    const int result = data.LoadProfile(static_cast<int>(number - 1), 0);
    if (result != kReadOk && result != kReadBadChecksum) {
        std::fprintf(stderr, "Profile %lld could not be read (read result %d)\n", number, result);
        if (options.json) PrintJson({{"number", number}, {"read_result", result}}, -1);
        return kExitBadFile;
    }
    if (result == kReadBadChecksum) {
        std::fprintf(stderr, "Profile %lld: the checksum does not match; the values are shown as read\n", number);
    }
    const ProfileView view = MakeProfileView(data, data.Slot(0), static_cast<int>(number), result);
    if (options.json) {
        PrintJson(ProfileJson(view), -1);  // one line: the arrays would fill pages
    } else {
        PrintText(FormatProfileText(view));
    }
    return kExitOk;
}

const CommandRegistration registration{DataFileCommand(
    "profile", "Show profile N (from 1) of a data file (.kvr), decoded, with its read result",
    [](CLI::App& sub) -> DataFileShow {
        auto number = std::make_shared<long long>(0);
        sub.add_option("N", *number, "The profile, from 1")->required();
        return [number](const DataFileOptions& options, CKvrData& data) {
            return ShowProfile(options, data, *number);
        };
    })};

}  // namespace
}  // namespace rm::cli
