// ripplemark-cli batch PATH... [--out DIR] [--track-ref bt|gps] [--velocity-ref kvr|bt|gps]
// [--salinity S] [--declination D] [--no-summary] [--jobs N]: the batch export of a list of data
// files and folders. Progress and messages go to stdout in the order of the list; unless
// --no-summary is given, the discharge summary of the exported files follows as its Copy text.

#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/app_settings.h"
#include "app/summary_list.h"
#include "cli/command.h"
#include "output/batch_export.h"
#include "output/summary_table.h"

namespace rm::cli {
namespace {

// Shows the batch's progress and messages on stdout.
class BatchConsole : public UserPrompt {
public:
    void Message(const std::string& text) override { std::printf("%s\n", text.c_str()); }
    void TitledMessage(const std::string& title, const std::string& text) override {
        std::printf("%s: %s\n", title.c_str(), text.c_str());
    }
    bool AskYesNo(const std::string&) override { return false; }
    std::string AskSavePath(const std::string&, const std::string&, const std::string&) override { return {}; }
    void Progress(int done, int total, const std::string& what) override {
        std::printf("%s %d/%d: %s\n", kBatchExportTitle, done, total, what.c_str());
        std::fflush(stdout);
    }
};

struct BatchOptions {
    std::vector<std::string> paths;
    std::string out;
    int trackReference = -1;
    int velocityReference = -1;
    double salinity = -1.0;
    bool salinityGiven = false;
    double declination = 0.0;
    bool declinationGiven = false;
    bool noSummary = false;
    int jobs = 1;
};

int RunBatch(const BatchOptions& o) {
    BatchExportSettings settings;
    settings.trackReference = o.trackReference;
    settings.velocityReference = o.velocityReference;
    settings.useCurrentSalinity = !o.salinityGiven;
    settings.salinity = o.salinity;
    settings.useCurrentMagneticDeclination = !o.declinationGiven;
    settings.magneticDeclination = o.declination;
    settings.addRecordToDischargeSummary = !o.noSummary;
    settings.jobs = o.jobs;
    if (!o.out.empty()) {
        std::error_code error;
        std::filesystem::create_directories(o.out, error);
        if (!std::filesystem::is_directory(o.out, error)) {
            std::fprintf(stderr, "batch: %s is not a folder that can be written to\n", o.out.c_str());
            return kExitUsage;
        }
        settings.exportToDifferentDirectory = true;
        settings.outputDirectory = o.out;
    }

    // The application's settings are the defaults, as for every command.
    AppSettings app{UserFolders{}};
    SummaryList summary;
    BatchConsole console;
    const BatchExportResult result = RunBatchExport(o.paths, settings, app, &summary, console);
    if (!result.ok) return kExitFailure;
    if (!o.noSummary) {
        SummaryTableOptions table;
        table.unitSystem = app.Get(app_keys::UnitSystem);
        table.significantDigits = app.Get(app_keys::SignificantDigits);
        const std::string text = SummaryCopyText(BuildSummaryTable(summary, table));
        std::fwrite(text.data(), 1, text.size(), stdout);
    }
    return result.failedOutputs == 0 ? kExitOk : kExitFailure;
}

const CommandRegistration registration{Command{
    "batch",
    "Export a list of data files (.kvr) and folders: .T, .GPS, .ECS, .DIS per file and one .fdx",
    [](CLI::App& sub) -> std::function<int()> {
        static const std::map<std::string, int> kTrack{{"bt", 1}, {"gps", 2}};
        static const std::map<std::string, int> kVelocity{{"kvr", 0}, {"bt", 1}, {"gps", 2}};
        auto o = std::make_shared<BatchOptions>();
        sub.add_option("PATH", o->paths, "Data files and folders (a folder gives its .kvr files)")->required();
        sub.add_option("--out", o->out, "Folder for every output (default: beside each data file)");
        sub.add_option("--track-ref", o->trackReference, "Track reference for every file: bt or gps")
            ->transform(CLI::CheckedTransformer(kTrack, CLI::ignore_case));
        sub.add_option("--velocity-ref", o->velocityReference, "Velocity reference for every file: kvr, bt or gps")
            ->transform(CLI::CheckedTransformer(kVelocity, CLI::ignore_case));
        sub.add_option("--salinity", o->salinity, "Salinity (ppt) forced on every file")
            ->check(CLI::Range(0.0, 60.0))
            ->each([o](const std::string&) { o->salinityGiven = true; });
        sub.add_option("--declination", o->declination, "Magnetic declination (degrees) forced on every file")
            ->check(CLI::Range(-180.0, 180.0))
            ->each([o](const std::string&) { o->declinationGiven = true; });
        sub.add_flag("--no-summary", o->noSummary, "Do not add the records to the discharge summary");
        sub.add_option("--jobs", o->jobs, "Files processed at once")->check(CLI::Range(1, 64));
        return [o] { return RunBatch(*o); };
    }}};

}  // namespace
}  // namespace rm::cli
