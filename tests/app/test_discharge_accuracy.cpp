// Accuracy against the virtual river: a crossing recorded by the simulator, opened and
// recomputed as the program does, must give the true discharge of the crossed span (top +
// middle + bottom) within 0.5 %, whatever the recorded coordinate system and track reference.
// The boat rocks, yaws and crabs, the flow runs at an angle to North, and the crossing starts
// from either bank, so that every step of the chain takes part. Every instrument mode the
// simulator records (pulse-coherent or not, bottom track 0, 1 or 2, beam, XYZ or ENU, firmware
// before and from 16.5) measures the same river, with its track, speed and area; a load that
// keeps every N-th profile or averages N measures it too.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>

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

namespace rm {
namespace {

// Pulse-coherent mode, bottom-track mode, recorded coordinates, firmware number.
using ModeCase = std::tuple<bool, int, int, int>;

std::string ModeName(const ::testing::TestParamInfo<ModeCase>& info) {
    const auto [pulseCoherent, bottomTrack, coords, firmware] = info.param;
    return std::string(pulseCoherent ? "PulseCoherent" : "Ordinary") + "_Bt" + std::to_string(bottomTrack) + "_" +
           (coords == kCoordBeam ? "Beam" : coords == kCoordXyz ? "Xyz" : "Enu") + "_Firmware" +
           std::to_string(firmware);
}

class InstrumentModeAccuracy : public ::testing::TestWithParam<ModeCase> {};

// Without bottom track the depth comes from the echo sounder and the track from GPS; the
// sounder sits at the transducer's depth, which processing must be told.
TEST_P(InstrumentModeAccuracy, EveryRecordedModeMeasuresTheRiverItsTrackAndItsArea) {
    const auto [pulseCoherent, bottomTrack, coords, firmware] = GetParam();
    TestApp t;
    const std::string path = t.folder.File("MODE.kvr");
    const sim::RecordingResult truth = doctest::RecordRiver(path, 100, [&](sim::RiverScenario& s) {
        s.instrument.pulseCoherent = pulseCoherent;
        s.instrument.bottomTrackMode = bottomTrack;
        s.instrument.coordinateSystem = coords;
        s.instrument.cpuVersion = firmware;
        s.instrument.cells = 25;
        s.crossing.intervalS = 2;
        s.crossing.boatSpeedMs = 0.2;
        s.crossing.pitchDeg = 3.0;
        s.crossing.rollDeg = 4.0;
        s.crossing.headingWobbleDeg = 10.0;
        s.crossing.crabAngleDeg = 15.0;
        s.river.flowAzimuthDeg = 30.0;
        s.river.maxVelocityMs = 1.5;  // fast enough that pulse-coherent velocities wrap
        s.velocityNoiseCms = 0.5;
        s.seed = 11;
        if (bottomTrack == 0) {
            s.echoSounder = true;
            s.gps = coords == kCoordBeam ? sim::GpsSource::External : sim::GpsSource::Internal;
        }
    });

    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    const int reference = bottomTrack == 0 ? kTrackRefGps : kTrackRefBottomTrack;
    if (bottomTrack == 0) {
        ASSERT_TRUE(AssignSetting(doc.Root(), "EchoSounder/TransducerDepth=0.2").ok);
    }
    doc.SetTrackReference(reference);
    doc.SetVelocityReference(reference);
    ASSERT_TRUE(doc.Recompute());

    const CDischargeData& m = doc.Measurement();
    const sim::SpanTruth& span = truth.truth;
    EXPECT_EQ(m.ProfileCount, 100);
    const double measured = static_cast<double>(m.TopDischarge) + m.MiddleDischarge + m.BottomDischarge;
    EXPECT_NEAR(measured, span.span.discharge, 0.005 * span.span.discharge)
        << "top " << m.TopDischarge << " (true " << span.layers.top << "), middle " << m.MiddleDischarge << " (true "
        << span.layers.middle << "), bottom " << m.BottomDischarge << " (true " << span.layers.bottom << ")";
    EXPECT_NEAR(m.MadeGood, span.span.width, 0.01 * span.span.width);
    EXPECT_NEAR(m.MadeGoodSpeed, 0.2, 0.002);
    EXPECT_NEAR(m.Area, span.span.area, 0.01 * span.span.area);
    EXPECT_NEAR(m.Interval, 2.0, 1e-9);
    if (bottomTrack != 0) {
        // The fastest profile: bottom-track values rounded to whole mm/s along the beams.
        EXPECT_NEAR(m.MaxBoatSpeed, 0.2, 0.005);
    }
}

INSTANTIATE_TEST_SUITE_P(VirtualRiver, InstrumentModeAccuracy,
                         ::testing::Combine(::testing::Bool(), ::testing::Values(0, 1, 2),
                                            ::testing::Values(kCoordBeam, kCoordXyz, kCoordEnu),
                                            ::testing::Values(100, 170)),
                         ModeName);

// "Select every N" and "Average over N": each kept profile stands for the N averaging intervals
// it represents, so the thinned load measures the river as the full one does.
TEST(LoadSelectionAccuracy, EveryNthProfileAndTheMeanOfNMeasureTheSameRiver) {
    TestApp t;
    const std::string path = t.folder.File("SEL.kvr");
    const sim::RecordingResult truth = doctest::RecordRiver(path, 120, [](sim::RiverScenario& s) {
        s.crossing.pitchDeg = 2.0;
        s.crossing.headingWobbleDeg = 5.0;
        s.velocityNoiseCms = 0.5;
    });
    const auto measure = [&](LoadGroupType type, int step) {
        LoadFields load;
        load.start = 1;
        load.end = 120;
        load.step = step;
        load.count = 120 / step;
        load.groupType = type;
        load.valid = 1;
        CSurveyKVRDoc doc(t.app, t.prompt);
        EXPECT_EQ(doc.OpenDocument(path, load), 1);
        EXPECT_TRUE(doc.Recompute());
        EXPECT_EQ(doc.Measurement().ProfileCount, 120 / step);
        return doc.Measurement();
    };
    const CDischargeData full = measure(LoadGroupType::EveryProfile, 1);
    const double river = truth.truth.span.discharge;
    EXPECT_NEAR(full.TotalDischarge, river, 0.005 * river);
    for (const LoadGroupType type : {LoadGroupType::SelectEvery, LoadGroupType::AverageOver}) {
        for (const int step : {4, 5}) {
            const CDischargeData thinned = measure(type, step);
            const std::string name = (type == LoadGroupType::SelectEvery ? "every " : "average over ") +
                                     std::to_string(step);
            EXPECT_NEAR(thinned.TotalDischarge, full.TotalDischarge, 0.01 * full.TotalDischarge) << name;
            EXPECT_NEAR(thinned.MadeGood, full.MadeGood, 0.01 * full.MadeGood) << name;
            EXPECT_NEAR(thinned.MadeGoodSpeed, full.MadeGoodSpeed, 0.01 * full.MadeGoodSpeed) << name;
            EXPECT_NEAR(thinned.Area, full.Area, 0.01 * full.Area) << name;
            EXPECT_NEAR(thinned.MaxBoatSpeed, full.MaxBoatSpeed, 0.01 * full.MaxBoatSpeed) << name;
        }
    }
}

}  // namespace
}  // namespace rm
