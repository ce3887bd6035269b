#pragma once
// Running quality figures of the GPS fixes of a measurement: how often too few satellites were
// in view, how often their number changed, the range of Hdop and satellites, and whether one
// step from a fix to the next changed them by more than the configured limits.

#include "data/nmea_gps_fix.h"

namespace rm {

struct GpsStatisticsLimits {
    int requiredSatellites = 4;    // fewer than this counts as a low-satellite fix
    int satelliteChangeLimit = 2;  // a larger change between two fixes raises the flag
    double hdopChangeLimit = 2.0;  // a larger change between two fixes raises the flag
};

class GpsStatistics {
public:
    explicit GpsStatistics(GpsStatisticsLimits limits = {}) : limits_(limits) {}

    const GpsStatisticsLimits& Limits() const { return limits_; }
    void SetLimits(const GpsStatisticsLimits& limits) { limits_ = limits; }

    // Starts a new series with `current` as its only fix: times, minima and maxima from it,
    // no satellite change, flags down, and a low-satellite count of 1 or 0 for this fix. Run
    // at the first profile of a measurement.
    void Reset(const GpsFix& current, bool internalSource);

    // Adds the next fix. An internal receiver reports no satellites, so its fixes never count
    // as low-satellite fixes. The first fix after construction starts the series as Reset does.
    void Update(const GpsFix& fix, bool internalSource);

    bool Started() const { return started_; }
    double FirstTime() const { return firstTime_; }
    double LastTime() const { return lastTime_; }
    int LowSatelliteCount() const { return lowSatelliteCount_; }
    int SatelliteChangeCount() const { return satelliteChangeCount_; }
    double MinHdop() const { return minHdop_; }
    double MaxHdop() const { return maxHdop_; }
    int MinSatellites() const { return minSatellites_; }
    int MaxSatellites() const { return maxSatellites_; }
    bool HdopChangeLimitPassed() const { return hdopLimitPassed_; }
    bool SatelliteChangeLimitPassed() const { return satelliteLimitPassed_; }

private:
    bool IsLow(const GpsFix& fix, bool internalSource) const;

    GpsStatisticsLimits limits_;
    bool started_ = false;
    double firstTime_ = -1.0, lastTime_ = -1.0;
    int lowSatelliteCount_ = 0, satelliteChangeCount_ = 0;
    double minHdop_ = 0.0, maxHdop_ = 0.0;
    int minSatellites_ = 0, maxSatellites_ = 0;
    bool hdopLimitPassed_ = false, satelliteLimitPassed_ = false;
    int previousSatellites_ = 0;
    double previousHdop_ = 0.0;
};

}  // namespace rm
