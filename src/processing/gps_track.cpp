#include "processing/gps_track.h"

#include <cmath>

#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

GpsVelocity SlotGpsVelocity(const ProcessingContext& ctx, int slot) {
    if (!SlotHasGps(ctx, slot)) return GpsVelocity{};
    return ComputeGpsVelocity(ctx.slots[static_cast<size_t>(NormalSlot(ctx, slot))].gps);
}

void GpsTrackStep(ProcessingContext& ctx, int slot) {
    slot = NormalSlot(ctx, slot);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return;
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    RunningState& state = ctx.state;
    const GpsBlock& block = results.gps;

    const GpsVelocity v = SlotGpsVelocity(ctx, slot);
    results.gpsEast = v.east;
    results.gpsNorth = v.north;
    const bool bad = std::fabs(v.east) >= kGpsBadSpeed || std::fabs(v.north) >= kGpsBadSpeed;
    results.gpsStatus = bad ? kGpsBad : kGpsGood;
    const bool hasBlock = SlotHasGps(ctx, slot);
    if (hasBlock && (IsFirstProfile(ctx) || (!bad && IsMissing(state.gpsOriginLatitude)))) {
        state.gpsOriginLatitude = block.startLatitude;
        state.gpsOriginLongitude = block.startLongitude;
    }
    if (state.count > RingSize(ctx)) state.gpsTrackOrigin = results.gpsTrackPoint;

    const bool first = IsFirstProfile(ctx);
    const TrackPoint previous = first ? TrackPoint{} : ctx.slots[static_cast<size_t>(PreviousSlot(ctx, slot))].gpsTrackPoint;
    if (bad || IsMissing(state.gpsOriginLatitude)) {
        results.gpsTrackPoint = previous;
        return;
    }
    const GpsDisplacement d =
        DisplacementBetween(state.gpsOriginLatitude, state.gpsOriginLongitude, block.endLatitude, block.endLongitude);
    TrackPoint& point = results.gpsTrackPoint;
    point.East = d.east;
    point.North = d.north;
    if (first) {
        point.Distance = std::sqrt(d.east * d.east + d.north * d.north);
    } else {
        // The step between the two points is measured with North in single precision.
        const double de = d.east - previous.East;
        const double dn = static_cast<double>(static_cast<float>(d.north)) - previous.North;
        point.Distance = previous.Distance + std::sqrt(de * de + dn * dn);
    }
}

}  // namespace rm
