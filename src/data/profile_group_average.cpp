#include "data/profile_group_average.h"

#include <cmath>

namespace rm {

namespace {

uint8_t RoundedMean(double sum, size_t count) {
    const double mean = std::round(sum / static_cast<double>(count));
    return static_cast<uint8_t>(mean < 0.0 ? 0.0 : (mean > 255.0 ? 255.0 : mean));
}

}  // namespace

void AverageProfiles(const ProfileRecord* const* members, size_t count, ProfileRecord& out) {
    if (count == 0) return;
    const ProfileRecord& first = *members[0];
    const ProfileRecord& last = *members[count - 1];
    if (out.cells != last.cells || out.beams != last.beams || out.velocity.size() != last.velocity.size()) {
        out.Resize(last.cells, last.beams);
    }

    out.header = last.header;
    out.hasShallowWater = last.hasShallowWater;
    out.shallowWater = last.shallowWater;
    out.hasBottomTrack = last.hasBottomTrack;
    out.bottomTrack = last.bottomTrack;
    out.hasExtSensor = last.hasExtSensor;
    out.extSensor = last.extSensor;

    out.hasGps = last.hasGps;
    out.gps.startTime = first.gps.startTime;
    out.gps.startLatitude = first.gps.startLatitude;
    out.gps.startLongitude = first.gps.startLongitude;
    out.gps.endTime = last.gps.endTime;
    out.gps.endLatitude = last.gps.endLatitude;
    out.gps.endLongitude = last.gps.endLongitude;

    out.hasCtd = last.hasCtd;
    out.ctdRaw = last.ctdRaw;
    CtdValues sum;
    for (size_t m = 0; m < count; ++m) {
        sum.temperature += members[m]->ctd.temperature;
        sum.conductivity += members[m]->ctd.conductivity;
        sum.pressure += members[m]->ctd.pressure;
        sum.salinity += members[m]->ctd.salinity;
    }
    const float inverse = 1.0f / static_cast<float>(count);
    out.ctd.temperature = sum.temperature * inverse;
    out.ctd.conductivity = sum.conductivity * inverse;
    out.ctd.pressure = sum.pressure * inverse;
    out.ctd.salinity = sum.salinity * inverse;

    const size_t n = out.velocity.size();
    for (size_t i = 0; i < n; ++i) {
        double velocitySum = 0.0, errorSum = 0.0, amplitudeSum = 0.0;
        size_t good = 0;
        for (size_t m = 0; m < count; ++m) {
            const ProfileRecord& p = *members[m];
            if (i >= p.velocity.size()) continue;
            if (p.velocity[i] != kBadVelocity) {
                velocitySum += p.velocity[i];
                ++good;
            }
            errorSum += p.stdError[i];
            amplitudeSum += p.amplitude[i];
        }
        out.velocity[i] = good > 0 ? static_cast<int16_t>(std::round(velocitySum / static_cast<double>(good)))
                                   : kBadVelocity;
        out.stdError[i] = RoundedMean(errorSum, count);
        out.amplitude[i] = RoundedMean(amplitudeSum, count);
    }
}

}  // namespace rm
