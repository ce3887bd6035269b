// Track values, area and maxima of a measurement. Four profiles 5 m deep, 10 m3/s each, the boat
// going east at 1 m/s for 2 s a profile, so that profile i ends 2 (i + 1) m east of the start;
// profiles 2 to 4 (from 1) form the selected range.

#include <gtest/gtest.h>

#include "processing/discharge_data.h"
#include "processing/discharge_fixture.h"

namespace rm::test {
namespace {

class TrackAreaTest : public DischargeFixture {
protected:
    void SetUp() override {
        BuildDischarge();
        settings.TopFitType = 0;
        settings.LeftProfile = 2;
        settings.RightProfile = 4;
    }
    ProfileScene SceneOf(int i) const {
        ProfileScene p;
        p.track = {2.0 * (i + 1), 0.0, 2.0 * (i + 1)};
        return p;
    }
    void TakeAll() {
        for (int i = 0; i < 4; ++i) {
            SetProfile(i, SceneOf(i));
            Raw(i).header.hour = static_cast<uint8_t>(10 + i);
            Take(i);
        }
    }
};

TEST_F(TrackAreaTest, RecordFollowsTheTrackOfTheRange) {
    SetProfile(0, SceneOf(0));
    Take(0);
    EXPECT_EQ(discharge.ProfileCount, 0);
    EXPECT_FLOAT_EQ(discharge.MadeGood, 0.0f);
    TakeAll();
    EXPECT_EQ(discharge.ProfileCount, 3);
    EXPECT_DOUBLE_EQ(discharge.TrackLength, 8.0);
    EXPECT_FLOAT_EQ(discharge.MadeGood, 8.0f);
    EXPECT_DOUBLE_EQ(discharge.MadeGoodSpeed, 8.0 / (2.0 * 4));  // interval x all profiles taken in
    EXPECT_FLOAT_EQ(discharge.TotalWidth, 8.0f);
    EXPECT_EQ(discharge.startTime.hour, 11);
    EXPECT_EQ(discharge.endTime.hour, 13);
}

TEST_F(TrackAreaTest, AreaProjectsTheBoatOnTheFinalCourseAndAddsTheEdges) {
    settings.CorrectedLeftDistance = 10.0;
    settings.CorrectedRightDistance = 20.0;
    TakeAll();
    // Three profiles of 1 m/s x 5 m x 2 s; sloped edges 5 x 10 / 2 and 5 x 20 / 2.
    EXPECT_NEAR(discharge.Area, 30.0 + 25.0 + 50.0, 1e-9);
    EXPECT_FLOAT_EQ(discharge.TotalWidth, 38.0f);
    const double total = 30.0 + 75.0 * 0.707;
    EXPECT_NEAR(discharge.TotalDischarge, total, 1e-4);
    EXPECT_NEAR(discharge.MeanVelocity, total / 105.0, 1e-6);
}

TEST_F(TrackAreaTest, CourseAlongNorthUsesTheNorthComponent) {
    for (int i = 0; i < 4; ++i) {
        ProfileScene p;
        p.cellVelocity = [](int) { return Vector2{100.0, 0.0}; };
        p.bottomTrack = {0.0, -1.0};
        p.track = {0.0, 2.0 * (i + 1), 2.0 * (i + 1)};
        TakeProfile(i, p);
    }
    EXPECT_NEAR(discharge.Area, 30.0, 1e-9);
    EXPECT_NEAR(discharge.MeanVelocity, 1.0, 1e-6);
}

TEST_F(TrackAreaTest, FinalPointFarEastMeansCourseNorthAndNoArea) {
    for (int i = 0; i < 4; ++i) {
        ProfileScene p = SceneOf(i);
        if (i == 3) p.track = {4000.0, 0.0, 4000.0};
        TakeProfile(i, p);
    }
    // Course 0: the projection takes the boat's north component, which is 0; an area that is
    // zero but for rounding leaves the mean velocity alone.
    EXPECT_NEAR(discharge.Area, 0.0, 1e-12);
    // As profile 3 (from 1) left it: 20 m3/s through 2 x 10 m2.
    EXPECT_NEAR(discharge.MeanVelocity, 1.0, 1e-6);
}

TEST_F(TrackAreaTest, GpsTrackReferenceTakesTheGpsTrack) {
    settings.TrackReference = kTrackRefGps;
    for (int i = 0; i < 4; ++i) {
        SetProfile(i, SceneOf(i));
        slots[static_cast<size_t>(i)].gpsTrackPoint = {3.0 * (i + 1), 4.0 * (i + 1), 5.0 * (i + 1)};
        Take(i);
    }
    EXPECT_DOUBLE_EQ(discharge.TrackLength, 20.0);
    EXPECT_FLOAT_EQ(discharge.MadeGood, 20.0f);
}

TEST_F(TrackAreaTest, MaximaTakeTheLargestOfTheRange) {
    settings.LeftProfile = 1;
    ProfileScene slow, deep;
    slow.bottomTrack = {-1.0, 0.0};
    deep.bottomTrack = {-3.0, -4.0};  // 5 m/s
    deep.depth = 6.0;
    deep.cellVelocity = [](int) { return Vector2{30.0, 40.0}; };
    TakeProfile(0, slow);
    UpdateMaxima(ctx, 0);
    TakeProfile(1, deep);
    UpdateMaxima(ctx, 1);
    EXPECT_FLOAT_EQ(discharge.MaxBoatSpeed, 5.0f);
    EXPECT_FLOAT_EQ(discharge.MaxDepth, 6.0f);
    EXPECT_FLOAT_EQ(discharge.MaxMeanSpeed, 1.0f);  // 100 cm/s beats 50 cm/s

    slots[1].processed.Depth = MissingValue;  // a profile without depth does not count
    UpdateMaxima(ctx, 1);
    EXPECT_FLOAT_EQ(discharge.MaxDepth, 6.0f);

    Raw(2).hasCtd = true;
    Raw(2).ctd.temperature = 12.5f;
    Raw(2).ctd.salinity = 0.3f;
    UpdateMaxima(ctx, 2);
    Raw(2).ctd.temperature = 14.0f;
    UpdateMaxima(ctx, 2);
    EXPECT_FLOAT_EQ(state.ctdMinTemperature, 12.5f);
    EXPECT_FLOAT_EQ(state.ctdMaxTemperature, 14.0f);
    EXPECT_FLOAT_EQ(state.ctdMaxSalinity, 0.3f);
}

}  // namespace
}  // namespace rm::test
