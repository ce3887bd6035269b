// Accuracy against the virtual river: a crossing recorded by the simulator, opened and
// recomputed as the program does, must give the true discharge of the crossed span (top +
// middle + bottom) within 0.5 %, whatever the recorded coordinate system and track reference.
// The boat rocks, yaws and crabs, the flow runs at an angle to North, and the crossing starts
// from either bank, so that every step of the chain takes part.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "app/settings_path.h"
#include "document_test_support.h"

namespace rm {
namespace {

using doctest::RecordRiver;
using doctest::TestApp;

struct AccuracyCase {
    int recorded;  // coordinate system of the recording
    int track;     // track and velocity reference of the processing
    sim::GpsSource gps;
    bool fromRight;
};

std::string CaseName(const ::testing::TestParamInfo<AccuracyCase>& info) {
    const AccuracyCase& c = info.param;
    return std::string(c.recorded == kCoordBeam ? "Beam" : c.recorded == kCoordXyz ? "Xyz" : "Enu") +
           (c.track == kTrackRefGps ? "_Gps" : "_BottomTrack") +
           (c.gps == sim::GpsSource::External ? "_ExternalGps" : "_InternalGps") + (c.fromRight ? "_FromRight" : "");
}

class DischargeAccuracy : public ::testing::TestWithParam<AccuracyCase> {};

TEST_P(DischargeAccuracy, MeasuredTopMiddleAndBottomGiveTheTrueSpanDischarge) {
    const AccuracyCase& c = GetParam();
    TestApp t;
    const std::string path = t.folder.File("ACC.kvr");
    const sim::RecordingResult truth = RecordRiver(path, 120, [&](sim::RiverScenario& s) {
        s.instrument.coordinateSystem = c.recorded;
        s.instrument.cells = 25;
        s.gps = c.gps;
        s.crossing.boatSpeedMs = 0.4;
        s.crossing.startBank = c.fromRight ? sim::StartBank::Right : sim::StartBank::Left;
        s.crossing.pitchDeg = 3.0;
        s.crossing.rollDeg = 4.0;
        s.crossing.headingWobbleDeg = 10.0;
        s.crossing.crabAngleDeg = 15.0;
        s.river.flowAzimuthDeg = 30.0;
        s.velocityNoiseCms = 0.5;
        s.seed = 7;
    });

    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    if (c.fromRight) {
        ASSERT_TRUE(AssignSetting(doc.Root(), "Discharge/CorrectedStartBankSide=1").ok);
    }
    doc.SetTrackReference(c.track);
    doc.SetVelocityReference(c.track);
    ASSERT_TRUE(doc.Recompute());
    EXPECT_TRUE(t.prompt.messages.empty());

    const CDischargeData& m = doc.Measurement();
    EXPECT_EQ(m.ProfileCount, 120);
    const double measured = static_cast<double>(m.TopDischarge) + m.MiddleDischarge + m.BottomDischarge;
    const double expected = truth.truth.span.discharge;
    ASSERT_GT(expected, 10.0);
    EXPECT_NEAR(measured, expected, 0.005 * expected)
        << "top " << m.TopDischarge << " (true " << truth.truth.layers.top << "), middle " << m.MiddleDischarge
        << " (true " << truth.truth.layers.middle << "), bottom " << m.BottomDischarge << " (true "
        << truth.truth.layers.bottom << ")";
    // The track runs the length of the span.
    EXPECT_NEAR(m.MadeGood, truth.truth.span.width, 0.01 * truth.truth.span.width);
}

INSTANTIATE_TEST_SUITE_P(
    VirtualRiver, DischargeAccuracy,
    ::testing::Values(AccuracyCase{kCoordBeam, kTrackRefBottomTrack, sim::GpsSource::Internal, false},
                      AccuracyCase{kCoordXyz, kTrackRefBottomTrack, sim::GpsSource::Internal, false},
                      AccuracyCase{kCoordEnu, kTrackRefBottomTrack, sim::GpsSource::Internal, false},
                      AccuracyCase{kCoordBeam, kTrackRefGps, sim::GpsSource::Internal, false},
                      AccuracyCase{kCoordXyz, kTrackRefGps, sim::GpsSource::Internal, false},
                      AccuracyCase{kCoordEnu, kTrackRefGps, sim::GpsSource::Internal, false},
                      AccuracyCase{kCoordEnu, kTrackRefGps, sim::GpsSource::External, false},
                      AccuracyCase{kCoordBeam, kTrackRefBottomTrack, sim::GpsSource::Internal, true},
                      AccuracyCase{kCoordXyz, kTrackRefGps, sim::GpsSource::External, true}),
    CaseName);

}  // namespace
}  // namespace rm
