// Fixes and declination decoded from the tree of newest GPS sentences, and the running quality
// figures of a series of fixes.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "data/nmea_gps_fix.h"
#include "data/nmea_gps_statistics.h"
#include "data/nmea_sentences.h"

namespace rm {
namespace {

NodeRef Tree(const std::vector<std::string>& lines) { return BuildSentenceTree(lines, "GP"); }

const char* kGga = "$GPGGA,123519.50,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47";
const char* kGxp = "$GPGXP,101010,3000.0,S,1130.0,W";

TEST(NmeaDegrees, MinutesAddedToWholeDegreesAndExactHemisphereLetters) {
    double deg = 0.0;
    ASSERT_TRUE(NmeaAngleToDegrees(4807.038, "N", "S", "N", deg));  // 48 deg 7.038 min
    EXPECT_NEAR(deg, 48.1173, 1e-12);
    ASSERT_TRUE(NmeaAngleToDegrees(12345.6, "W", "W", "E", deg));  // 123 deg 45.6 min west
    EXPECT_NEAR(deg, -(123.0 + 45.6 / 60.0), 1e-11);
    ASSERT_TRUE(NmeaAngleToDegrees(30.0, "S", "S", "N", deg));  // half a degree south
    EXPECT_NEAR(deg, -0.5, 1e-15);
    deg = 7.0;
    for (const char* bad : {"s", "", " N", "NS", "E"}) {
        EXPECT_FALSE(NmeaAngleToDegrees(4807.038, bad, "S", "N", deg)) << '"' << bad << '"';
    }
    EXPECT_EQ(deg, 7.0);
}

TEST(DecodeGga, TakesTimePositionSatellitesHdopAndAltitude) {
    GpsFix fix;
    ASSERT_EQ(DecodeGga(FindSentence(Tree({kGga}), "GGA"), fix), 1);
    EXPECT_DOUBLE_EQ(fix.Time, 123519.50);
    EXPECT_NEAR(fix.Latitude, 48.1173, 1e-12);
    EXPECT_NEAR(fix.Longitude, 11.0 + 31.0 / 60.0, 1e-12);  // 01131.000
    EXPECT_EQ(fix.Satellites, 8);
    EXPECT_DOUBLE_EQ(fix.Hdop, 0.9);
    EXPECT_DOUBLE_EQ(fix.Altitude, 545.4);
}

TEST(DecodeGga, RejectsEmptyPositionBadHemisphereAndShortSentences) {
    const std::vector<std::string> rejected = {
        "$GPGGA,123519,,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,",         // empty latitude
        "$GPGGA,123519,4807.038,N,,E,1,08,0.9,545.4,M,46.9,M,,",          // empty longitude
        "$GPGGA,123519,4807.038,N,01131.000,e,1,08,0.9,545.4,M,46.9,M,,",  // lower-case hemisphere
        "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4",             // 9 fields
    };
    for (const std::string& line : rejected) {
        GpsFix fix;
        fix.Time = 5.0;
        EXPECT_EQ(DecodeGga(FindSentence(Tree({line}), "GGA"), fix), 0) << line;
        EXPECT_EQ(fix.Time, 5.0) << "a rejected sentence must leave the fix alone: " << line;
    }
    GpsFix fix;
    EXPECT_EQ(DecodeGga(FindSentence(Tree({"$GPGGA,1,4807.038,N,01131.000,E,1,08,0.9,545.4,M"}), "GGA"), fix), 1);
}

TEST(TakeNewestFix, GgaWinsOverGxpAndGxpAloneNeedsFiveFields) {
    GpsFix fix;
    GpsFixSource source = GpsFixSource::Gxp;
    ASSERT_EQ(TakeNewestFix(Tree({kGxp, kGga}), fix, &source), 1);
    EXPECT_EQ(source, GpsFixSource::Gga);
    EXPECT_DOUBLE_EQ(fix.Time, 123519.50);

    ASSERT_EQ(TakeNewestFix(Tree({kGxp}), fix, &source), 1);
    EXPECT_EQ(source, GpsFixSource::Gxp);
    EXPECT_DOUBLE_EQ(fix.Time, 101010.0);
    EXPECT_NEAR(fix.Latitude, -30.0, 1e-12);
    EXPECT_NEAR(fix.Longitude, -11.5, 1e-12);
    EXPECT_EQ(fix.Satellites, 0);
    EXPECT_EQ(fix.Hdop, 0.0);
    EXPECT_EQ(TakeNewestFix(Tree({"$GPGXP,101010,3000.0,S,1130.0"}), fix), 0);
}

TEST(TakeNewestFix, EmptyTreeOrUndecodableGgaGivesNoFix) {
    GpsFix fix;
    EXPECT_EQ(TakeNewestFix(NodeRef(), fix), 0);
    EXPECT_EQ(TakeNewestFix(NodeRef::MakeNew(), fix), 0);
    EXPECT_EQ(TakeNewestFix(Tree({"$GPRMC,1,A"}), fix), 0);
    // A GGA without position is not replaced by the GXP beside it.
    EXPECT_EQ(TakeNewestFix(Tree({"$GPGGA,1,,,,,0,00,,,M,,M,,", kGxp}), fix), 0);
    EXPECT_EQ(fix.Time, -1.0);
}

TEST(Declination, RmcFieldNineNegatedByWestAndNeedingElevenFieldsAndANumber) {
    const std::string head = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,";
    double degrees = 0.0;
    ASSERT_EQ(DeclinationFromSentences(Tree({head + "003.1,E*6A"}), degrees), 1);
    EXPECT_DOUBLE_EQ(degrees, 3.1);
    ASSERT_EQ(DeclinationFromSentences(Tree({head + "003.1,W*6A"}), degrees), 1);
    EXPECT_DOUBLE_EQ(degrees, -3.1);
    degrees = 9.0;
    EXPECT_EQ(DeclinationFromSentences(Tree({head + "003.1"}), degrees), 0);  // 10 fields
    EXPECT_EQ(DeclinationFromSentences(Tree({head + ","}), degrees), 0);      // variation unknown
    EXPECT_EQ(DeclinationFromSentences(Tree({kGga}), degrees), 0);
    EXPECT_EQ(degrees, 9.0);
}


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
