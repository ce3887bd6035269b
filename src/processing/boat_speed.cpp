#include "processing/boat_speed.h"

#include <cmath>

#include "processing/gps_track.h"
#include "processing/processing_inputs.h"

namespace rm {

void RefreshBoatVelocities(ProcessingContext& ctx, int slot) {
    slot = NormalSlot(ctx, slot);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return;
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    ProcessedProfile& p = results.processed;
    if (SlotHasGps(ctx, slot)) {
        const GpsVelocity v = SlotGpsVelocity(ctx, slot);
        p.GpsEast = v.east >= MissingValueF ? MissingValue : v.east * -0.001;
        p.GpsNorth = v.north >= MissingValueF ? MissingValue : v.north * -0.001;
    }
    if (FileHasBottomTrack(ctx.data)) {
        p.BottomTrackEast = results.bottomTrack.Velocity[0];
        p.BottomTrackNorth = results.bottomTrack.Velocity[1];
    }
}

double BoatSpeed(const ProcessingContext& ctx, int slot) {
    slot = NormalSlot(ctx, slot);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return MissingValue;
    const ProcessedProfile& p = ctx.slots[static_cast<size_t>(slot)].processed;
    double east = 0.0, north = 0.0;
    if (ctx.settings.TrackReference == kTrackRefGps) {
        east = p.GpsEast;
        north = p.GpsNorth;
    } else if (ctx.settings.TrackReference == kTrackRefBottomTrack) {
        east = p.BottomTrackEast;
        north = p.BottomTrackNorth;
    }
    if (IsMissing(std::fabs(east)) || IsMissing(std::fabs(north))) return MissingValue;
    return std::sqrt(east * east + north * north);
}

}  // namespace rm
