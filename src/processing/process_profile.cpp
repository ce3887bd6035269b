// The per-profile chain in its fixed order (ProcessProfile) and the light rerun over the ring
// after a change of settings during live data (ReprocessRing).

#include <vector>

#include "processing/discharge_data.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {
constexpr uint8_t kShallowWaterPingMode = 2;

// Step 5: the water cells of the slot, with the shallow-water cell when the instrument has the
// shallow-water ping and its use is on. Without a depth source no cell counts.
void WaterCellStep(ProcessingContext& ctx, int slot) {
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    results.waterCells = 0;
    results.shallowCells = 0;
    const bool bottomTrack = FileHasBottomTrack(ctx.data);
    if (bottomTrack || (ctx.state.echoDepthSeen && SlotHasGps(ctx, slot))) {
        const bool shallow =
            ctx.data.derived.bottomTrackMode == kShallowWaterPingMode && ctx.settings.UseShallowWaterPing != 0;
        results.shallowWaterFlag = shallow ? 1 : 0;
        int shallowCells = 0;
        results.waterCells = CountWaterCells(ctx, slot, shallow, shallowCells);
        results.shallowCells = shallowCells;
        if (shallowCells == 0) results.shallowWaterFlag = 0;
    }
    ctx.working.WaterCells = results.waterCells;
    ctx.working.ShallowCells = results.shallowCells;
}
}  // namespace

void ProcessProfile(ProcessingContext& ctx, int profileNumber) {
    const int slot = ctx.SlotOfProfile(profileNumber);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return;
    // Step 1, reading NumBadBeams, and the settings reads of every step come from the snapshot
    // of the pass in ctx.settings.
    if (FileHasBottomTrack(ctx.data)) BottomTrackStep(ctx, slot);
    UpdateDepth(ctx, slot, ctx.settings.SwapDepthReference);
    if (SlotHasGps(ctx, slot)) GpsTrackStep(ctx, slot);
    WaterCellStep(ctx, slot);
    ComputeProfileDischarge(ctx, slot);
    const ProfileHeader& header = ctx.Raw(slot).header;
    ctx.discharge.AddPitchRoll(header.pitch * 0.1, header.roll * 0.1);
    DistanceStep(ctx, slot);
}

void ReprocessRing(ProcessingContext& ctx) {
    const int ring = RingSize(ctx);
    const int newest = ctx.state.count;
    if (newest < 1 || ctx.slots.empty()) return;
    const int oldest = newest - ring + 1 > 1 ? newest - ring + 1 : 1;

    // The bottom-track step also moves the track and may save a track origin; the track of the
    // data set is already complete, so both are kept as they are.
    const RunningState saved = ctx.state;
    std::vector<TrackPoint> points(ctx.slots.size());
    for (size_t i = 0; i < ctx.slots.size(); ++i) points[i] = ctx.slots[i].bottomTrackPoint;
    const bool bottomTrack = FileHasBottomTrack(ctx.data);

    for (int n = oldest; n <= newest; ++n) {
        const int slot = ctx.SlotOfProfile(n);
        SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
        if (!results.readOk) continue;
        ctx.state.count = n;
        if (bottomTrack) {
            const BottomTrackResult before = results.bottomTrack;
            BottomTrackStep(ctx, slot);
            // The oldest profile of a full ring cannot hold its predecessor's values: that slot
            // now holds the newest profile. It keeps what the full pass gave it.
            if (n == oldest && oldest > 1 && results.bottomStatus >= kBottomBad) results.bottomTrack = before;
        }
        UpdateDepth(ctx, slot, ctx.settings.SwapDepthReference);
        WaterCellStep(ctx, slot);
    }

    ctx.state = saved;
    for (size_t i = 0; i < ctx.slots.size(); ++i) ctx.slots[i].bottomTrackPoint = points[i];
}

}  // namespace rm
