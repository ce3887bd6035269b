// Values of the data panels: track length and distance made good over GPS and over bottom
// track (DistanceStep), and the boat's course and distance over one profile
// (ComputeBoatCourse).

#include <cmath>

#include "data/gps_velocity.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {
constexpr double kFastestPlausibleSpeed = 50.0;  // m/s; faster steps are dropped
constexpr double kDegreesPerRadian = 57.29577951308231;
constexpr double kSmallestCourseComponent = 0.1;

double Length(double east, double north) { return std::sqrt(east * east + north * north); }
}  // namespace

void DistanceStep(ProcessingContext& ctx, int slot) {
    slot = NormalSlot(ctx, slot);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return;
    RunningState& state = ctx.state;
    const SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    const double t = ProfileTimeStep(ctx.data);

    if (SlotHasGps(ctx, slot)) {
        const GpsBlock& b = results.gps;
        GpsDisplacement d = DisplacementBetween(b.startLatitude, b.startLongitude, b.endLatitude, b.endLongitude);
        if (std::fabs(d.east) / t > kFastestPlausibleSpeed || std::fabs(d.north) / t > kFastestPlausibleSpeed) {
            d.east = d.north = 0.0;
        }
        if (IsMissing(state.gpsTrackLength)) state.gpsTrackLength = 0.0;
        state.gpsTrackLength += Length(d.east, d.north);
        const TrackPoint& p = results.gpsTrackPoint;
        state.gpsMadeGood = Length(p.East - state.gpsTrackOrigin.East, p.North - state.gpsTrackOrigin.North);
    } else {
        state.gpsTrackLength = state.gpsMadeGood = MissingValue;
    }

    if (FileHasBottomTrack(ctx.data)) {
        const TrackPoint& p = results.bottomTrackPoint;
        state.bottomMadeGood = Length(p.East - state.bottomTrackOrigin.East, p.North - state.bottomTrackOrigin.North);
        double dx = 0.0, dy = 0.0;
        const float east = results.bottomTrack.Velocity[0], north = results.bottomTrack.Velocity[1];
        if (east < MissingValueF) dx = east * t;
        if (north < MissingValueF) dy = north * t;
        if (std::fabs(dx) / t > kFastestPlausibleSpeed) dx = 0.0;
        if (std::fabs(dy) / t > kFastestPlausibleSpeed) dy = 0.0;
        if (IsMissing(state.bottomTrackLength)) state.bottomTrackLength = 0.0;
        state.bottomTrackLength += Length(dx, dy);
    } else {
        state.bottomTrackLength = state.bottomMadeGood = MissingValue;
    }
}

BoatCourse ComputeBoatCourse(const ProcessingContext& ctx, int slot) {
    slot = NormalSlot(ctx, slot);
    BoatCourse out;
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return out;
    const SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    const double t = ProfileTimeStep(ctx.data);
    double x = 0.0, y = 0.0;
    if (!SlotHasGps(ctx, slot) || FileHasBottomTrack(ctx.data)) {
        const float east = results.bottomTrack.Velocity[0], north = results.bottomTrack.Velocity[1];
        if (east < MissingValueF && north < MissingValueF) {
            x = t * east;
            y = t * north;
        }
    }
    if (std::fabs(x) >= kSmallestCourseComponent) out.course = 90.0 - std::atan2(y, x) * kDegreesPerRadian;
    else out.course = y < 0.0 ? 180.0 : 0.0;
    if (out.course < 0.0) out.course += 360.0;
    out.distance = Length(x, y);
    return out;
}

}  // namespace rm
