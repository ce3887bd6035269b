#include "processing/track_area.h"

#include <cmath>

#include "processing/course_direction.h"
#include "processing/discharge_data.h"
#include "processing/discharge_inputs.h"
#include "processing/processing_inputs.h"

namespace rm {

namespace {
constexpr double kTrackTolerance = 0.0032767;
constexpr double kRadiansPerDegree = 0.0174532925199433;
// An area this small is zero but for the rounding of the course's cosine and sine.
constexpr double kNoArea = 1e-9;

const TrackPoint& TrackOfReference(const ProcessingContext& ctx, int slot) {
    const SlotResults& r = ctx.slots[static_cast<size_t>(slot)];
    return ctx.settings.TrackReference == kTrackRefGps ? r.gpsTrackPoint : r.bottomTrackPoint;
}

bool FarFromMissing(double v) { return std::fabs(v - MissingValue) > kTrackTolerance; }

bool HasAllParts(const ProcessedProfile& p) {
    return p.TopQ != MissingValueF && p.MiddleQ != MissingValueF && p.BottomQ != MissingValueF &&
           p.MeanEast * 0.01 != MissingValue && p.MeanNorth * 0.01 != MissingValue;
}
}  // namespace

void UpdateTrackValues(ProcessingContext& ctx, int profileIndex, int slot) {
    slot = NormalSlot(ctx, slot);
    const ProfileRange range = SelectedProfileRange(ctx);
    CDischargeData& d = ctx.discharge;
    if (profileIndex < range.first) {
        d.ProfileCount = 0;
        return;
    }
    if (!range.Contains(profileIndex)) return;
    d.ProfileCount = profileIndex - range.first + 1;
    const TrackPoint& point = TrackOfReference(ctx, slot);
    d.TrackLength = point.Distance;
    if (FarFromMissing(point.East) && FarFromMissing(point.North)) {
        d.MadeGood = static_cast<float>(std::sqrt(point.East * point.East + point.North * point.North));
        // The time of all profiles taken in.
        const double span = ProfileTimeStep(ctx.data) * ctx.state.count;
        d.MadeGoodSpeed = (ctx.state.count > 0 && span > 0.0) ? d.MadeGood / span : 0.0;
    }
    d.TotalWidth = d.RightDistance + d.MadeGood + d.LeftDistance;
    if (IsHeldInRing(ctx, range.first)) d.startTime = ctx.Raw(NormalSlot(ctx, range.first)).header;
    d.endTime = ctx.Raw(slot).header;
}

void AddToAreaSums(ProcessingContext& ctx, int profileIndex, int slot) {
    DischargeRunningSums& sums = ctx.state.dischargeSums;
    if (profileIndex <= sums.areaProfile || !SelectedProfileRange(ctx).Contains(profileIndex)) return;
    sums.areaProfile = profileIndex;
    const ProcessedProfile& p = ctx.slots[static_cast<size_t>(NormalSlot(ctx, slot))].processed;
    if (!HasAllParts(p)) return;
    sums.boatEastDepth += p.BoatEast * p.Depth;
    sums.boatNorthDepth += p.BoatNorth * p.Depth;
}

void ComputeArea(ProcessingContext& ctx, int slot) {
    slot = NormalSlot(ctx, slot);
    const TrackPoint& point = TrackOfReference(ctx, slot);
    const double a = 90.0 - CourseDirection(point.East, point.North);
    const double ca = std::cos(a * kRadiansPerDegree), sa = std::sin(a * kRadiansPerDegree);
    const DischargeRunningSums& sums = ctx.state.dischargeSums;
    double area = (-sums.boatEastDepth * ca - sums.boatNorthDepth * sa) * ProfileTimeStep(ctx.data);
    CDischargeData& d = ctx.discharge;
    area = d.RightEdgeArea + d.LeftEdgeArea + area;
    d.Area = area;
    if (std::fabs(area) > kNoArea) d.MeanVelocity = std::fabs(d.TotalDischarge / area);
}

}  // namespace rm
