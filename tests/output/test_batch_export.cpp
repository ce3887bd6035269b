// The batch export over simulated recordings: per-file outputs, the refusal of an up-looking
// file with its exact message while the run goes on, the .fdx of the list in list order, the
// summary records, the forced salinity, and a parallel run that writes what a serial one does.

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "ascii_test_support.h"
#include "data/user_prompt.h"
#include "output/batch_export.h"
#include "output/fdx_file.h"
#include "sim/recording_writer.h"

namespace rm {
namespace {

namespace fs = std::filesystem;

std::string Slurp(const fs::path& path) { return asciitest::ReadAll(path.string()); }

size_t Occurrences(const std::string& text, const std::string& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

class BatchExport : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        folder_ = fs::temp_directory_path() / ("batch_export_" + std::to_string(::getpid()));
        fs::create_directories(folder_);
        // Names in list order; the second is made up-looking afterwards, the third starts earlier
        // in the day than the first.
        Record("A_morning", 10, true);
        Record("B_up", 11, false);
        Record("C_early", 9, false);
        // The configuration record stands at the start of the file; byte 30 is the sensor
        // orientation (0 down, 1 up). The record has no checksum.
        std::fstream f(Kvr("B_up"), std::ios::in | std::ios::out | std::ios::binary);
        f.seekp(30);
        f.put('\1');
    }
    static void TearDownTestSuite() { fs::remove_all(folder_); }

    static void Record(const std::string& name, int hour, bool sensors) {
        sim::RiverScenario scenario;
        scenario.crossing.profiles = 40;
        scenario.crossing.start.hour = hour;
        if (sensors) {
            scenario.gps = sim::GpsSource::External;
            scenario.echoSounder = true;
        }
        scenario.outputPath = Kvr(name);
        RecordingPrompt prompt;
        const sim::RecordingResult r = sim::WriteRiverRecording(scenario, prompt);
        ASSERT_TRUE(r.ok) << r.error;
    }
    static std::string Kvr(const std::string& name) { return (folder_ / (name + ".kvr")).string(); }
    static std::vector<std::string> List() { return {Kvr("A_morning"), Kvr("B_up"), Kvr("C_early")}; }

    // Runs the batch into a fresh output folder of its own.
    BatchExportResult Run(const std::string& outName, BatchExportSettings settings, RecordingPrompt& prompt,
                          SummaryList* summary = nullptr) {
        const fs::path out = folder_ / outName;
        fs::remove_all(out);
        fs::create_directories(out);
        settings.exportToDifferentDirectory = true;
        settings.outputDirectory = out.string();
        AppSettings app{UserFolders{}};
        return RunBatchExport(List(), settings, app, summary, prompt);
    }

