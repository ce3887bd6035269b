// Boat course of a profile and the panels' track lengths and distances made good.

#include <gtest/gtest.h>

#include <cmath>

#include "processing/chain_fixture.h"
#include "processing/processing_steps.h"

namespace rm::test {
namespace {

class DistanceTest : public ChainFixture {
protected:
    void SetUp() override { Build(kCoordEnu); }  // averaging interval 2 s
    void Bed(float east, float north) { slots[0].bottomTrack.Velocity = {east, north, 0.0f, 0.0f}; }
};

TEST_F(DistanceTest, CourseFromTheBottomTrackVector) {
    Bed(0.3f, 0.4f);
    BoatCourse c = ComputeBoatCourse(ctx, 0);
    EXPECT_NEAR(c.course, 90.0 - std::atan2(0.8, 0.6) * 180.0 / 3.14159265358979, 1e-4);
    EXPECT_NEAR(c.distance, 1.0, 1e-6);
    Bed(-0.3f, -0.4f);
    EXPECT_NEAR(ComputeBoatCourse(ctx, 0).course, 270.0 - std::atan2(0.8, 0.6) * 180.0 / 3.14159265358979, 1e-4);
    Bed(0.04f, -0.5f);  // |X| below 0.1
    EXPECT_DOUBLE_EQ(ComputeBoatCourse(ctx, 0).course, 180.0);
    Bed(MissingValueF, 0.5f);
    c = ComputeBoatCourse(ctx, 0);
    EXPECT_DOUBLE_EQ(c.course, 0.0);
    EXPECT_DOUBLE_EQ(c.distance, 0.0);
}

TEST_F(DistanceTest, BottomTrackLengthDropsImplausibleComponents) {
    Bed(0.3f, 0.4f);
    DistanceStep(ctx, 0);
    DistanceStep(ctx, 0);
    EXPECT_NEAR(state.bottomTrackLength, 2.0, 1e-6);
    Bed(60.0f, 0.4f);  // East beyond 50 m/s counts 0
    DistanceStep(ctx, 0);
    EXPECT_NEAR(state.bottomTrackLength, 2.8, 1e-6);
    Bed(MissingValueF, MissingValueF);
    DistanceStep(ctx, 0);
    EXPECT_NEAR(state.bottomTrackLength, 2.8, 1e-6);
    slots[0].bottomTrackPoint = {3.0, -4.0, 9.0};
    state.bottomTrackOrigin = {0.0, -4.0, 0.0};
    DistanceStep(ctx, 0);
    EXPECT_DOUBLE_EQ(state.bottomMadeGood, 3.0);
    EXPECT_EQ(state.gpsTrackLength, MissingValue);
}

TEST_F(DistanceTest, GpsLengthGrowsByTheBlockAndWithoutBottomTrackIsTheOnlyOne) {
    data.user.BottomTrack = 0;
    Derive();
    slots[0].gpsPresent = true;
    slots[0].gps = GpsBlockMoving(45.0, 7.0, 0.0, 0.0001, 10.0);
    DistanceStep(ctx, 0);
    const double north = 0.0001 * (6378137.0 - 45.00005 * 237.611) * 0.0174532925199433;
    EXPECT_NEAR(state.gpsTrackLength, north, 1e-6);
    EXPECT_EQ(state.bottomTrackLength, MissingValue);
    slots[0].gps = GpsBlockMoving(45.0, 7.0, 0.0, 0.01, 10.0);  // 1.1 km in 2 s
    DistanceStep(ctx, 0);
    EXPECT_NEAR(state.gpsTrackLength, north, 1e-6);
}

}  // namespace
}  // namespace rm::test
