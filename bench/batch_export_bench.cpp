// Batch export speed: 20 simulated recordings of 2000 profiles each, written once into a
// temporary folder, exported (.T, .GPS, .ECS, .DIS per file and one .fdx) with 1 and 2 jobs.
// Counters: seconds_per_file (wall time of a run over the number of files) and items_per_second
// (files a second).

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "app/app_settings.h"
#include "data/user_prompt.h"
#include "output/batch_export.h"
#include "sim/recording_writer.h"

namespace {

namespace fs = std::filesystem;

constexpr int kFiles = 20;
constexpr int kProfiles = 2000;

class QuietPrompt : public rm::UserPrompt {
public:
    void Message(const std::string&) override {}
    bool AskYesNo(const std::string&) override { return false; }
    std::string AskSavePath(const std::string&, const std::string&, const std::string&) override { return {}; }
    void Progress(int, int, const std::string&) override {}
};

struct Recordings {
    std::string dir;
    std::vector<std::string> files;

    Recordings() {
        std::string pattern = (fs::temp_directory_path() / "rm-batch-bench-XXXXXX").string();
        std::vector<char> buffer(pattern.begin(), pattern.end());
        buffer.push_back('\0');
        if (::mkdtemp(buffer.data()) == nullptr) std::abort();
        dir = buffer.data();
        fs::create_directories(dir + "/out");
        for (int i = 0; i < kFiles; ++i) {
            rm::sim::RiverScenario scenario;
            scenario.crossing.profiles = kProfiles;
            scenario.crossing.boatSpeedMs = 0.025;  // 2000 profiles of 1 s across the 60 m river
            scenario.crossing.start.minute = i;
            scenario.gps = rm::sim::GpsSource::External;
            scenario.echoSounder = true;
            scenario.velocityNoiseCms = 2.0;
            scenario.seed = static_cast<uint64_t>(i + 1);
            scenario.outputPath = dir + "/T" + std::to_string(100 + i) + ".kvr";
            rm::RecordingPrompt prompt;
            if (!rm::sim::WriteRiverRecording(scenario, prompt).ok) std::abort();
            files.push_back(scenario.outputPath);
        }
    }
    ~Recordings() {
        std::error_code ignored;
        fs::remove_all(dir, ignored);
    }
};

const Recordings& SharedRecordings() {
    static const Recordings recordings;
    return recordings;
}

void BM_BatchExport(benchmark::State& state) {
    const Recordings& r = SharedRecordings();
    rm::BatchExportSettings settings;
    settings.jobs = static_cast<int>(state.range(0));
    settings.exportToDifferentDirectory = true;
    settings.outputDirectory = r.dir + "/out";
    rm::AppSettings app{rm::UserFolders{}};
    QuietPrompt prompt;
    for (auto _ : state) {
        rm::SummaryList summary;
        const rm::BatchExportResult result = rm::RunBatchExport(r.files, settings, app, &summary, prompt);
        if (result.exported != kFiles) state.SkipWithError("not every file was exported");
        benchmark::DoNotOptimize(summary.Size());
    }
    state.SetItemsProcessed(state.iterations() * kFiles);
    state.counters["seconds_per_file"] = benchmark::Counter(
        static_cast<double>(state.iterations() * kFiles), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_BatchExport)->Arg(1)->Arg(2)->ArgName("jobs")->Unit(benchmark::kSecond)->UseRealTime()->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
