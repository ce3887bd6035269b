// Edge discharge: the bank shapes and the user estimate, the signed water speed against the
// mean course, the buffer carried from profile to profile, the mean boat vector by track
// reference, and when the profile step and the end of a transect compute the edges.
//
// Profiles are 5 m deep; the cell count of the edge sees 7 cells (90 % of 5 m less blanking and
// half a cell, in 0.5 m cells), all at the profile's water velocity.

#include <gtest/gtest.h>

#include <cmath>

#include "data/gps_velocity.h"
#include "processing/discharge_data.h"
#include "processing/discharge_fixture.h"
#include "processing/edges.h"

namespace rm::test {
namespace {

ProfileScene Water(double east, double north) {
    ProfileScene p;
    p.cellVelocity = [east, north](int) { return Vector2{east, north}; };
    return p;
}

class EdgeTest : public DischargeFixture {
protected:
    void SetUp() override {
        BuildDischarge();
        for (int i = 0; i < 3; ++i) SetProfile(i, Water(0.0, 100.0));
        state.count = 3;
    }
    // Boat east: the course bearing is 90 degrees, the water (north) flows to its left.
    EdgeRequest Request(int method, double distance) {
        EdgeRequest r;
        r.method = method;
        r.firstIndex = 0;
        r.numProfiles = 1;
        r.distance = distance;
        r.coefficient = 0.707;
        r.courseEast = 1.0;
        r.courseNorth = 0.0;
        return r;
    }
};

TEST_F(EdgeTest, SlopedBankIsHalfTheRectangleTimesSpeedAndCoefficient) {
    const double q = ComputeEdge(ctx, Request(kBankMethodSloped, 10.0));
    // H = 5 m, V = 1 m/s, A = 50 m2.
    EXPECT_NEAR(q, 25.0 * 1.0 * 0.707, 1e-9);
    EXPECT_DOUBLE_EQ(discharge.LeftEdgeArea, 25.0);
}

TEST_F(EdgeTest, VerticalBankUsesTheExponentialShapeFactor) {
    EdgeRequest r = Request(kBankMethodVertical, 10.0);
    r.side = kSideRight;
    const double e = std::exp(-4.0 * 10.0 / 5.0);
    EXPECT_NEAR(ComputeEdge(ctx, r), (1.0 - (5.0 * 0.0875 / 10.0) * (1.0 - e)) * 50.0 * 1.0 / (1.0 - 0.35 * e), 1e-9);
    EXPECT_DOUBLE_EQ(discharge.RightEdgeArea, 50.0);
    EXPECT_DOUBLE_EQ(discharge.LeftEdgeArea, 0.0);

    r.distance = 0.0;
    EXPECT_DOUBLE_EQ(ComputeEdge(ctx, r), 0.0);
    EXPECT_DOUBLE_EQ(discharge.RightEdgeArea, 0.0);
}

TEST_F(EdgeTest, RightStartBankAndWaterAgainstTheCourseFlipComputedEdgesButNotTheUserEstimate) {
    EdgeRequest r = Request(kBankMethodSloped, 10.0);
    r.startBank = 1;
    EXPECT_NEAR(ComputeEdge(ctx, r), -25.0 * 0.707, 1e-9);

    r.method = kBankMethodUserInput;
    r.userEstimate = 3.5;
    discharge.LeftEdgeArea = 7.0;
    EXPECT_DOUBLE_EQ(ComputeEdge(ctx, r), 3.5);
    EXPECT_DOUBLE_EQ(discharge.LeftEdgeArea, 7.0);  // no area for a user estimate

    // Water against the course direction counts negative.
    SetProfile(0, Water(0.0, -100.0));
    EXPECT_NEAR(ComputeEdge(ctx, Request(kBankMethodSloped, 10.0)), -25.0 * 0.707, 1e-9);
}

TEST_F(EdgeTest, WaterBufferCarriesTheEarlierProfileIntoTheNextMean) {
    SetProfile(1, Water(0.0, 200.0));
    EdgeRequest r = Request(kBankMethodSloped, 10.0);
    r.numProfiles = 2;
    // Profile 0: w = 700 / 7 = 100. Profile 1: w = (100 + 7 x 200) / 7, the earlier mean kept.
    const double second = (100.0 + 1400.0) / 7.0;
    const EdgeWater water = MeanEdgeWater(CollectEdgeWater(ctx, 0, 2), 90.0);
    EXPECT_EQ(water.profiles, 2);
    EXPECT_NEAR(water.speed, (100.0 + second) * 0.01 / 2, 1e-12);
    EXPECT_NEAR(ComputeEdge(ctx, r), 25.0 * water.speed * 0.707, 1e-9);
}

TEST_F(EdgeTest, RangeStopsAtTheProfilesTakenInAndEmptyRangeGivesNothing) {
    SetProfile(2, Water(0.0, 400.0));
    EdgeRequest r = Request(kBankMethodSloped, 10.0);
    r.firstIndex = 1;
    r.numProfiles = 5;
    state.count = 2;  // only profile 1 of the run has been taken in
    EXPECT_NEAR(ComputeEdge(ctx, r), 25.0 * 0.707, 1e-9);

    r.firstIndex = 2;
    EXPECT_DOUBLE_EQ(ComputeEdge(ctx, r), 0.0);
    EXPECT_DOUBLE_EQ(discharge.LeftEdgeArea, 0.0);

    r = Request(kBankMethodSloped, 10.0);
    r.courseEast = MissingValue;
    EXPECT_DOUBLE_EQ(ComputeEdge(ctx, r), 0.0);
}

class MeanBoatVectorTest : public DischargeFixture {
protected:
    void SetUp() override { BuildDischarge(); }
};

TEST_F(MeanBoatVectorTest, BottomTrackAveragesTheBoatMotionOverValidProfiles) {
    ProfileScene a, b, bad;
    a.bottomTrack = {-1.0, 0.5};
    b.bottomTrack = {-3.0, 1.5};
    bad.bottomTrack = {MissingValue, MissingValue};
    TakeProfile(0, a);
    TakeProfile(1, bad);
    TakeProfile(2, b);
    EXPECT_DOUBLE_EQ(discharge.MeanBoatEast, 2.0);
    EXPECT_DOUBLE_EQ(discharge.MeanBoatNorth, -1.0);
}

TEST_F(MeanBoatVectorTest, GpsTakesTheLastValidVelocityDividedByTheirNumber) {
    settings.TrackReference = kTrackRefGps;
    const GpsBlock first = GpsBlockMoving(50.0, 7.0, 0.00002, 0.0, 2.0);
    const GpsBlock last = GpsBlockMoving(50.0, 7.0, 0.0, 0.00003, 2.0);
    const GpsBlock tooShort = GpsBlockMoving(50.0, 7.0, 0.00002, 0.0, 0.5);
    const GpsBlock blocks[] = {first, last, tooShort};
    for (int i = 0; i < 3; ++i) {
        slots[static_cast<size_t>(i)].gpsPresent = true;
        slots[static_cast<size_t>(i)].gps = blocks[i];
        TakeProfile(i, ProfileScene{});
    }
    const GpsVelocity v = ComputeGpsVelocity(last);
    EXPECT_DOUBLE_EQ(discharge.MeanBoatEast, v.east * 0.1 / 2);
    EXPECT_DOUBLE_EQ(discharge.MeanBoatNorth, v.north * 0.1 / 2);

    settings.TrackReference = 0;
    TakeProfile(3, ProfileScene{});
    EXPECT_EQ(discharge.MeanBoatEast, MissingValue);
}

class EdgeStepTest : public DischargeFixture {
protected:
    void SetUp() override {
        BuildDischarge();
        settings.LeftProfile = 1;
        settings.RightProfile = 4;
        settings.CorrectedLeftDistance = 10.0;
        settings.CorrectedRightDistance = 20.0;
        settings.TopFitType = 0;  // constant layers: 10 m3/s a profile
    }
    void TakeAll(int n) {
        for (int i = 0; i < n; ++i) TakeProfile(i, Water(0.0, 100.0));
    }
};

TEST_F(EdgeStepTest, EdgesAreComputedOnceTheirProfilesAreIn) {
    TakeProfile(0, Water(0.0, 100.0));
    EXPECT_NEAR(discharge.LeftDischarge, 25.0 * 0.707, 1e-5);
    EXPECT_FLOAT_EQ(discharge.LeftDistance, 10.0f);
    EXPECT_FLOAT_EQ(discharge.RightDischarge, 0.0f);
    TakeProfile(1, Water(0.0, 100.0));
    TakeProfile(2, Water(0.0, 100.0));
    EXPECT_FLOAT_EQ(discharge.RightDischarge, 0.0f);
    TakeProfile(3, Water(0.0, 100.0));
    EXPECT_NEAR(discharge.RightDischarge, 50.0 * 0.707, 1e-5);
    EXPECT_FLOAT_EQ(discharge.RightDistance, 20.0f);
    // Four profiles of 10 m3/s and the two edges.
    EXPECT_NEAR(discharge.TotalDischarge, 40.0 + 75.0 * 0.707, 1e-4);
    EXPECT_NEAR(discharge.TotalWidth, 30.0, 1e-6);  // the bottom-track track stays at 0
}

TEST_F(EdgeStepTest, LiveMeasurementLeavesTheFarBankToTheEndOfTheTransect) {
    state.phase = 2;
    TakeAll(4);
    EXPECT_GT(discharge.LeftDischarge, 0.0f);
    EXPECT_FLOAT_EQ(discharge.RightDischarge, 0.0f);
    const float total = discharge.TotalDischarge;
    const float width = discharge.TotalWidth;

    UpdateEdgesAtEnd(ctx, true);  // the start bank's edge is already there
    EXPECT_FLOAT_EQ(discharge.TotalDischarge, total);
    UpdateEdgesAtEnd(ctx, false);
    EXPECT_NEAR(discharge.RightDischarge, 50.0 * 0.707, 1e-5);
    EXPECT_NEAR(discharge.TotalDischarge, total + 50.0 * 0.707, 1e-4);
    EXPECT_FLOAT_EQ(discharge.TotalWidth, width + 20.0f);
}

TEST_F(EdgeStepTest, StartAtTheRightBankSwapsWhichEdgeComesFirst) {
    settings.CorrectedStartBankSide = 1;
    settings.LeftProfile = 4;
    settings.RightProfile = 1;
    state.phase = 2;
    TakeAll(4);
    // The right bank is the start: its edge is computed live, with the sign of a right start.
    EXPECT_NEAR(discharge.RightDischarge, -50.0 * 0.707, 1e-5);
    EXPECT_FLOAT_EQ(discharge.LeftDischarge, 0.0f);
    UpdateEdgesAtEnd(ctx, false);
    EXPECT_NEAR(discharge.LeftDischarge, -25.0 * 0.707, 1e-5);
}

TEST_F(EdgeStepTest, RecomputationSignsTheKeptEdgeWaterByTheLatestCourse) {
    // The boat goes east twice, then west fast: the mean course turns from east to west, and the
    // left edge's northward water turns from along to against it.
    const auto run = [this](int phase) {
        discharge = CDischargeData{};
        state = RunningState{};
        state.ring = kRing;
        state.phase = phase;
        for (int i = 0; i < 4; ++i) {
            ProfileScene p = Water(0.0, 100.0);
            p.bottomTrack = {i < 2 ? -1.0 : 5.0, 0.0};
            TakeProfile(i, p);
            if (i == 1) {
                EXPECT_GT(discharge.LeftDischarge, 0.0f);
            }
        }
        return discharge.LeftDischarge;
    };
    const float live = run(0);
    EXPECT_NEAR(live, -25.0 * 0.707, 1e-5);
    EXPECT_FLOAT_EQ(run(3), live);
}

}  // namespace
}  // namespace rm::test
