// Reading speed of a data file: every profile of a 5000-profile, 100-cell, 4-beam recording
// loaded into the cache, against plain fread of the same bytes in chunks of one record.
// Counters: items_per_second (profiles a second) and load_time_ratio (load time over fread
// time of the same bytes).

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "data/kvr_data.h"

namespace {

constexpr int kProfiles = 5000;
constexpr int kCells = 100;
constexpr int kBeams = 4;

struct Recording {
    std::string dir;
    std::string path;
    int64_t headerSize = 0;
    int64_t recordSize = 0;

    Recording() {
        std::string pattern = (std::filesystem::temp_directory_path() / "rm-bench-XXXXXX").string();
        std::vector<char> buffer(pattern.begin(), pattern.end());
        buffer.push_back('\0');
        if (::mkdtemp(buffer.data()) == nullptr) std::abort();
        dir = buffer.data();
        path = dir + "/bench.kvr";
        Write();
    }
    ~Recording() {
        std::error_code ignored;
        std::filesystem::remove_all(dir, ignored);
    }

    void Write() {
        rm::CKvrData out;
        out.conf.type = rm::kConfType;
        out.conf.version = 2;
        out.conf.size = static_cast<uint16_t>(rm::kConfSize);
        out.conf.CPUSoftwareVerNum = 170;
        out.conf.KvrType = 5;
        out.conf.Nbeams = kBeams;
        out.conf.InternalGpsAvailable = 1;
        out.oper.type = 17;
        out.oper.size = static_cast<uint16_t>(rm::kOperSize);
        out.user.type = 18;
        out.user.size = static_cast<uint16_t>(rm::kUserSize);
        out.user.NumberOfCells = kCells;
        out.user.CellSizeCm = 25.0f;
        out.user.BottomTrack = 1;
        out.user.EnableInternalGps = 1;
        if (!out.CreateDataFile(path) || !out.WriteHeader()) std::abort();
        rm::ProfileRecord p;
        p.Resize(kCells, kBeams);
        p.hasBottomTrack = true;
        p.hasGps = true;
        for (int i = 0; i < kProfiles; ++i) {
            p.header.profileNumber = static_cast<uint32_t>(i + 1);
            for (size_t k = 0; k < p.velocity.size(); ++k) {
                p.velocity[k] = static_cast<int16_t>((k * 7 + static_cast<size_t>(i)) % 2000 - 1000);
                p.amplitude[k] = static_cast<uint8_t>(k + static_cast<size_t>(i));
            }
            p.gps.startTime = 100000.0 + i;
            if (!out.WriteProfile(p)) std::abort();
        }
        if (!out.CloseFile()) std::abort();
        rm::CKvrData probe;
        if (!probe.OpenFile(path) || probe.ReadHeader(false) != rm::kReadOk) std::abort();
        headerSize = probe.HeaderSize();
        recordSize = probe.RecordSize();
    }
};

const Recording& TheRecording() {
    static const Recording recording;
    return recording;
}

// One pass of fread over the records in chunks of one record; seconds.
double FreadPass(const Recording& r, std::vector<uint8_t>& buffer) {
    const auto start = std::chrono::steady_clock::now();
    std::FILE* f = std::fopen(r.path.c_str(), "rb");
    if (f == nullptr || fseeko(f, static_cast<off_t>(r.headerSize), SEEK_SET) != 0) std::abort();
    for (int i = 0; i < kProfiles; ++i) {
        if (std::fread(buffer.data(), 1, buffer.size(), f) != buffer.size()) std::abort();
        benchmark::DoNotOptimize(buffer.data());
    }
    std::fclose(f);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void BM_LoadEveryProfile(benchmark::State& state) {
    const Recording& r = TheRecording();
    rm::CKvrData data;
    if (!data.OpenFile(r.path) || data.ReadHeader(false) != rm::kReadOk) std::abort();
    std::vector<uint8_t> buffer(static_cast<size_t>(r.recordSize));
    double loadSeconds = 0.0, freadSeconds = 0.0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i < kProfiles; ++i) {
            if (data.LoadProfile(i, i) != rm::kReadOk) std::abort();
        }
        benchmark::DoNotOptimize(data.Slot(kProfiles - 1).velocity.data());
        loadSeconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.PauseTiming();
        freadSeconds += FreadPass(r, buffer);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kProfiles);
    state.SetBytesProcessed(state.iterations() * kProfiles * r.recordSize);
    state.counters["load_time_ratio"] = freadSeconds > 0.0 ? loadSeconds / freadSeconds : 0.0;
}
BENCHMARK(BM_LoadEveryProfile)->Unit(benchmark::kMillisecond);

void BM_PlainFread(benchmark::State& state) {
    const Recording& r = TheRecording();
    std::vector<uint8_t> buffer(static_cast<size_t>(r.recordSize));
    for (auto _ : state) FreadPass(r, buffer);
    state.SetItemsProcessed(state.iterations() * kProfiles);
    state.SetBytesProcessed(state.iterations() * kProfiles * r.recordSize);
}
BENCHMARK(BM_PlainFread)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
