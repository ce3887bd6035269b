// Record counting, offsets and the wave burst set-up, against hand-computed figures.

#include <gtest/gtest.h>

#include "data/kvr_file_layout.h"

namespace rm {
namespace {

WaveSetup Bursts(int interval, int64_t burstSize, int first) {
    WaveSetup w;
    w.interval = interval;
    w.burstSize = burstSize;
    w.firstBurstIndex = first;
    return w;
}

TEST(RecordCounting, WholeRecordsInTheOrderOfTheBurstCycle) {
    const WaveSetup none;
    // N = 3, S = 100, W = 50, first = 0: a cycle of 350 bytes is profile, burst, profile, profile.
    const WaveSetup w = Bursts(3, 50, 0);
    // W = 150 > S, N = 2: cycle 350 = profile, burst, profile.
    const WaveSetup wide = Bursts(2, 150, 0);
    // first = 1: two profiles, then the burst.
    const WaveSetup later = Bursts(3, 50, 1);
    const struct {
        const WaveSetup& setup;
        int64_t size, header, profiles, bursts;
    } cases[] = {
        {none, 415, 416, 0, 0},  {none, 515, 416, 0, 0},  {none, 516, 416, 1, 0},  // a partial record is dropped
        {w, 416 + 0, 416, 0, 0},
        {w, 416 + 700, 416, 6, 2},   // two whole cycles
        {w, 416 + 749, 416, 6, 2},   // 49 left: below S and W
        {w, 416 + 800, 416, 7, 2},   // one profile more
        {w, 416 + 860, 416, 7, 3},   // profile, then a whole burst, 10 left
        {w, 416 + 960, 416, 8, 3},   // profile, burst, profile
        {w, 416 + 840, 416, 7, 2},   // profile, then 40: below both
        // 220 left: a profile (120 left), then the burst position with 120 < W: the rest is
        // dropped, although 120 would hold another profile.
        {wide, 220, 0, 1, 0},
        {wide, 250, 0, 1, 1},  // profile and a whole burst
        {later, 250, 0, 2, 1},
        {later, 240, 0, 2, 0},  // two profiles, 40 left
    };
    for (const auto& c : cases) {
        const RecordCounts n = CountRecords(c.size, c.header, 100, c.setup);
        EXPECT_EQ(n.profiles, c.profiles) << "size " << c.size << ", interval " << c.setup.interval;
        EXPECT_EQ(n.bursts, c.bursts) << "size " << c.size << ", interval " << c.setup.interval;
    }
}

TEST(RecordOffsets, ProfilesSkipTheBurstsBeforeThem) {
    const WaveSetup w = Bursts(3, 50, 0);
    const int64_t H = 416, S = 100;
    // profile 0 at 416, burst at 516, profiles 1..3 at 566, 666, 766, burst at 866, profile 4 at 916.
    const int64_t offsets[] = {416, 566, 666, 766, 916};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(ProfileOffset(i, H, S, w), offsets[i]) << i;
    EXPECT_EQ(BurstOffset(0, H, S, w), 516);
    EXPECT_EQ(BurstOffset(1, H, S, w), 866);
    EXPECT_EQ(ProfileOffsetWithoutBursts(4, H, S), 816);
    EXPECT_EQ(ProfileOffset(4, H, S, WaveSetup{}), 816);
}

TEST(RecordOffsets, AFirstBurstBeyondTheIntervalNeverGivesNegativeOffsets) {
    const WaveSetup w = Bursts(2, 50, 5);
    EXPECT_EQ(ProfileOffset(0, 10, 100, w), 10);
    EXPECT_EQ(ProfileOffset(5, 10, 100, w), 510);
    EXPECT_EQ(ProfileOffset(6, 10, 100, w), 660);  // after the first burst
}

TEST(WaveSetUp, RateFlagAndExtraSeriesFromTheRateByte) {
    UserSetup u;
    u.PressureTimeSeriesInterval = 4;
    u.PseriesLength = 1000;
    u.ProfileInterval = 60;
    const struct {
        uint8_t rate;
        int hz;
        bool flag;
    } rates[] = {{0x00, 1, false}, {0x04, 2, false}, {0x08, 4, false}, {0x0C, 4, false}, {0x06, 2, true}};
    for (const auto& r : rates) {
        u.PseriesRate = r.rate;
        const WaveSetup w = MakeWaveSetup(u);
        EXPECT_EQ(w.rateHz, r.hz) << int(r.rate);
        EXPECT_EQ(w.flag, r.flag) << int(r.rate);
        EXPECT_EQ(w.burstSize, 3 * 1000 + 82) << int(r.rate);
        // floor(floor(1000 / rate) / 60)
        EXPECT_EQ(w.firstBurstIndex, (1000 / r.hz) / 60) << int(r.rate);
    }
    EXPECT_EQ(MakeWaveSetup(u).interval, 4);
    EXPECT_TRUE(MakeWaveSetup(u).HasBursts());

    u.PseriesRate = 0x14;  // bits 4 and 5 read 1: two more series, 2 Hz
    WaveSetup w = MakeWaveSetup(u);
    EXPECT_TRUE(w.twoMoreSeries);
    EXPECT_EQ(w.burstSize, 9 * 1000 + 82);
    EXPECT_EQ(w.firstBurstIndex, 0);
    u.reserved252 = 1;
    EXPECT_EQ(MakeWaveSetup(u).burstSize, 18 * 1000 + 82);
    u.PseriesRate = 0x30;  // bits 4 and 5 read 3
    EXPECT_FALSE(MakeWaveSetup(u).twoMoreSeries);
    EXPECT_EQ(MakeWaveSetup(u).burstSize, 3 * 1000 + 82);
    u.PressureTimeSeriesInterval = 0;
    EXPECT_FALSE(MakeWaveSetup(u).HasBursts());
}

TEST(HeaderLengthRule, CalibrationBlockForTableSensorsOnNewFirmwareAndVersion2) {
    InstrumentConf c;
    c.CPUSoftwareVerNum = 165;
    c.ExtPressureSensorInstalled = 2;
    EXPECT_EQ(HeaderLength(c, 2), 96 + 64 + 256 + 250);
    c.ExtPressureSensorInstalled = 3;
    EXPECT_EQ(HeaderLength(c, 2), 96 + 64 + 256 + 250);
    EXPECT_EQ(HeaderLength(c, 1), 64 + 64 + 256);
    c.ExtPressureSensorInstalled = 1;
    EXPECT_EQ(HeaderLength(c, 2), 96 + 64 + 256);
    c.ExtPressureSensorInstalled = 2;
    c.CPUSoftwareVerNum = 164;
    EXPECT_EQ(HeaderLength(c, 2), 96 + 64 + 256);
}

}  // namespace
}  // namespace rm
