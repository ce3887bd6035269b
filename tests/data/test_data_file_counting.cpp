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

TEST(RecordCounting, WithoutBurstsDropsATrailingPartialRecord) {
    const WaveSetup none;
    const int64_t H = 416, S = 100;
    EXPECT_EQ(CountRecords(H - 1, H, S, none).profiles, 0);
    EXPECT_EQ(CountRecords(H, H, S, none).profiles, 0);
    EXPECT_EQ(CountRecords(H + 99, H, S, none).profiles, 0);
    EXPECT_EQ(CountRecords(H + 100, H, S, none).profiles, 1);
    EXPECT_EQ(CountRecords(H + 250, H, S, none).profiles, 2);
    EXPECT_EQ(CountRecords(H + 300, H, S, none).profiles, 3);
    EXPECT_EQ(CountRecords(H + 300, H, S, none).bursts, 0);
}

TEST(RecordCounting, WholeCyclesAndTheWalkOfTheRest) {
    // N = 3, S = 100, W = 50, first = 0: a cycle of 350 bytes is profile, burst, profile, profile.
    const WaveSetup w = Bursts(3, 50, 0);
    const int64_t H = 416;
    const struct {
        int64_t body, profiles, bursts;
    } cases[] = {
        {0, 0, 0},
        {700, 6, 2},    // two whole cycles
        {749, 6, 2},    // 49 left: below S and W
        {800, 7, 2},    // one profile more
        {830, 7, 2},    // 30 left after it
        {860, 7, 3},    // profile, then a whole burst, 10 left
        {960, 8, 3},    // profile, burst, profile
        {840, 7, 2},    // profile, then 40: below both
        {1050, 9, 3},   // three whole cycles
    };
    for (const auto& c : cases) {
        const RecordCounts n = CountRecords(H + c.body, H, 100, w);
        EXPECT_EQ(n.profiles, c.profiles) << "body " << c.body;
        EXPECT_EQ(n.bursts, c.bursts) << "body " << c.body;
    }
}

TEST(RecordCounting, ABurstCutShortEndsTheWalk) {
    // W = 150 > S = 100, N = 2, first = 0: cycle 350 = profile, burst, profile.
    const WaveSetup w = Bursts(2, 150, 0);
    // 220 left: a profile (120 left), then the burst position with 120 < W: the rest is dropped,
    // although 120 would hold another profile.
    RecordCounts n = CountRecords(220, 0, 100, w);
    EXPECT_EQ(n.profiles, 1);
    EXPECT_EQ(n.bursts, 0);
    n = CountRecords(350 + 220, 0, 100, w);
    EXPECT_EQ(n.profiles, 3);
    EXPECT_EQ(n.bursts, 1);
    n = CountRecords(250, 0, 100, w);  // profile and a whole burst
    EXPECT_EQ(n.profiles, 1);
    EXPECT_EQ(n.bursts, 1);
}

TEST(RecordCounting, LaterFirstBurstIndexPutsMoreProfilesBeforeTheBurst) {
    // first = 1: two profiles, then the burst.
    const WaveSetup w = Bursts(3, 50, 1);
    RecordCounts n = CountRecords(250, 0, 100, w);
    EXPECT_EQ(n.profiles, 2);
    EXPECT_EQ(n.bursts, 1);
    n = CountRecords(240, 0, 100, w);  // two profiles, 40 left
    EXPECT_EQ(n.profiles, 2);
    EXPECT_EQ(n.bursts, 0);
}

TEST(RecordOffsets, ProfilesSkipTheBurstsBeforeThem) {
    const WaveSetup w = Bursts(3, 50, 0);
    const int64_t H = 416, S = 100;
    // profile 0 at 416, burst at 516, profiles 1..3 at 566, 666, 766, burst at 866, profile 4 at 916.
    EXPECT_EQ(ProfileOffset(0, H, S, w), 416);
    EXPECT_EQ(ProfileOffset(1, H, S, w), 566);
    EXPECT_EQ(ProfileOffset(2, H, S, w), 666);
    EXPECT_EQ(ProfileOffset(3, H, S, w), 766);
    EXPECT_EQ(ProfileOffset(4, H, S, w), 916);
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
