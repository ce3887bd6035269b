// The discharge of single profiles: layer geometry, range means, the discharge of each layer
// with its sign and unit, the boat vector of each track reference, the shallow-water cell with
// the gap blend, the layer display arrays, and what profiles without water or outside the
// selected range give. Expected values are worked by hand from the fixture's geometry: cell 0
// from 0.75 m to 1.25 m below the surface, 0.5 m cells, 2 s interval, boat east at 1 m/s.

#include <gtest/gtest.h>

#include "data/gps_velocity.h"
#include "processing/discharge_data.h"
#include "processing/discharge_fixture.h"

namespace rm::test {
namespace {

class ProfileDischargeTest : public DischargeFixture {
protected:
    void SetUp() override {
        BuildDischarge();
        settings.TopFitType = 0;  // constant top; the bottom follows ("Same Top and Bottom")
    }
};

TEST_F(ProfileDischargeTest, UniformFlowSplitsIntoTopMiddleAndBottomLayers) {
    TakeProfile(0, ProfileScene{});
    // H = 5, cells 0..5 measured: D1 = 5 - 0.75 = 4.25, D2 = 5 - 3.75 = 1.25.
    EXPECT_DOUBLE_EQ(working.TopEdge, 4.25);
    EXPECT_DOUBLE_EQ(working.BottomEdge, 1.25);
    EXPECT_DOUBLE_EQ(working.FirstCellDepth, 1.0);
    EXPECT_DOUBLE_EQ(working.LastCellDepth, 3.5);
    // q = 1 m/s x 100 cm/s x t x 2 s x 0.01: 0.75 m, 3 m, 1.25 m of water.
    const ProcessedProfile& p = Result(0);
    EXPECT_TRUE(Close(p.TopQ, 1.5));
    EXPECT_TRUE(Close(p.MiddleQ, 6.0));
    EXPECT_TRUE(Close(p.BottomQ, 2.5));
    EXPECT_TRUE(Close(p.TotalQ, 10.0));
    EXPECT_FLOAT_EQ(p.MeanNorth, 100.0f);
    EXPECT_FLOAT_EQ(p.MeanEast, 0.0f);
    EXPECT_DOUBLE_EQ(p.BoatEast, -1.0);
    EXPECT_DOUBLE_EQ(p.MeasuredNorth, 1.0);
    EXPECT_DOUBLE_EQ(p.MeasuredThickness, 3.0);
    EXPECT_DOUBLE_EQ(p.Depth, 5.0);

    TakeProfile(1, ProfileScene{});
    EXPECT_TRUE(Close(discharge.TopDischarge, 3.0));
    EXPECT_TRUE(Close(discharge.MiddleDischarge, 12.0));
    EXPECT_TRUE(Close(discharge.BottomDischarge, 5.0));
    EXPECT_TRUE(Close(discharge.TotalDischarge, 20.0));
    EXPECT_EQ(discharge.ProfileCount, 2);
}

TEST_F(ProfileDischargeTest, RangeMeansTakeTheFirstAndLastCells) {
    settings.SameTopBottom = 1;  // independent bottom, also constant
    settings.BottomFitType = 0;
    settings.NumTopCells = 2;
    settings.NumBottomCells = 2;
    ProfileScene scene;
    scene.cellVelocity = [](int j) { return Vector2{0.0, 100.0 + 10.0 * j}; };
    TakeProfile(0, scene);
    // Top: cells 0, 1 -> 105; bottom: cells 4, 5 -> 145; measured: cells 0..5 -> 125.
    EXPECT_DOUBLE_EQ(working.TopRangeMean.North, 105.0);
    EXPECT_DOUBLE_EQ(working.BottomRangeMean.North, 145.0);
    EXPECT_DOUBLE_EQ(working.MeasuredMean.North, 125.0);
    const ProcessedProfile& p = Result(0);
    EXPECT_TRUE(Close(p.TopQ, 105.0 * 0.75 * 0.02));
    EXPECT_TRUE(Close(p.MiddleQ, 125.0 * 3.0 * 0.02));
    EXPECT_TRUE(Close(p.BottomQ, 145.0 * 1.25 * 0.02));
    EXPECT_FLOAT_EQ(p.MeanNorth, (0.75f * 105 + 3 * 125 + 1.25f * 145) / 5);
}

TEST_F(ProfileDischargeTest, SignFollowsCrossingDirectionAndStartBank) {
    // Water east, boat north: looking downstream the boat moves from the right bank to the left.
    ProfileScene scene;
    scene.cellVelocity = [](int) { return Vector2{100.0, 0.0}; };
    scene.bottomTrack = {0.0, -1.0};
    TakeProfile(0, scene);
    const ProcessedProfile fromLeft = Result(0);
    const ProfileWorkingValues layersFromLeft = working;
    EXPECT_TRUE(Close(fromLeft.TotalQ, -10.0));

    settings.CorrectedStartBankSide = 1;
    discharge = CDischargeData{};
    state.dischargeSums = DischargeRunningSums{};
    TakeProfile(0, scene);
    const ProcessedProfile& fromRight = Result(0);
    EXPECT_TRUE(Close(fromRight.TotalQ, 10.0));
    EXPECT_FLOAT_EQ(fromRight.TopQ, -fromLeft.TopQ);
    EXPECT_FLOAT_EQ(fromRight.MiddleQ, -fromLeft.MiddleQ);
    EXPECT_FLOAT_EQ(fromRight.BottomQ, -fromLeft.BottomQ);
    EXPECT_TRUE(Close(discharge.TotalDischarge, 10.0));
    for (int i = 0; i < kLayerCount; ++i) {
        if (layersFromLeft.LayerQ[static_cast<size_t>(i)] == MissingValueF) continue;
        EXPECT_FLOAT_EQ(working.LayerQ[static_cast<size_t>(i)], -layersFromLeft.LayerQ[static_cast<size_t>(i)]) << i;
    }
    EXPECT_FLOAT_EQ(working.CellQ[0], -layersFromLeft.CellQ[0]);
    // The depth-averaged velocity does not depend on the bank.
    EXPECT_FLOAT_EQ(fromRight.MeanEast, fromLeft.MeanEast);
}

TEST_F(ProfileDischargeTest, BoatVectorComesFromTheTrackReference) {
    Raw(0).hasGps = true;
    slots[0].gpsPresent = true;
    slots[0].gps = GpsBlockMoving(50.0, 7.0, 0.00005, 0.0, 2.0);  // about 1.8 m/s east
    const GpsVelocity gps = ComputeGpsVelocity(slots[0].gps);
    ASSERT_TRUE(gps.IsValid());

    settings.TrackReference = kTrackRefGps;
    ProfileScene scene;
    scene.bottomTrack = {-5.0, 0.0};  // must not be used
    TakeProfile(0, scene);
    EXPECT_DOUBLE_EQ(Result(0).BoatEast, gps.east * -0.001);
    EXPECT_DOUBLE_EQ(Result(0).GpsEast, gps.east * -0.001);
    EXPECT_DOUBLE_EQ(Result(0).BottomTrackEast, -5.0);
    EXPECT_TRUE(Close(Result(0).MiddleQ, gps.east * 0.001 * 100.0 * 3.0 * 0.02));

    // Fixes less than a second apart give no GPS velocity: the boat vector is zero, not missing.
    slots[0].gps = GpsBlockMoving(50.0, 7.0, 0.00005, 0.0, 0.5);
    TakeProfile(0, scene);
    EXPECT_DOUBLE_EQ(Result(0).BoatEast, 0.0);
    EXPECT_FLOAT_EQ(Result(0).TotalQ, 0.0f);

    settings.TrackReference = kTrackRefBottomTrack;
    scene.bottomTrack = {MissingValue, 0.0};
    TakeProfile(0, scene);
    EXPECT_DOUBLE_EQ(Result(0).BoatEast, 0.0);
    EXPECT_FLOAT_EQ(Result(0).TotalQ, 0.0f);
}

TEST_F(ProfileDischargeTest, VelocityErrorWeighsBeamDeviationsAlongTheMean) {
    ProfileScene scene;
    scene.cellVelocity = [](int) { return Vector2{60.0, 80.0}; };
    SetProfile(0, scene);
    for (int j = 0; j < 8; ++j) {
        Raw(0).StdError(0, j) = 20;
        Raw(0).StdError(1, j) = 10;
    }
    Take(0);
    // c = 6: e0 = sqrt(6 x 400 / 6) / 6 x 0.1, e1 = sqrt(6 x 100 / 6) / 6 x 0.1.
    const double e0 = 20.0 / 6.0 * 0.1, e1 = 10.0 / 6.0 * 0.1;
    const double expected = std::sqrt((3600 * e0 * e0 + 6400 * e1 * e1) / 10000);
    EXPECT_NEAR(Result(0).VelocityError, expected, 1e-6);
}

TEST_F(ProfileDischargeTest, ProfileWithoutWaterHasNoDischargeAndAddsNothing) {
    ProfileScene dry;
    dry.waterCells = 0;
    TakeProfile(0, dry);
    const ProcessedProfile& p = Result(0);
    for (float v : {p.TotalQ, p.TopQ, p.MiddleQ, p.BottomQ, p.VelocityError, p.MeanEast, p.MeanNorth}) {
        EXPECT_EQ(v, MissingValueF);
    }
    for (double v : {p.MeasuredEast, p.MeasuredNorth, p.BoatEast, p.BoatNorth, p.MeasuredThickness}) {
        EXPECT_EQ(v, MissingValue);
    }
    EXPECT_DOUBLE_EQ(p.Depth, 5.0);
    EXPECT_FLOAT_EQ(p.QualityIndex, 100.0f);
    EXPECT_FLOAT_EQ(discharge.TotalDischarge, 0.0f);

    // Water cells that hold no valid velocity are the same as none.
    ProfileScene bad;
    bad.cellVelocity = [](int) { return Vector2{MissingValue, MissingValue}; };
    TakeProfile(1, bad);
    EXPECT_EQ(Result(1).MiddleQ, MissingValueF);
    EXPECT_FLOAT_EQ(discharge.MiddleDischarge, 0.0f);
}

TEST_F(ProfileDischargeTest, ProfilesOutsideTheRangeGetMeansButNoSums) {
    settings.LeftProfile = 3;
    settings.RightProfile = 5;
    TakeProfile(0, ProfileScene{});
    const ProcessedProfile& p = Result(0);
    EXPECT_FLOAT_EQ(p.MeanNorth, 100.0f);
    EXPECT_FLOAT_EQ(p.TopQ, 0.0f);
    EXPECT_FLOAT_EQ(p.TotalQ, 0.0f);
    EXPECT_DOUBLE_EQ(p.BoatEast, 0.0);
    EXPECT_EQ(discharge.ProfileCount, 0);
    EXPECT_FLOAT_EQ(discharge.MiddleDischarge, 0.0f);
    EXPECT_NE(p.QualityIndex, 0.0f);

    TakeProfile(1, ProfileScene{});
    TakeProfile(2, ProfileScene{});
    EXPECT_EQ(discharge.ProfileCount, 1);
    EXPECT_TRUE(Close(discharge.MiddleDischarge, 6.0));
}

class ShallowCellDischargeTest : public DischargeFixture {
protected:
    void SetUp() override {
        BuildDischarge(2);
        settings.TopFitType = 0;
        // Shallow cell: blank 0.2 m, pulse 0.2 m, cell 0.3 m: from 0.3 m to 0.6 m, centre 0.45 m.
        SetShallowGeometry(20, 20, 30);
        SetShallowVelocity(0, 0, 500);  // 50 cm/s north
    }
};

TEST_F(ShallowCellDischargeTest, ShallowCellBlendsThroughTheGapIntoTheMeasuredLayer) {
    ProfileScene scene;
    scene.shallowCells = 1;
    TakeProfile(0, scene);
    EXPECT_EQ(working.displayState, 2);
    EXPECT_DOUBLE_EQ(working.TopEdge, 4.7);
    EXPECT_DOUBLE_EQ(working.FirstCellDepth, 0.45);
    // Gap from 0.3 m to 0.75 m; G = 1 - 0.525, K = 1 - 0.45: 100 + (50 - 100) 0.475 / 0.55.
    const double gap = 100.0 - 50.0 * 0.475 / 0.55;
    EXPECT_NEAR(working.GapVelocity.North, gap, 1e-9);
    const double measured = (gap * 0.45 + 300.0) / 3.45;
    EXPECT_NEAR(working.MeasuredMean.North, measured, 1e-9);
    // Top range: cell 0 (0.5 m) blended with the shallow cell (0.3 m).
    EXPECT_NEAR(working.TopRangeMean.North, (50.0 * 0.3 + 100.0 * 0.5) / 0.8, 1e-9);
    EXPECT_TRUE(Close(Result(0).MiddleQ, measured * 3.45 * 0.02));
    EXPECT_TRUE(Close(Result(0).TopQ, 81.25 * 0.3 * 0.02));
    EXPECT_DOUBLE_EQ(Result(0).MeasuredThickness, 3.45);
    EXPECT_TRUE(Close(working.ShallowCellQ, 50.0 * 0.3 * 0.02));
    EXPECT_TRUE(Close(working.GapQ, gap * 0.15 * 0.02));
    EXPECT_FLOAT_EQ(working.LayerDepth[10], 0.45f);
    EXPECT_FLOAT_EQ(working.LayerDepth[11], 1.0f);  // cell 0 behind the shallow cell
    EXPECT_FLOAT_EQ(working.LayerDepth[16], 3.5f);  // cell 5
    EXPECT_NEAR(working.LayerDepth[17], 3.5 + 0.5 * 0.15, 1e-6);  // first bottom sub-layer
}

// The bottom range blends with the shallow cell when it takes in every cell, the shallow one
// too: with two water cells a range of three cells does, a range of two does not.
TEST_F(ShallowCellDischargeTest, BottomRangeOfAllCellsBlendsWithTheShallowCell) {
    ProfileScene scene;
    scene.waterCells = 2;
    scene.shallowCells = 1;
    // Bottom edge: H 5 - last cell centre 1.5 - half a cell = 3.25 m of constant-fit bottom.
    settings.NumTopCells = 3;  // the bottom takes the top's count ("Same Top and Bottom")
    TakeProfile(0, scene);
    const double blended = (50.0 * 0.3 + 100.0 * 1.0) / 1.3;  // shallow 0.3 m, two cells of 0.5 m
    EXPECT_NEAR(working.BottomRangeMean.North, blended, 1e-9);
    EXPECT_TRUE(Close(Result(0).BottomQ, blended * 3.25 * 0.02));

    settings.NumTopCells = 2;
    TakeProfile(0, scene);
    EXPECT_DOUBLE_EQ(working.BottomRangeMean.North, 100.0);
    EXPECT_TRUE(Close(Result(0).BottomQ, 100.0 * 3.25 * 0.02));
}

TEST_F(ShallowCellDischargeTest, ShallowCellAloneIsTheMeasuredLayer) {
    ProfileScene scene;
    scene.waterCells = 0;
    scene.shallowCells = 1;
    TakeProfile(0, scene);
    EXPECT_DOUBLE_EQ(working.MeasuredMean.North, 50.0);
    EXPECT_DOUBLE_EQ(working.BottomEdge, 4.4);
    EXPECT_DOUBLE_EQ(working.LastCellDepth, 0.45);
    EXPECT_TRUE(Close(Result(0).MiddleQ, 50.0 * 0.3 * 0.02));
    EXPECT_EQ(working.GapQ, MissingValue);
}

TEST_F(ProfileDischargeTest, LayerArraysPlaceTopCellsAndBottomLayersInOrder) {
    settings.TopFitType = 1;  // power law for the display of the cells
    TakeProfile(0, ProfileScene{});
    for (int k = 0; k < 10; ++k) {
        EXPECT_NEAR(working.LayerDepth[static_cast<size_t>(k)], (k + 0.5) * 0.1, 1e-6) << k;
        // Bottom sub-layers behind the 6 cells: from the last cell centre (3.5 m) to the bed.
        EXPECT_NEAR(working.LayerDepth[static_cast<size_t>(16 + k)], 3.5 + (k + 0.5) * 0.15, 1e-6) << k;
    }
    for (int j = 0; j < 6; ++j) EXPECT_FLOAT_EQ(working.LayerDepth[static_cast<size_t>(10 + j)], 1.0f + 0.5f * j);
    EXPECT_EQ(working.LayerDepth[26], MissingValueF);
    // Every cell with a velocity has its measured discharge, 100 cm/s x 0.5 m x 2 s x 0.01.
    for (int j = 0; j < 8; ++j) EXPECT_TRUE(Close(working.CellQ[static_cast<size_t>(j)], 1.0)) << j;
    // The power-law estimates of the water cells tile the measured layer: their sum over the
    // cells' thickness is the measured layer's discharge.
    double sum = 0.0;
    for (int j = 0; j < 6; ++j) sum += working.LayerQ[static_cast<size_t>(10 + j)] * kCell;
    EXPECT_TRUE(Close(sum, Result(0).MiddleQ, 1e-5));
}

}  // namespace
}  // namespace rm::test
