#include "data/nmea_gps_statistics.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace rm {

bool GpsStatistics::IsLow(const GpsFix& fix, bool internalSource) const {
    return !internalSource && fix.Satellites < limits_.requiredSatellites;
}

void GpsStatistics::Reset(const GpsFix& current, bool internalSource) {
    started_ = true;
    firstTime_ = lastTime_ = current.Time;
    lowSatelliteCount_ = IsLow(current, internalSource) ? 1 : 0;
    satelliteChangeCount_ = 0;
    minHdop_ = maxHdop_ = current.Hdop;
    minSatellites_ = maxSatellites_ = current.Satellites;
    hdopLimitPassed_ = satelliteLimitPassed_ = false;
    previousSatellites_ = current.Satellites;
    previousHdop_ = current.Hdop;
}

void GpsStatistics::Update(const GpsFix& fix, bool internalSource) {
    if (!started_) {
        Reset(fix, internalSource);
        return;
    }
    lastTime_ = fix.Time;
    if (IsLow(fix, internalSource)) ++lowSatelliteCount_;
    if (fix.Satellites != previousSatellites_) ++satelliteChangeCount_;
    // Differences in 64 bits: two extreme satellite counts must not overflow.
    long long satelliteStep = std::llabs(static_cast<long long>(fix.Satellites) - previousSatellites_);
    if (satelliteStep > limits_.satelliteChangeLimit) satelliteLimitPassed_ = true;
    if (std::fabs(fix.Hdop - previousHdop_) > limits_.hdopChangeLimit) hdopLimitPassed_ = true;
    minHdop_ = std::min(minHdop_, fix.Hdop);
    maxHdop_ = std::max(maxHdop_, fix.Hdop);
    minSatellites_ = std::min(minSatellites_, fix.Satellites);
    maxSatellites_ = std::max(maxSatellites_, fix.Satellites);
    previousSatellites_ = fix.Satellites;
    previousHdop_ = fix.Hdop;
}

}  // namespace rm
