// Throughput of the velocity chain on a full profile (128 cells, 4 beams, recorded in beam
// coordinates, delivered in ENU relative to the bottom track): GetVelocities once per profile,
// and GetProfileValue cell by cell as a contour display asks for it.

#include <benchmark/benchmark.h>

#include <vector>

#include "processing/discharge_data.h"
#include "processing/processing_context.h"
#include "processing/processing_steps.h"

namespace {

struct ChainData {
    rm::CKvrData data;
    std::vector<rm::SlotResults> slots;
    rm::RunningState state;
    rm::ProcessingSettings settings;
    rm::CDischargeData discharge;
    rm::ProfileWorkingValues working;
    rm::ProcessingContext ctx{data, slots, state, settings, discharge, working};

    ChainData() {
        data.conf.Nbeams = 4;
        data.conf.TransformationMatrix = {1024, -1024, 0, 0, 0, 0, 1024, -1024, 512, 512, 512, 512, 512, 512, -512, -512};
        data.user.NumberOfCells = 128;
        data.user.CellSizeCm = 25.0f;
        data.user.BlankDistance = 25;
        data.user.AveragingInterval = 1;
        data.user.CoordinateSystem = rm::kCoordBeam;
        data.user.BottomTrack = 1;
        data.derived = rm::DeriveValues(data.conf, data.oper, data.user);
        data.SetCacheCapacity(1);
        rm::ProfileRecord& r = data.Slot(0);
        r.Resize(128, 4);
        r.header.heading = 1234;
        r.header.pitch = 25;
        r.header.roll = -31;
        for (int b = 0; b < 4; ++b)
            for (int c = 0; c < 128; ++c) r.Velocity(b, c) = static_cast<int16_t>(100 * b - 7 * c);
        slots.resize(1);
        slots[0].bottomTrack.Velocity = {0.3f, -0.2f, 0.0f, 0.0f};
        state.ring = 1;
        state.count = 1;
    }
};

void BM_GetVelocities(benchmark::State& st) {
    ChainData d;
    rm::VelocityArrays out;
    for (auto _ : st) {
        rm::GetVelocities(d.ctx, 0, out);
        benchmark::DoNotOptimize(out);
    }
    st.SetItemsProcessed(st.iterations());
}
BENCHMARK(BM_GetVelocities);

void BM_GetProfileValuePerCell(benchmark::State& st) {
    ChainData d;
    for (auto _ : st) {
        double sum = 0.0;
        for (int cell = 0; cell < 128; ++cell) {
            sum += rm::GetProfileValue(d.ctx, 1, 0, rm::kCoordEnu, rm::kVelocityRefBottomTrack, 0, cell);
        }
        benchmark::DoNotOptimize(sum);
    }
    st.SetItemsProcessed(st.iterations());
}
BENCHMARK(BM_GetProfileValuePerCell);

}  // namespace

BENCHMARK_MAIN();
