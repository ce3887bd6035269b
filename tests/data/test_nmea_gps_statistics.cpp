// Running quality figures of a series of GPS fixes.

#include <gtest/gtest.h>

#include "data/nmea_gps_statistics.h"

namespace rm {
namespace {

GpsFix Fix(double time, int satellites, double hdop) {
    GpsFix fix;
    fix.Time = time;
    fix.Satellites = satellites;
    fix.Hdop = hdop;
    return fix;
}

TEST(GpsStatistics, CountsLowSatelliteFixesAndChangesAndTracksRanges) {
    GpsStatisticsLimits limits;
    limits.requiredSatellites = 5;
    limits.satelliteChangeLimit = 3;
    limits.hdopChangeLimit = 1.0;
    GpsStatistics stats(limits);
    stats.Reset(Fix(100.0, 6, 1.2), false);
    stats.Update(Fix(101.0, 4, 1.5), false);  // low, changed by 2
    stats.Update(Fix(102.0, 4, 0.8), false);  // low, unchanged
    stats.Update(Fix(103.0, 7, 1.1), false);  // changed by 3

    EXPECT_EQ(stats.FirstTime(), 100.0);
    EXPECT_EQ(stats.LastTime(), 103.0);
    EXPECT_EQ(stats.LowSatelliteCount(), 2);
    EXPECT_EQ(stats.SatelliteChangeCount(), 2);
    EXPECT_EQ(stats.MinSatellites(), 4);
    EXPECT_EQ(stats.MaxSatellites(), 7);
    EXPECT_DOUBLE_EQ(stats.MinHdop(), 0.8);
    EXPECT_DOUBLE_EQ(stats.MaxHdop(), 1.5);
    // Steps of at most the limits do not raise the flags.
    EXPECT_FALSE(stats.SatelliteChangeLimitPassed());
    EXPECT_FALSE(stats.HdopChangeLimitPassed());

    stats.Update(Fix(104.0, 11, 2.2), false);  // satellites +4, Hdop +1.1
    EXPECT_TRUE(stats.SatelliteChangeLimitPassed());
    EXPECT_TRUE(stats.HdopChangeLimitPassed());
}

TEST(GpsStatistics, ResetStartsANewSeriesFromTheCurrentFix) {
    GpsStatistics stats;
    EXPECT_FALSE(stats.Started());
    stats.Update(Fix(1.0, 2, 9.0), false);  // the first fix starts the series
    EXPECT_TRUE(stats.Started());
    EXPECT_EQ(stats.LowSatelliteCount(), 1);
    stats.Update(Fix(2.0, 12, 0.5), false);
    EXPECT_TRUE(stats.SatelliteChangeLimitPassed());
    stats.Update(Fix(3.0, 0, 0.5), true);  // an internal receiver reports no satellites: not low
    EXPECT_EQ(stats.LowSatelliteCount(), 1);

    stats.Reset(Fix(50.0, 8, 1.0), false);
    EXPECT_EQ(stats.FirstTime(), 50.0);
    EXPECT_EQ(stats.LastTime(), 50.0);
    EXPECT_EQ(stats.LowSatelliteCount(), 0);
    EXPECT_EQ(stats.SatelliteChangeCount(), 0);
    EXPECT_EQ(stats.MinSatellites(), 8);
    EXPECT_EQ(stats.MaxHdop(), 1.0);
    EXPECT_FALSE(stats.SatelliteChangeLimitPassed());
    EXPECT_FALSE(stats.HdopChangeLimitPassed());
    // Changes are measured from the fix of the reset, not from the fixes before it.
    stats.Update(Fix(51.0, 8, 1.0), false);
    EXPECT_EQ(stats.SatelliteChangeCount(), 0);
}

}  // namespace
}  // namespace rm
