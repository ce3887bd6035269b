// Frame sizes against hand sums of the frame layout: header 80, the optional blocks
// (shallow water 36, bottom track 18, CTD 16, internal GPS 48, external sensor 8), two bytes
// of velocity and one each of standard error and amplitude per cell and beam, checksum 2.

#include "link/profile_sizes.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

TEST(ProfileSizeTest, MatchesTheHandSumOfEachSetup) {
    struct Case {
        int cells, beams, bottomTrackMode, pcMode;
        uint8_t ctd, extSensor;
        bool gpsOn;
        int gpsSource;
        int expected;
    } cases[] = {
        {10, 3, 0, 0, 0, 0, false, 1, 202},       // 80 + 10*3*(2+1+1) + 2
        {10, 3, 1, 0, 0, 0, false, 1, 220},       // 80 + 120 + 18 + 2
        {10, 3, 2, 0, 0, 0, false, 1, 256},       // shallow-water ping: 80 + 36 + 18 + 120 + 2
        {20, 4, 0, 1, 0, 0, false, 1, 438},       // pulse-coherent: 80 + 36 + 20*4*4 + 2
        {5, 2, 0, 0, 1, 0, false, 1, 138},        // CTD: 80 + 16 + 5*2*4 + 2
        {5, 2, 0, 0, 0, 1, false, 1, 130},        // external sensor: 80 + 8 + 5*2*4 + 2
        {5, 2, 0, 0, 0, 0, true, 2, 170},         // internal GPS: 80 + 48 + 5*2*4 + 2
        {5, 2, 0, 0, 0, 0, true, 1, 122},         // an external receiver's fixes are not in the frame
        {5, 2, 0, 0, 0, 0, false, 2, 122},        // internal source chosen but GPS off
        {128, 3, 2, 1, 1, 1, true, 2, 1744},      // 80 + 36 + 18 + 16 + 48 + 8 + 128*3*4 + 2
    };
    for (const Case& c : cases) {
        InstrumentConf conf;
        conf.Nbeams = static_cast<uint8_t>(c.beams);
        conf.CtdSensorInstalled = c.ctd;
        conf.ExtSensorInstalled = c.extSensor;
        UserSetup user;
        user.NumberOfCells = static_cast<uint16_t>(c.cells);
        InstrumentLinkState state;
        state.BottomTrackMode = c.bottomTrackMode;
        state.PCMode = c.pcMode;
        state.GpsOn = c.gpsOn;
        state.GpsSource = c.gpsSource;
        const ProfileSizes sizes = ComputeProfileSizes(conf, user, state);
        EXPECT_EQ(sizes.HeaderSize, 80);
        EXPECT_EQ(sizes.ProfileSize, c.expected) << c.cells << " cells, expected " << c.expected;
        EXPECT_EQ(sizes.WaveFrameSize, 0);
        EXPECT_EQ(sizes.WaveSamples, 0);
    }
}

TEST(WaveFrameSizeTest, ThreeBytesASamplePlusHeaderAndChecksumWhenWavesAreOn) {
    InstrumentConf conf;
    conf.Nbeams = 3;
    UserSetup user;
    user.NumberOfCells = 10;
    user.PseriesLength = 1024;
    InstrumentLinkState state;
    EXPECT_EQ(ComputeProfileSizes(conf, user, state).WaveFrameSize, 0);
    state.WavesEnabled = 4;
    const ProfileSizes sizes = ComputeProfileSizes(conf, user, state);
    EXPECT_EQ(sizes.WaveSamples, 1024);
    EXPECT_EQ(sizes.WaveFrameSize, 3 * 1024 + 82);
    EXPECT_EQ(sizes.ProfileSize, 202);  // waves do not change the profile frame
}

}  // namespace
}  // namespace rm
