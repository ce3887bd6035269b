// The maxima of a measurement, folded in profile by profile by the recomputation pass for the
// profiles of the selected range (UpdateMaxima, processing_steps.h): boat speed over the
// profile's interval, depth, the speed of the measured layer's mean, and the extremes of the
// CTD temperature and salinity.

#include <algorithm>
#include <cmath>

#include "processing/discharge_data.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

void UpdateMaxima(ProcessingContext& ctx, int slot) {
    slot = NormalSlot(ctx, slot);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return;
    CDischargeData& d = ctx.discharge;
    const ProcessedProfile& p = ctx.slots[static_cast<size_t>(slot)].processed;

    const double interval = ProfileTimeStep(ctx.data);
    if (interval > 0.0) {
        const double speed = ComputeBoatCourse(ctx, slot).distance / interval;
        d.MaxBoatSpeed = std::max(d.MaxBoatSpeed, static_cast<float>(speed));
    }
    // A profile without a depth leaves the maximum as it is rather than making it 32767.
    if (p.Depth < MissingValue) d.MaxDepth = std::max(d.MaxDepth, static_cast<float>(p.Depth));
    if (p.MeasuredEast < MissingValue && p.MeasuredNorth < MissingValue) {
        const double speed = std::sqrt(p.MeasuredEast * p.MeasuredEast + p.MeasuredNorth * p.MeasuredNorth);
        d.MaxMeanSpeed = std::max(d.MaxMeanSpeed, static_cast<float>(speed));
    }

    const ProfileRecord& raw = ctx.Raw(slot);
    if (raw.hasCtd) {
        RunningState& s = ctx.state;
        s.ctdMinTemperature = std::min(s.ctdMinTemperature, raw.ctd.temperature);
        s.ctdMaxTemperature = std::max(s.ctdMaxTemperature, raw.ctd.temperature);
        s.ctdMinSalinity = std::min(s.ctdMinSalinity, raw.ctd.salinity);
        s.ctdMaxSalinity = std::max(s.ctdMaxSalinity, raw.ctd.salinity);
    }
}

}  // namespace rm
