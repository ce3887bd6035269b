// The Data Quality Index of a profile (ComputeQualityIndex, processing_steps.h): a weighted mean
// of the uncertainty of the measured layer's mean, from the velocity error and the number of
// pings averaged, and of the shallow-water cell's, from its correlation. 100 marks a profile that
// cannot be rated: no pings, no water, a bad boat or velocity reference, or no good depth.
//
// The constants are single-precision numbers. A profile of a single ping divides by zero and
// rates infinite, and a profile whose velocity error is exactly 0 rates 100; both are how the
// index has always behaved.

#include <cmath>
#include <cstdint>

#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"
#include "processing/shallow_water_cell.h"

namespace rm {

namespace {
constexpr float kUnrated = 100.0f;

// The status of the reference `reference` (1 bottom track, 2 GPS) of the slot is good.
bool ReferenceGood(const ProcessingContext& ctx, int slot, int reference) {
    const SlotResults& r = ctx.slots[static_cast<size_t>(slot)];
    if (reference == kTrackRefGps) return SlotHasGps(ctx, slot) && r.gpsStatus == kGpsGood;
    return FileHasBottomTrack(ctx.data) && r.bottomStatus == kBottomGood;
}

bool VelocityReferenceGood(const ProcessingContext& ctx, int slot) {
    const int v = ctx.settings.VelocityReference;
    if (v != kVelocityRefGps && v != kVelocityRefBottomTrack) return true;
    return ReferenceGood(ctx, slot, v);
}
}  // namespace

void ComputeQualityIndex(ProcessingContext& ctx, int slot) {
    slot = NormalSlot(ctx, slot);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return;
    SlotResults& r = ctx.slots[static_cast<size_t>(slot)];
    ProcessedProfile& p = r.processed;
    const ProfileRecord& raw = ctx.Raw(slot);
    p.QualityIndex = kUnrated;

    const int n = static_cast<int16_t>(raw.header.pingCount);
    const bool boatOk = ReferenceGood(ctx, slot, ctx.settings.TrackReference == kTrackRefGps ? kTrackRefGps
                                                                                             : kTrackRefBottomTrack);
    if (n == 0 || (r.waterCells < 1 && r.shallowCells < 1) || !boatOk || p.DepthStatus != 1 ||
        !VelocityReferenceGood(ctx, slot)) {
        return;
    }

    double A = MissingValue, B = MissingValue, wA = 0.0, wB = 0.0;
    if (p.VelocityError < MissingValueF) {
        A = (2.576f + 8.9f / std::pow(static_cast<double>(n - 1), 1.125f)) * std::pow(static_cast<double>(n), -0.5f) *
            p.VelocityError;
        if (p.VelocityError == 0.0f) A = 100.0;
        wA = r.waterCells * ctx.data.user.CellSizeCm * 0.01;
    }
    if (r.shallowCells > 0) {
        B = std::pow(100.0 - ShallowBlockCorrelations(raw)[0], 1.0 / 3.0);
        wB = ShallowCellGeometryOf(ctx.data.conf).cellSize;
    }
    if (!ctx.working.MeasuredMean.Valid()) return;
    // A part counts once it was computed: a single ping's infinite A makes the index infinite.
    double sum = 0.0, w = 0.0;
    if (A != MissingValue) {
        sum += wA * A;
        w += wA;
    }
    if (B != MissingValue) {
        sum += wB * B;
        w += wB;
    }
    if (!(w < 0.0)) p.QualityIndex = static_cast<float>(sum / w);
}

}  // namespace rm