    static fs::path folder_;
};
fs::path BatchExport::folder_;

TEST_F(BatchExport, UpLookingFileIsRefusedWithItsMessageAndTheRunGoesOn) {
    RecordingPrompt prompt;
    SummaryList summary;
    const BatchExportResult result = Run("serial", BatchExportSettings{}, prompt, &summary);
    EXPECT_TRUE(result.ok);
    EXPECT_EQ(result.exported, 2);
    EXPECT_EQ(result.refused, 1);
    EXPECT_EQ(result.failedOutputs, 0);

    const std::vector<std::string> expectedMessages{
        "File: " + Kvr("B_up") +
            "\ncontains data from an up or side looking system.\nData from this file will not be processed.",
        "All files exported"};
    EXPECT_EQ(prompt.messages, expectedMessages);
    EXPECT_EQ(prompt.progressTexts, List());
    EXPECT_EQ(prompt.lastProgressTotal, 3);

    const fs::path out = folder_ / "serial";
    for (const char* stem : {"A_morning", "C_early"}) {
        for (const char* ext : {".T", ".DIS", ".GPS", ".ECS"}) {
            EXPECT_TRUE(fs::exists(out / (std::string(stem) + ext))) << stem << ext;
        }
        EXPECT_GT(fs::file_size(out / (std::string(stem) + ".T")), 0u);
    }
    EXPECT_FALSE(fs::exists(out / "B_up.T"));
    // Only the file with an external GPS has sentences to give.
    EXPECT_NE(Slurp(out / "A_morning.GPS").find("$GP"), std::string::npos);
    EXPECT_EQ(fs::file_size(out / "C_early.GPS"), 0u);

    // One .fdx, named after the first file, with the blocks of the exported files in list order.
    EXPECT_EQ(result.fdxPath, (out / "A_morning.fdx").string());
    const std::string fdx = Slurp(result.fdxPath);
    EXPECT_EQ(fdx.substr(0, FdxHeadText().size()), FdxHeadText());
    EXPECT_EQ(fdx.substr(fdx.size() - FdxTailText().size()), FdxTailText());
    EXPECT_EQ(Occurrences(fdx, "\t\t</Measurement>"), 2u);
    const size_t a = fdx.find("FileName=\"A_morning.kvr\"");
    const size_t c = fdx.find("FileName=\"C_early.kvr\"");
    ASSERT_NE(a, std::string::npos);
    ASSERT_NE(c, std::string::npos);
    EXPECT_LT(a, c);
    EXPECT_EQ(fdx.find("B_up"), std::string::npos);

    // The summary keeps its own order: by the time of day of the start.
    ASSERT_EQ(summary.Size(), 2);
    EXPECT_EQ(fs::path(summary.Get(0)->fileName).filename(), "C_early.kvr");
    EXPECT_EQ(fs::path(summary.Get(1)->fileName).filename(), "A_morning.kvr");
    EXPECT_NE(summary.Get(0)->TotalDischarge, 0.0f);
}

TEST_F(BatchExport, ParallelRunWritesExactlyWhatASerialRunWrites) {
    RecordingPrompt serialPrompt, parallelPrompt;
    SummaryList serialSummary, parallelSummary;
    BatchExportSettings settings;
    settings.jobs = 1;
    Run("jobs1", settings, serialPrompt, &serialSummary);
    settings.jobs = 2;
    Run("jobs2", settings, parallelPrompt, &parallelSummary);

    EXPECT_EQ(serialPrompt.messages, parallelPrompt.messages);
    EXPECT_EQ(serialPrompt.progressTexts, parallelPrompt.progressTexts);
    std::vector<std::string> names;
    for (const fs::directory_entry& e : fs::directory_iterator(folder_ / "jobs1")) {
        names.push_back(e.path().filename().string());
    }
    EXPECT_EQ(names.size(), 9u);  // four outputs of each exported file and the .fdx
    for (const std::string& name : names) {
        EXPECT_EQ(Slurp(folder_ / "jobs1" / name), Slurp(folder_ / "jobs2" / name)) << name;
    }
    ASSERT_EQ(serialSummary.Size(), parallelSummary.Size());
    for (int i = 0; i < serialSummary.Size(); ++i) {
        EXPECT_EQ(serialSummary.Get(i)->fileName, parallelSummary.Get(i)->fileName);
        EXPECT_EQ(serialSummary.Get(i)->TotalDischarge, parallelSummary.Get(i)->TotalDischarge);
    }
}

// A list of only up-looking files gives an .fdx of head and tail; a file that cannot be opened
// is passed over silently while the others are exported.
TEST_F(BatchExport, RefusedAndUnreadableFilesLeaveNothingBehind) {
    BatchExportSettings settings;
    settings.exportToDifferentDirectory = true;
    settings.outputDirectory = (folder_ / "only_up").string();
    fs::create_directories(settings.outputDirectory);
    RecordingPrompt prompt;
    AppSettings app{UserFolders{}};
    const BatchExportResult up = RunBatchExport({Kvr("B_up")}, settings, app, nullptr, prompt);
    EXPECT_EQ(up.refused, 1);
    EXPECT_EQ(Slurp(up.fdxPath), FdxHeadText() + FdxTailText());

    RecordingPrompt quiet;
    SummaryList summary;
    const BatchExportResult missing = RunBatchExport({Kvr("no_such_file"), Kvr("C_early")}, settings, app, &summary, quiet);
    EXPECT_EQ(missing.skipped, 1);
    EXPECT_EQ(missing.exported, 1);
    EXPECT_EQ(quiet.messages, std::vector<std::string>{"All files exported"});
    EXPECT_EQ(summary.Size(), 1);
}

TEST_F(BatchExport, ForcedSalinityChangesTheResultsButNotTheDataFiles) {
    RecordingPrompt kept, forced;
    SummaryList keptSummary, forcedSummary;
    Run("salinity_kept", BatchExportSettings{}, kept, &keptSummary);
    BatchExportSettings settings;
    settings.useCurrentSalinity = false;
    settings.salinity = 35.0;
    Run("salinity_35", settings, forced, &forcedSummary);
    ASSERT_EQ(keptSummary.Size(), 2);
    ASSERT_EQ(forcedSummary.Size(), 2);
    // The recordings were made for fresh water at 15 degC: the sound speed at 35 ppt is higher by
    // 35 x (1.34 - 0.15) = 41.65 m/s, about 2.8 %, and velocities and bottom-track depths scale
    // with it, so both files' discharge grows by more than 2 %.
    for (int i = 0; i < 2; ++i) {
        EXPECT_GT(forcedSummary.Get(i)->TotalDischarge / keptSummary.Get(i)->TotalDischarge, 1.02f) << i;
    }
    EXPECT_FALSE(fs::exists(folder_ / "A_morning.cfg"));
    EXPECT_FALSE(fs::exists(folder_ / "C_early.cfg"));
}

TEST(BatchList, FoldersGiveTheirDataFilesByNameAndFilesStayAsListed) {
    const fs::path dir = fs::temp_directory_path() / ("batch_list_" + std::to_string(::getpid()));
    fs::create_directories(dir / "sub.kvr");
    for (const char* name : {"b.kvr", "a.KVR", "c.pmk", "d.kvr.cfg"}) std::ofstream(dir / name) << "x";
    const std::vector<std::string> list =
        ResolveBatchList({(dir / "c.pmk").string(), dir.string(), (dir / "b.kvr").string()});
    const std::vector<std::string> expected{(dir / "c.pmk").string(), (dir / "a.KVR").string(),
                                            (dir / "b.kvr").string(), (dir / "b.kvr").string()};
    EXPECT_EQ(list, expected);
    fs::remove_all(dir);
}

TEST(BatchList, OutputsGoBesideTheDataFileOrIntoTheOutputFolder) {
    BatchExportSettings settings;
    EXPECT_EQ(BatchOutputPath(settings, "/data/river/T7.KVR", ".DIS"), "/data/river/T7.DIS");
    EXPECT_EQ(BatchFdxPath(settings, {"/data/river/T7.kvr", "/x/T8.kvr"}), "/data/river/T7.fdx");
    settings.exportToDifferentDirectory = true;
    settings.outputDirectory = "/out";
    EXPECT_EQ(BatchOutputPath(settings, "/data/river/T7.kvr", ".T"), "/out/T7.T");
}

}  // namespace
}  // namespace rm
