// Recordings of the virtual river written through the data file writer and read back: the file
// holds what the options asked for, processing it by the reference chain gives the truth, and a
// seed reproduces it.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "data/byte_io.h"
#include "data/gps_velocity.h"
#include "data/nmea_echo_depth.h"
#include "data/nmea_gps_fix.h"
#include "data/nmea_sentences.h"
#include "data/pmk_file.h"
#include "sim/recording_writer.h"
#include "sim_test_support.h"

namespace rm::sim {
namespace {

RiverScenario Scenario(const simtest::ScratchFolder& dir, const std::string& name) {
    RiverScenario s;
    s.outputPath = dir.File(name + ".kvr");
    s.crossing.profiles = 60;
    s.crossing.boatSpeedMs = 0.7;
    s.crossing.start = CivilTime{2023, 12, 31, 23, 59, 30};
    return s;
}

RecordingResult Write(const RiverScenario& s) {
    RecordingPrompt prompt;
    RecordingResult r = WriteRiverRecording(s, prompt);
    EXPECT_TRUE(r.ok) << r.error;
    EXPECT_TRUE(prompt.messages.empty());
    return r;
}

TEST(RecordingTest, FileReadsBackWithTheRequestedSetup) {
    simtest::ScratchFolder dir;
    RiverScenario s = Scenario(dir, "setup");
    s.instrument.beams = 3;
    s.instrument.cells = 24;
    s.instrument.frequencyIndex = 5;
    s.instrument.coordinateSystem = 1;
    s.instrument.cellSizeCm = 20;
    s.crossing.intervalS = 2;
    s.crossing.boatSpeedMs = 0.35;
    // Firmware 16.0 has the first two bottom-track bytes swapped in the file; the flag must
    // still come back at byte 1.
    s.instrument.cpuVersion = 160;
    s.instrument.bottomTrackMode = 2;
    Write(s);

    simtest::Recording rec;
    simtest::ReadRecording(s.outputPath, rec);
    ASSERT_EQ(rec.profiles.size(), 60u);
    EXPECT_EQ(rec.data.conf.Nbeams, 3);
    EXPECT_EQ(rec.data.conf.KvrType, 5);
    EXPECT_EQ(rec.data.user.NumberOfCells, 24);
    EXPECT_FLOAT_EQ(rec.data.user.CellSizeCm, 20.0f);
    EXPECT_EQ(rec.data.user.CoordinateSystem, 1);
    EXPECT_EQ(rec.data.user.AveragingInterval, 2);
    EXPECT_EQ(rec.data.conf.CPUSoftwareVerNum, 160);
    EXPECT_EQ(rec.data.user.BottomTrack, 2);
    EXPECT_EQ(rec.data.user.DeploymentName, "setup");
    // Profile 1 starts at the start time; 60 profiles of 2 s later the year has turned.
    const ProfileTime first = rec.data.FirstProfileTime(), last = rec.data.LastProfileTime();
    EXPECT_EQ((std::vector<int>{first.year, first.hour, first.second}), (std::vector<int>{2023, 23, 30}));
    // 23:59:30 + 59 x 2 s
    EXPECT_EQ((std::vector<int>{last.year, last.month, last.day, last.minute, last.second}),
              (std::vector<int>{2024, 1, 1, 1, 28}));
    for (size_t i = 0; i < rec.profiles.size(); ++i) {
        const ProfileRecord& p = rec.profiles[i];
        EXPECT_EQ(p.header.profileNumber, i + 1);
        EXPECT_EQ(p.cells, 24);
        ASSERT_TRUE(p.hasBottomTrack);
        EXPECT_EQ(p.bottomTrack[1], 1);  // the flag, where processing reads it
        EXPECT_EQ(p.bottomTrack[0], 0);
        EXPECT_TRUE(p.hasShallowWater);
        EXPECT_FALSE(p.hasGps);
    }
}

TEST(RecordingTest, ReferenceProcessingFindsTheTrueDischarge) {
    struct Case {
        int beams, coords;
        StartBank bank;
        double wobble, pitch, roll, azimuth;
    };
    for (const Case& c : {Case{4, 0, StartBank::Left, 0, 0, 0, 0}, Case{4, 1, StartBank::Right, 6, 3, 5, 200},
                          Case{3, 0, StartBank::Right, 10, 5, 2, 75}, Case{3, 2, StartBank::Left, 4, 2, 2, 310}}) {
        simtest::ScratchFolder dir;
        RiverScenario s = Scenario(dir, "q");
        s.instrument.beams = c.beams;
        s.instrument.coordinateSystem = c.coords;
        s.crossing.startBank = c.bank;
        s.crossing.headingWobbleDeg = c.wobble;
        s.crossing.pitchDeg = c.pitch;
        s.crossing.rollDeg = c.roll;
        s.river.flowAzimuthDeg = c.azimuth;
        const RecordingResult r = Write(s);
        simtest::Recording rec;
        simtest::ReadRecording(s.outputPath, rec);
        const simtest::ReferenceDischarge q = simtest::ComputeReferenceDischarge(rec, c.bank == StartBank::Right);
        const std::string what = std::to_string(c.beams) + " beams, coords " + std::to_string(c.coords);
        // Against the integral: the total closely, the layers as far as sampling the jumps of
        // the cell count allows.
        EXPECT_NEAR(q.Total() / r.truth.span.discharge, 1.0, 5e-4) << what;
        EXPECT_NEAR(q.top / r.truth.layers.top, 1.0, 5e-4) << what;
        EXPECT_NEAR(q.middle / r.truth.layers.middle, 1.0, 5e-3) << what;
        EXPECT_NEAR(q.bottom / r.truth.layers.bottom, 1.0, 2e-2) << what;
        // Against the same sum over the profiles: every layer closely.
        EXPECT_NEAR(q.Total() / r.sampled.Total(), 1.0, 5e-4) << what;
        EXPECT_NEAR(q.middle / r.sampled.middle, 1.0, 1e-3) << what;
        EXPECT_NEAR(q.bottom / r.sampled.bottom, 1.0, 3e-3) << what;
    }
}

TEST(RecordingTest, NoisyRecordingStaysWithinHalfAPercent) {
    simtest::ScratchFolder dir;
    RiverScenario s = Scenario(dir, "noisy");
    s.crossing.profiles = 120;
    s.crossing.boatSpeedMs = 0.4;
    s.velocityNoiseCms = 3.0;
    s.bottomTrackNoiseCms = 0.5;
    s.seed = 99;
    const RecordingResult r = Write(s);
    simtest::Recording rec;
    simtest::ReadRecording(s.outputPath, rec);
    EXPECT_NEAR(simtest::ComputeReferenceDischarge(rec, false).Total() / r.truth.span.discharge, 1.0, 5e-3);
}

TEST(RecordingTest, SameSeedSameBytesOtherSeedOtherNoise) {
    simtest::ScratchFolder dir;
    RiverScenario a = Scenario(dir, "a");
    a.velocityNoiseCms = 2.0;
    a.seed = 5;
    RiverScenario b = a;
    b.outputPath = dir.File("a.kvr").substr(0, dir.File("a.kvr").size() - 5) + "b.kvr";
    b.deploymentName = "a";
    RiverScenario c = b;
    c.outputPath = dir.File("c.kvr");
    c.seed = 6;
    Write(a);
    Write(b);
    Write(c);
    const auto bytesA = simtest::FileBytes(a.outputPath);
    ASSERT_GT(bytesA.size(), 1000u);
    EXPECT_EQ(bytesA, simtest::FileBytes(b.outputPath));
    EXPECT_NE(bytesA, simtest::FileBytes(c.outputPath));
    EXPECT_EQ(bytesA.size(), simtest::FileBytes(c.outputPath).size());
}

TEST(RecordingTest, StartFromTheRightBankReversesTheCrossing) {
    simtest::ScratchFolder dir;
    RiverScenario left = Scenario(dir, "left");
    left.crossing.startEdgeM = 4.0;
    RiverScenario right = left;
    right.outputPath = dir.File("right.kvr");
    right.crossing.startBank = StartBank::Right;
    const RecordingResult l = Write(left), r = Write(right);
    EXPECT_DOUBLE_EQ(l.plan.startY, 4.0);
    EXPECT_DOUBLE_EQ(r.plan.startY, left.river.widthM - 4.0);
    EXPECT_LT(l.plan.profiles.back().y, l.plan.startY + 42.0 + 1e-9);
    EXPECT_GT(l.plan.profiles.back().y, l.plan.profiles.front().y);
    EXPECT_LT(r.plan.profiles.back().y, r.plan.profiles.front().y);
    // The symmetric bed makes the two spans mirror images with the same discharge.
    EXPECT_NEAR(l.truth.span.discharge, r.truth.span.discharge, 1e-9 * l.truth.span.discharge);
    EXPECT_NEAR(l.truth.leftEdge.width, r.truth.rightEdge.width, 1e-9);

    simtest::Recording recL, recR;
    simtest::ReadRecording(left.outputPath, recL);
    simtest::ReadRecording(right.outputPath, recR);
    // The bed moves east under a boat going east from the left bank of a north-flowing river.
    const auto btL = simtest::ReferenceBottomTrack(recL.profiles[0], recL.data.derived, 2);
    const auto btR = simtest::ReferenceBottomTrack(recR.profiles[0], recR.data.derived, 2);
    EXPECT_NEAR(btL[0], -0.7, 1e-3);
    EXPECT_NEAR(btR[0], 0.7, 1e-3);
    EXPECT_GT(simtest::ComputeReferenceDischarge(recR, true).Total(), 0.0);
}

TEST(RecordingTest, InternalGpsBlocksGiveTheBoatVelocityAndTrack) {
    simtest::ScratchFolder dir;
    RiverScenario s = Scenario(dir, "gps");
    s.gps = GpsSource::Internal;
    s.river.flowAzimuthDeg = 120.0;
    s.latitudeDeg = -33.5;
    s.longitudeDeg = 151.2;
    const RecordingResult r = Write(s);
    simtest::Recording rec;
    simtest::ReadRecording(s.outputPath, rec);
    EXPECT_EQ(rec.data.conf.InternalGpsAvailable, 1);
    EXPECT_EQ(rec.data.user.EnableInternalGps, 1);
    const EnVector boat = r.plan.profiles[0].boatVelocity;
    const GpsBlock& first = rec.profiles.front().gps;
    EXPECT_DOUBLE_EQ(first.startLatitude, -33.5);
    EXPECT_DOUBLE_EQ(first.startLongitude, 151.2);
    for (const ProfileRecord& p : rec.profiles) {
        ASSERT_TRUE(p.hasGps);
        const GpsVelocity v = ComputeGpsVelocity(p.gps);
        EXPECT_NEAR(v.east, boat.east * 1000.0, 0.1);
        EXPECT_NEAR(v.north, boat.north * 1000.0, 0.1);
    }
    // The track from the first fix reaches the end of the span.
    const GpsBlock& last = rec.profiles.back().gps;
    const GpsDisplacement d =
        DisplacementBetween(first.startLatitude, first.startLongitude, last.endLatitude, last.endLongitude);
    const EnVector travelled = r.plan.profiles.back().endPosition - r.plan.profiles.front().startPosition;
    EXPECT_NEAR(d.east, travelled.east, 1e-6);
    EXPECT_NEAR(d.north, travelled.north, 1e-6);
}

TEST(RecordingTest, SideFileCarriesGpsAndEchoSounderSentences) {
    simtest::ScratchFolder dir;
    RiverScenario s = Scenario(dir, "side");
    s.gps = GpsSource::External;
    s.echoSounder = true;
    s.crossing.pitchDeg = 4.0;
    s.crossing.rollDeg = 3.0;
    const RecordingResult r = Write(s);
    ASSERT_EQ(r.pmkPath, dir.File("side.pmk"));
    simtest::Recording rec;
    simtest::ReadRecording(s.outputPath, rec);
    PmkState pmk;
    ASSERT_EQ(LoadPmk(s.outputPath, pmk), 1);
    EXPECT_EQ(pmk.settings.gpsPresent, 1);
    EXPECT_EQ(pmk.settings.echoSounderPresent, 1);
    EchoSounderSettings sounder;
    sounder.TransducerDepth = 0.2;
    for (size_t i = 0; i < rec.profiles.size(); ++i) {
        const ProfileRecord& p = rec.profiles[i];
        const ProfileState& state = r.plan.profiles[i];
        const NodeRef node = pmk.extraDataRoot.GetChildByName(ProfileNodeName(static_cast<int>(i + 1)));
        GpsFix fix;
        ASSERT_EQ(TakeNewestFix(node.GetChildByName("GpsData"), fix), 1) << "profile " << i + 1;
        // The record's block ends with the fix the profile received, and begins with the one before.
        EXPECT_EQ(fix.Latitude, p.gps.endLatitude);
        EXPECT_EQ(fix.Longitude, p.gps.endLongitude);
        if (i > 0) {
            EXPECT_EQ(rec.profiles[i - 1].gps.endLatitude, p.gps.startLatitude);
        }
        const GpsVelocity v = ComputeGpsVelocity(p.gps);
        EXPECT_NEAR(v.east, state.boatVelocity.east * 1000.0, 1.0);
        EXPECT_NEAR(v.north, state.boatVelocity.north * 1000.0, 1.0);
        const double depth =
            ReadEchoDepth(node.GetChildByName("EsData"), sounder, state.PitchDeg(), state.RollDeg(), 1.0);
        EXPECT_NEAR(depth, s.river.Depth(state.y), 0.006);
    }
}

TEST(RecordingTest, BadScenarioWritesNothingAndSaysWhy) {
    simtest::ScratchFolder dir;
    RiverScenario s = Scenario(dir, "bad");
    s.crossing.profiles = 1000;
    RecordingPrompt prompt;
    RecordingResult r = WriteRiverRecording(s, prompt);
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("does not fit"), std::string::npos);
    EXPECT_TRUE(simtest::FileBytes(s.outputPath).empty());

    s = Scenario(dir, "big");
    s.instrument.cells = 128;
    s.gps = GpsSource::Internal;
    EXPECT_NE(ValidateScenario(s).find("2048"), std::string::npos);
    s = Scenario(dir, "shallow");
    s.crossing.startEdgeM = 0.1;
    EXPECT_NE(ValidateScenario(s).find("transducer"), std::string::npos);
    s = Scenario(dir, "name");
    s.outputPath = dir.File("name.dat");
    EXPECT_NE(ValidateScenario(s), "");
    s = Scenario(dir, "long_deployment_name");
    EXPECT_EQ(DeploymentNameOf(s), "long_dep");
    s.deploymentName = "toolongname";
    EXPECT_NE(ValidateScenario(s), "");

    s = Scenario(dir, "nofolder");
    s.outputPath = dir.File("missing/x.kvr");
    r = WriteRiverRecording(s, prompt);
    EXPECT_FALSE(r.ok);
    EXPECT_FALSE(prompt.messages.empty());
}

}  // namespace
}  // namespace rm::sim
