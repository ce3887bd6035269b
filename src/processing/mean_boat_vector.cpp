#include "processing/mean_boat_vector.h"

#include "processing/discharge_data.h"
#include "processing/gps_track.h"
#include "processing/processing_inputs.h"

namespace rm {

void FoldIntoCourse(ProcessingContext& ctx, int profileIndex, int slot) {
    DischargeRunningSums& sums = ctx.state.dischargeSums;
    if (profileIndex <= sums.courseProfile) return;
    sums.courseProfile = profileIndex;
    slot = NormalSlot(ctx, slot);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return;

    if (FileHasBottomTrack(ctx.data)) {
        const BottomTrackResult& bt = ctx.slots[static_cast<size_t>(slot)].bottomTrack;
        if (bt.Velocity[0] < MissingValueF && bt.Velocity[1] < MissingValueF) {
            sums.bottomEast += -static_cast<double>(bt.Velocity[0]);
            sums.bottomNorth += -static_cast<double>(bt.Velocity[1]);
            ++sums.bottomCount;
        }
    }
    const GpsVelocity gps = SlotGpsVelocity(ctx, slot);
    if (gps.IsValid()) {
        sums.gpsEast = gps.east * 0.1;
        sums.gpsNorth = gps.north * 0.1;
        ++sums.gpsCount;
    }
}

void UpdateMeanBoatVector(ProcessingContext& ctx) {
    const DischargeRunningSums& sums = ctx.state.dischargeSums;
    double east = MissingValue, north = MissingValue;
    if (ctx.settings.TrackReference == kTrackRefBottomTrack && sums.bottomCount > 0) {
        east = sums.bottomEast / sums.bottomCount;
        north = sums.bottomNorth / sums.bottomCount;
    } else if (ctx.settings.TrackReference == kTrackRefGps && sums.gpsCount > 0) {
        east = sums.gpsEast / sums.gpsCount;
        north = sums.gpsNorth / sums.gpsCount;
    }
    ctx.discharge.MeanBoatEast = east;
    ctx.discharge.MeanBoatNorth = north;
}

}  // namespace rm
