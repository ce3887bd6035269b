// GPS velocity of a slot and the GPS track step (origin, bad
// fixes, the 15000 mm/s rule, distance).

#include <gtest/gtest.h>

#include <cmath>

#include "processing/chain_fixture.h"
#include "processing/gps_track.h"
#include "processing/processing_steps.h"

namespace rm::test {
namespace {

constexpr double kRad = 0.0174532925199433;

// Metres per degree of latitude around a mean latitude, by the flat-earth radius.
double MetresPerDegree(double meanLatitude) { return (6378137.0 - std::fabs(meanLatitude) * 237.611) * kRad; }

class GpsTrackTest : public ChainFixture {
protected:
    void SetUp() override { Build(kCoordEnu); }
    void Run(int n, const GpsBlock& block) {
        state.count = n;
        SlotResults& s = slots[static_cast<size_t>(n - 1)];
        s.gpsPresent = true;
        s.gps = block;
        GpsTrackStep(ctx, n - 1);
    }
};

// The velocity of a block, with midnight and the one-second rule, is pinned by the GPS velocity
// tests of the data core; a slot gives it only when it holds GPS.
TEST_F(GpsTrackTest, SlotVelocityIsTheBlocksWhenTheSlotHoldsGps) {
    slots[0].gps = GpsBlockMoving(-30.0, 150.0, 0.0, -0.0001, 2.0);
    slots[0].gpsPresent = true;
    const double north = -0.0001 * MetresPerDegree(-30.00005);
    EXPECT_NEAR(SlotGpsVelocity(ctx, 0).north, std::round(north * 10000.0 / 2.0) * 0.1, 1e-3);
    slots[0].gpsPresent = false;
    EXPECT_EQ(SlotGpsVelocity(ctx, 0).east, MissingValueF);
}

TEST_F(GpsTrackTest, TrackStartsAtTheFirstFixAndAddsTheSteps) {
    const double lat = 45.0;
    Run(1, GpsBlockMoving(lat, 7.0, 0.0, 0.0001, 10.0));
    Run(2, GpsBlockMoving(lat + 0.0001, 7.0, 0.0002, 0.0, 10.0));
    EXPECT_EQ(slots[0].gpsStatus, kGpsGood);
    const double north = 0.0001 * MetresPerDegree(lat + 0.00005);
    EXPECT_NEAR(slots[0].gpsTrackPoint.North, north, 1e-6);
    EXPECT_NEAR(slots[0].gpsTrackPoint.Distance, north, 1e-6);
    const double east = 0.0002 * std::cos((lat + 0.00005) * kRad) * MetresPerDegree(lat + 0.00005);
    EXPECT_NEAR(slots[1].gpsTrackPoint.East, east, 1e-6);
    EXPECT_NEAR(slots[1].gpsTrackPoint.Distance, north + east, 1e-4);
    EXPECT_DOUBLE_EQ(state.gpsOriginLatitude, lat);
}

TEST_F(GpsTrackTest, FastOrUntimedFixIsBadAndRepeatsThePreviousPoint) {
    // A northward step that gives exactly 15000.0 mm/s over one second.
    const double dLat = 15.0 / MetresPerDegree(45.0);
    Run(1, GpsBlockMoving(45.0, 7.0, 0.0, 0.0001, 10.0));
    Run(2, GpsBlockMoving(45.0, 7.0, 0.0, dLat, 1.0));
    EXPECT_NEAR(slots[1].gpsNorth, 15000.0, 0.05);
    EXPECT_EQ(slots[1].gpsStatus, kGpsBad);
    EXPECT_DOUBLE_EQ(slots[1].gpsTrackPoint.North, slots[0].gpsTrackPoint.North);
    EXPECT_DOUBLE_EQ(slots[1].gpsTrackPoint.Distance, slots[0].gpsTrackPoint.Distance);

    Run(3, GpsBlockMoving(45.0, 7.0, 0.0, dLat * 0.999, 1.0));
    EXPECT_EQ(slots[2].gpsStatus, kGpsGood);
    Run(4, GpsBlockMoving(45.0, 7.0, 0.0, 0.001, 0.5));
    EXPECT_EQ(slots[3].gpsStatus, kGpsBad);
    EXPECT_DOUBLE_EQ(slots[3].gpsTrackPoint.North, slots[2].gpsTrackPoint.North);
}

TEST_F(GpsTrackTest, BadFirstFixStillSetsTheOriginAndAZeroPoint) {
    Run(1, GpsBlockMoving(45.0, 7.0, 0.0, 0.1, 0.2));
    EXPECT_EQ(slots[0].gpsStatus, kGpsBad);
    EXPECT_DOUBLE_EQ(slots[0].gpsTrackPoint.Distance, 0.0);
    EXPECT_DOUBLE_EQ(state.gpsOriginLatitude, 45.0);
}

}  // namespace
}  // namespace rm::test
