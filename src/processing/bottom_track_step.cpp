#include "processing/bottom_track_step.h"

#include <cmath>

#include "processing/coordinate_step.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {
constexpr int kLargestSpeedComponent = 3270;  // above it the speed counts as 32767

VelocityVector AllMissing() {
    VelocityVector v;
    v.fill(MissingValueF);
    return v;
}

std::array<float, 4> DepthsFromRaw(const RawBottomTrack& raw, int beams, double factor) {
    std::array<float, 4> depth;
    depth.fill(MissingValueF);
    for (int beam = 0; beam < beams; ++beam) {
        const uint16_t d = raw.depth[static_cast<size_t>(beam)];
        if (d < kBadVelocity) depth[static_cast<size_t>(beam)] = static_cast<float>(d * factor * 0.01);
    }
    return depth;
}

// Track point: the bed moves against the boat, so the boat's point moves by minus the
// bottom-track displacement over the profile's time step.
void TrackStep(ProcessingContext& ctx, int slot) {
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    if (ctx.state.count > RingSize(ctx)) ctx.state.bottomTrackOrigin = results.bottomTrackPoint;
    const TrackPoint previous =
        IsFirstProfile(ctx) ? TrackPoint{} : ctx.slots[static_cast<size_t>(PreviousSlot(ctx, slot))].bottomTrackPoint;
    const double interval = ProfileTimeStep(ctx.data);
    const float east = results.bottomTrack.Velocity[0], north = results.bottomTrack.Velocity[1];
    double dx = 0.0, dy = 0.0;
    if (east < MissingValueF && north < MissingValueF) {
        dx = east * interval;
        dy = north * interval;
    }
    results.bottomTrackPoint.East = previous.East - dx;
    results.bottomTrackPoint.North = previous.North - dy;
    results.bottomTrackPoint.Distance = previous.Distance + std::sqrt(dx * dx + dy * dy);
}
}  // namespace

VelocityVector BottomTrackVelocity(const ProcessingContext& ctx, int slot, int coordinateSystem) {
    const ProfileRecord& record = ctx.Raw(slot);
    const RawBottomTrack raw = ReadBottomTrackBlock(record);
    const int beams = BeamCount(record);
    const CoordinateMatrix cm = SelectCoordinateMatrix(ctx, record.header, coordinateSystem, true);
    if (!cm.usable || cm.m.n != beams) return AllMissing();
    for (int beam = 0; beam < beams; ++beam) {
        if (raw.velocity[static_cast<size_t>(beam)] == kBadVelocity) return AllMissing();
    }
    VelocityVector v{};
    for (int row = 0; row < beams; ++row) {
        float sum = 0.0f;
        for (int beam = 0; beam < beams; ++beam) {
            sum += static_cast<float>(raw.velocity[static_cast<size_t>(beam)]) * cm.m.at(row, beam) * 0.1f;
        }
        v[static_cast<size_t>(row)] = sum;
    }

    // Speed correction of slow ensembles (threshold in m/s against raw mm/s).
    const double r0 = raw.velocity[0], r1 = raw.velocity[1];
    const double speed = r0 > kLargestSpeedComponent ? MissingValue : std::sqrt(r0 * r0 + r1 * r1);
    if (speed < ctx.settings.BottomTrackThreshold * 1000.0) {
        for (int row = 0; row < beams; ++row) {
            v[static_cast<size_t>(row)] = static_cast<float>(v[static_cast<size_t>(row)] * ctx.settings.BottomTrackFactor);
        }
    }

    if (RotatesByDeclination(ctx.data.user.CoordinateSystem, coordinateSystem) && beams >= 2) {
        const bool marked = HighResolutionFormat(ctx.data) &&
                            (raw.velocity[0] == kUnwrapBadVelocity || raw.velocity[1] == kUnwrapBadVelocity);
        if (marked) v[0] = v[1] = MissingValueF;
        else RotateByDeclination(v[0], v[1], ctx.data.derived.magneticDeclination);
    }

    const double f = SoundSpeedFactor(ctx, slot);
    for (int row = 0; row < beams; ++row) {
        float& value = v[static_cast<size_t>(row)];
        if (value < MissingValueF) value = static_cast<float>(value * f * 0.01);
    }
    return v;
}

void BottomTrackStep(ProcessingContext& ctx, int slot) {
    slot = NormalSlot(ctx, slot);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return;
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    const ProfileRecord& record = ctx.Raw(slot);
    const RawBottomTrack raw = ReadBottomTrackBlock(record);
    const int beams = BeamCount(record);
    const BottomTrackClass c = ClassifyBottomTrack(FileHasBottomTrack(ctx.data), record, ctx.settings.NumBadBeams);
    const double f = SoundSpeedFactor(ctx, slot);

    results.bottomStatus = c.status;
    results.bottomTrack.flag = raw.flag;
    if (c.status == kBottomGood) {
        results.bottomTrack.Velocity = BottomTrackVelocity(ctx, slot, ctx.settings.CoordinateSystem);
        results.bottomTrack.Depth = DepthsFromRaw(raw, beams, f);
    } else if (IsFirstProfile(ctx)) {
        results.bottomTrack.Velocity.fill(MissingValueF);
        results.bottomTrack.Depth.fill(MissingValueF);
    } else {
        // Hold: the previous profile's velocity, and its depths too when the beams were bad.
        const BottomTrackResult& previous = ctx.slots[static_cast<size_t>(PreviousSlot(ctx, slot))].bottomTrack;
        results.bottomTrack.Velocity = previous.Velocity;
        results.bottomTrack.Depth =
            c.badBeams > ctx.settings.NumBadBeams ? previous.Depth : DepthsFromRaw(raw, beams, f);
    }
    if (ctx.state.measurementState >= kBottomBad) results.bottomStatus = kBottomBad;
    TrackStep(ctx, slot);
}

}  // namespace rm
