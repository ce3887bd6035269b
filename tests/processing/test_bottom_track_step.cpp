// The bottom-track step: status codes, the values of a good ensemble, the hold of the previous
// profile, the speed correction and the track.

#include <gtest/gtest.h>

#include "processing/bottom_track_step.h"
#include "processing/chain_fixture.h"
#include "processing/processing_steps.h"

namespace rm::test {
namespace {

class BottomTrackTest : public ChainFixture {
protected:
    void SetUp() override { Build(kCoordEnu); }
    // Runs profile `n` (from 1) whose raw record is in slot n - 1.
    void Run(int n) {
        state.count = n;
        BottomTrackStep(ctx, n - 1);
    }
    const SlotResults& Slot(int s) const { return slots[static_cast<size_t>(s)]; }
};

TEST_F(BottomTrackTest, StatusCountsBadBeamsAgainstNumBadBeams) {
    struct Case {
        int numBadBeams;
        uint8_t flag;
        std::array<uint16_t, 4> depth;
        uint8_t status;
    };
    const Case cases[] = {
        {0, 1, {300, 300, 300, 300}, 2}, {0, 1, {300, 0, 300, 300}, 3},     {1, 1, {300, 0, 300, 300}, 4},
        {2, 1, {32767, 0, 300, 300}, 5}, {3, 1, {0, 0, 0, 300}, 6},         {0, 0, {300, 300, 300, 300}, 3},
        {4, 1, {0, 0, 0, 0}, 3},
    };
    for (const Case& c : cases) {
        settings.NumBadBeams = c.numBadBeams;
        SetBottomTrack(0, c.flag, c.depth, {0, 0, 0, 0});
        Run(1);
        EXPECT_EQ(Slot(0).bottomStatus, c.status) << c.numBadBeams << " " << int(c.flag);
    }
}

TEST_F(BottomTrackTest, GoodEnsembleGivesMetresPerSecondAndMetres) {
    SetBottomTrack(0, 1, {250, 260, 270, 280}, {-500, 250, 10, 0});
    Run(1);
    const BottomTrackResult& bt = Slot(0).bottomTrack;
    EXPECT_EQ(bt.flag, 1);
    EXPECT_EQ(bt.Velocity, (std::array<float, 4>{-0.5f, 0.25f, 0.01f, 0.0f}));
    EXPECT_EQ(bt.Depth, (std::array<float, 4>{2.5f, 2.6f, 2.7f, 2.8f}));

    // Beam data go through BeamToXyz; column 0 is (1, 0, -0.5, 0.5), so 100 mm/s on beam 1 in
    // XYZ is X 0.1, Z -0.05, error 0.05 m/s.
    data.user.CoordinateSystem = kCoordBeam;
    settings.CoordinateSystem = kCoordXyz;
    SetBottomTrack(0, 1, {250, 260, 270, 280}, {100, 0, 0, 0});
    Run(1);
    EXPECT_EQ(Slot(0).bottomTrack.Velocity, (std::array<float, 4>{0.1f, 0.0f, -0.05f, 0.05f}));
}

TEST_F(BottomTrackTest, SoundSpeedFactorReachesVelocityAndDepthEvenThroughTheMatrix) {
    data.user.CoordinateSystem = kCoordBeam;
    settings.CoordinateSystem = kCoordXyz;
    settings.TemperatureCorrectionType = 1;
    settings.CorrectedTemperatureInDegC = 5.0;  // the setup says 15 degC
    const auto c = [](double t) { return 1449.2 + t * (4.6 + t * (-0.055 + 0.00029 * t)) - 35.0 * (1.34 - 0.01 * t); };
    const double f = static_cast<float>(c(5.0)) / c(15.0);
    SetBottomTrack(0, 1, {1000, 1000, 1000, 1000}, {1000, 0, 0, 0});
    Run(1);
    EXPECT_NEAR(Slot(0).bottomTrack.Velocity[0], 1.0 * f, 1e-6);
    EXPECT_NEAR(Slot(0).bottomTrack.Depth[2], 10.0 * f, 1e-5);
}

TEST_F(BottomTrackTest, BadEnsembleHoldsThePreviousProfile) {
    SetBottomTrack(0, 1, {300, 310, 320, 330}, {-400, 100, 0, 0});
    Run(1);
    SetBottomTrack(1, 1, {500, 0, 520, 530}, {32767, 999, 999, 999});  // one bad beam, NumBadBeams 0
    Run(2);
    EXPECT_EQ(Slot(1).bottomStatus, 3);
    EXPECT_EQ(Slot(1).bottomTrack.Velocity, Slot(0).bottomTrack.Velocity);
    EXPECT_EQ(Slot(1).bottomTrack.Depth, Slot(0).bottomTrack.Depth);

    // Allowed bad beam: status 4, the velocity is still held but the depths are the new ones.
    settings.NumBadBeams = 1;
    Run(2);
    EXPECT_EQ(Slot(1).bottomStatus, 4);
    EXPECT_FLOAT_EQ(Slot(1).bottomTrack.Velocity[0], -0.4f);
    EXPECT_EQ(Slot(1).bottomTrack.Depth, (std::array<float, 4>{5.0f, 0.0f, 5.2f, 5.3f}));
}

TEST_F(BottomTrackTest, BadFirstProfileIsMissingAndHoldWrapsAroundTheRing) {
    SetBottomTrack(0, 0, {300, 300, 300, 300}, {1, 1, 1, 1});
    Run(1);
    EXPECT_EQ(Slot(0).bottomTrack.Velocity[0], MissingValueF);
    EXPECT_EQ(Slot(0).bottomTrack.Depth[0], MissingValueF);

    for (int n = 1; n <= 4; ++n) {
        SetBottomTrack(n - 1, 1, {300, 300, 300, 300}, {static_cast<int16_t>(-100 * n), 0, 0, 0});
        Run(n);
    }
    SetBottomTrack(0, 0, {300, 300, 300, 300}, {1, 1, 1, 1});
    Run(5);  // slot 0 again: holds profile 4 from the last slot
    EXPECT_FLOAT_EQ(Slot(0).bottomTrack.Velocity[0], -0.4f);
}

TEST_F(BottomTrackTest, SlowEnsemblesAreScaledByTheSpeedCorrection) {
    settings.BottomTrackThreshold = 0.5;  // m/s
    settings.BottomTrackFactor = 2.0;
    SetBottomTrack(0, 1, {300, 300, 300, 300}, {300, 300, 0, 0});  // 424 mm/s
    Run(1);
    EXPECT_FLOAT_EQ(Slot(0).bottomTrack.Velocity[0], 0.6f);
    SetBottomTrack(0, 1, {300, 300, 300, 300}, {400, 300, 0, 0});  // 500 mm/s: not below
    Run(1);
    EXPECT_FLOAT_EQ(Slot(0).bottomTrack.Velocity[0], 0.4f);
}

TEST_F(BottomTrackTest, TrackMovesAgainstTheBedOverTheAveragingInterval) {
    SetBottomTrack(0, 1, {300, 300, 300, 300}, {-300, 400, 0, 0});
    Run(1);
    SetBottomTrack(1, 0, {300, 300, 300, 300}, {32767, 0, 0, 0});  // bad ensemble: holds the velocity
    Run(2);
    // T = 2 s: each profile moves the boat by (0.6, -0.8) m, 1 m long.
    EXPECT_NEAR(Slot(0).bottomTrackPoint.East, 0.6, 1e-6);
    EXPECT_NEAR(Slot(1).bottomTrackPoint.East, 1.2, 1e-6);
    EXPECT_NEAR(Slot(1).bottomTrackPoint.North, -1.6, 1e-6);
    EXPECT_NEAR(Slot(1).bottomTrackPoint.Distance, 2.0, 1e-6);

    state.measurementState = 3;  // paused: the ensemble is marked bad, its values stay
    SetBottomTrack(2, 1, {300, 300, 300, 300}, {0, 100, 0, 0});
    Run(3);
    EXPECT_EQ(Slot(2).bottomStatus, 3);
    EXPECT_FLOAT_EQ(Slot(2).bottomTrack.Velocity[1], 0.1f);
}

}  // namespace
}  // namespace rm::test
