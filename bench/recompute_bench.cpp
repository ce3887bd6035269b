// Speed of the full recomputation: every profile of a 5000-profile, 100-cell, 4-beam recording
// of the virtual river read and processed through the whole chain by the document, against the
// read-only pass over the same file (every profile loaded into the same cache, nothing else).
// The argument is the recorded coordinate system: 2 ENU (processed without a matrix) and 0 beam
// (a matrix built and applied for every profile), both processed in ENU against bottom track.
// Counters: items_per_second (profiles a second) and recompute_to_read_ratio (recompute time
// over the read-only time). Goal: at least 100 000 profiles a second on one core.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "app/survey_document.h"
#include "data/kvr_data.h"
#include "sim/recording_writer.h"

namespace {

constexpr int kProfiles = 5000;
constexpr int kCells = 100;
constexpr int kBeams = 4;

struct Recording {
    std::string dir;
    std::string path;

    explicit Recording(int coordinates) {
        std::string pattern = (std::filesystem::temp_directory_path() / "rm-bench-XXXXXX").string();
        std::vector<char> buffer(pattern.begin(), pattern.end());
        buffer.push_back('\0');
        if (::mkdtemp(buffer.data()) == nullptr) std::abort();
        dir = buffer.data();
        path = dir + "/RECOMP" + std::to_string(coordinates) + ".kvr";
        rm::sim::RiverScenario s;
        s.river.widthM = 3000.0;
        s.river.maxDepthM = 30.0;
        s.crossing.profiles = kProfiles;
        s.crossing.boatSpeedMs = 0.5;
        s.crossing.pitchDeg = 2.0;
        s.crossing.rollDeg = 2.0;
        s.crossing.headingWobbleDeg = 5.0;
        s.instrument.cells = kCells;
        s.instrument.beams = kBeams;
        s.instrument.cellSizeCm = 25;
        s.instrument.coordinateSystem = coordinates;
        s.gps = rm::sim::GpsSource::Internal;
        s.velocityNoiseCms = 2.0;
        s.outputPath = path;
        rm::StderrPrompt prompt;
        if (!rm::sim::WriteRiverRecording(s, prompt).ok) std::abort();
    }
    ~Recording() {
        std::error_code ignored;
        std::filesystem::remove_all(dir, ignored);
    }
};

const Recording& TheRecording(int coordinates) {
    static const Recording enu(2);
    static const Recording beam(0);
    return coordinates == 0 ? beam : enu;
}

// Every profile loaded into a cache of the document's window size; seconds.
double ReadOnlyPass(const std::string& path, int capacity) {
    rm::CKvrData data;
    if (!data.OpenFile(path) || data.ReadHeader(false) != rm::kReadOk) std::abort();
    data.SetCacheCapacity(capacity);
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < data.ProfileCount(); ++i) {
        if (data.LoadProfile(i, i) != rm::kReadOk) std::abort();
    }
    benchmark::DoNotOptimize(data.Slot(0).velocity.data());
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void BM_Recompute(benchmark::State& state) {
    const Recording& r = TheRecording(static_cast<int>(state.range(0)));
    rm::AppSettings app{rm::UserFolders{}};
    rm::StderrPrompt prompt;
    rm::CSurveyKVRDoc doc(app, prompt);
    if (doc.OpenDocument(r.path) != 1 || doc.ProfileCount() != kProfiles) std::abort();
    double recomputeSeconds = 0.0, readSeconds = 0.0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        if (!doc.Recompute()) std::abort();
        benchmark::DoNotOptimize(doc.Measurement().TotalDischarge);
        recomputeSeconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.PauseTiming();
        readSeconds += ReadOnlyPass(r.path, doc.WindowSize());
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kProfiles);
    state.counters["recompute_to_read_ratio"] = readSeconds > 0.0 ? recomputeSeconds / readSeconds : 0.0;
}
BENCHMARK(BM_Recompute)->ArgName("recorded_coordinates")->Arg(2)->Arg(0)->Unit(benchmark::kMillisecond);

void BM_ReadOnlyPass(benchmark::State& state) {
    const Recording& r = TheRecording(2);
    for (auto _ : state) ReadOnlyPass(r.path, rm::kDefaultProfilesHeld);
    state.SetItemsProcessed(state.iterations() * kProfiles);
}
BENCHMARK(BM_ReadOnlyPass)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
