// The number of usable depth cells of a profile (CountWaterCells): the cells above the bed
// less the discarded part, the shallow-water cell's tests, and the cut at the first cell whose
// signal-to-noise ratio is below the threshold in any beam.

#include <algorithm>

#include "processing/boat_speed.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"
#include "processing/shallow_water_cell.h"
#include "processing/signal_to_noise.h"
#include "processing/velocity_chain.h"

namespace rm {

namespace {
constexpr int kDiscardCells = 0;
constexpr int kDiscardPercent = 1;
constexpr uint8_t kShallowWaterPingMode = 2;
constexpr double kLargestCount = 1.0e6;  // keeps absurd depths inside the int range

int Truncate(double x) { return static_cast<int>(std::clamp(x, -kLargestCount, kLargestCount)); }

// Cells that lie wholly above `d` (metres below the transducer) after the discard rule.
int CellsAboveDiscard(const ProcessingSettings& s, double d, double blank, double cell) {
    if (!(cell > 0.0)) return 0;
    if (s.DiscardType == kDiscardCells) {
        const int m = Truncate((d - blank - cell / 2.0) / cell);
        return m - s.DiscardCells >= 0 ? m - s.DiscardCells : 0;
    }
    if (s.DiscardType == kDiscardPercent) {
        return Truncate(((d * (100 - s.DiscardPercent)) * 0.01 - blank - cell / 2.0) / cell);
    }
    return 0;
}

// The tests that may drop the shallow-water cell, in their order; each runs only while the
// cell is still in. The first-cell test compares the signed velocity, not its magnitude.
int ShallowCellTests(ProcessingContext& ctx, int slot, int c) {
    const ProcessingSettings& s = ctx.settings;
    if (s.UseWaterCells && c > s.MaxWaterCells) return 0;
    if (s.UseFirstCellFactor) {
        const double limit = s.FirstCellFactor * s.MaxSwVelocity;
        const VelocityChain chain(ctx, slot, s.CoordinateSystem, s.VelocityReference);
        const VelocityVector first = chain.Cell(0);
        if (first[0] * 0.01 > limit || first[1] * 0.01 > limit) return 0;
    }
    if (s.UseBoatSpeedFactor) {
        RefreshBoatVelocities(ctx, slot);
        if (s.BoatSpeedFactor * s.MaxSwVelocity < BoatSpeed(ctx, slot)) return 0;
    }
    if (s.UseCorrelationMin) {
        const std::array<uint8_t, 4> correlation = ShallowBlockCorrelations(ctx.Raw(slot));
        for (int beam = 0; beam < BeamCount(ctx.Raw(slot)); ++beam) {
            if (correlation[static_cast<size_t>(beam)] < s.CorrelationMin) return 0;
        }
    }
    return 1;
}
}  // namespace

int CountWaterCells(ProcessingContext& ctx, int slot, bool useShallow, int& shallowCells) {
    shallowCells = 0;
    slot = NormalSlot(ctx, slot);
    const double d = GetDepth(ctx, slot, 1);
    if (!(d < MissingValue)) return 0;

    const ProcessingSettings& s = ctx.settings;
    const ProfileRecord& record = ctx.Raw(slot);
    const double blank = ctx.data.user.BlankDistance * 0.01;
    const double cell = ctx.data.user.CellSizeCm * 0.01;
    const double swTop = ShallowCellGeometryOf(ctx.data.conf).FarEnd();

    int w = 0;
    if (ctx.data.derived.bottomTrackMode == kShallowWaterPingMode && useShallow && swTop < d) w = 1;
    int c = CellsAboveDiscard(s, d, blank, cell);
    if (w > 0) w = ShallowCellTests(ctx, slot, c);

    c = std::clamp(c, 0, std::max(record.cells, 0));
    w = std::max(w, 0);

    const int beams = BeamCount(record);
    for (int i = 0; i < c; ++i) {
        bool weak = false;
        for (int beam = 0; beam < beams && !weak; ++beam) weak = CellSnr(record, beam, i) < s.SnrThreshold;
        if (weak) {
            c = i;
            break;
        }
    }
    shallowCells = w;
    return c;
}

double SideLobeCutOffDepth(const ProcessingContext& ctx, int slot) {
    slot = NormalSlot(ctx, slot);
    const double d = GetDepth(ctx, slot, 1);
    if (!(d < MissingValue)) return MissingValue;
    const ProcessingSettings& s = ctx.settings;
    const double t = GetTransducerDepth(ctx);
    if (s.DiscardType == kDiscardPercent) return t + d * (100 - s.DiscardPercent) * 0.01;
    if (s.DiscardType == kDiscardCells) {
        const double blank = ctx.data.user.BlankDistance * 0.01;
        const double cell = ctx.data.user.CellSizeCm * 0.01;
        return t + blank + cell / 2.0 + CellsAboveDiscard(s, d, blank, cell) * cell;
    }
    return MissingValue;
}

}  // namespace rm
