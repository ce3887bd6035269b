// LiveAcquisition on scripted ports and virtual time: the schedule of the 250 ms tick (polls,
// lost profiles), how frames are found and checked on the line, the profile count over gaps
// and restarts of the numbering, wave frames, and what recording does when the disk refuses.
// Frames are made by the project's frame encoder from a small setup: 3 beams, 4 cells, bottom
// track, firmware 12.0 (no byte swap), so a profile frame is 80 + 18 + 4 x 3 x 4 + 2 = 148 bytes.

#include "link/live_acquisition.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <memory>
#include <vector>

#include "data/byte_io.h"
#include "link_test_support.h"

namespace rm::test {
namespace {

constexpr int kFrameSize = 148;
constexpr uint32_t kTickUs = 250000;

class LiveAcquisitionTest : public ::testing::Test {
protected:
    void SetUp() override { Configure(1); }

    // Records and link state for a profile interval of `seconds` (tenths of seconds in
    // pulse-coherent mode, whose frames carry the 36-byte shallow-water block).
    void Configure(int seconds, int waveSamples = 0, bool pulseCoherent = false) {
        kvr.conf.Nbeams = 3;
        kvr.conf.CPUSoftwareVerNum = 120;
        kvr.user.NumberOfCells = 4;
        kvr.user.BottomTrack = 1;
        kvr.user.ProfileInterval = static_cast<decltype(kvr.user.ProfileInterval)>(seconds);
        kvr.user.PressureTimeSeriesInterval =
            static_cast<decltype(kvr.user.PressureTimeSeriesInterval)>(waveSamples > 0 ? 1 : 0);
        kvr.user.PseriesLength = static_cast<decltype(kvr.user.PseriesLength)>(waveSamples);
        kvr.user.PCMode = pulseCoherent ? 1 : 0;
        link.PCMode = pulseCoherent ? 1 : 0;
        link.BottomTrackMode = 1;
        link.Sizes.ProfileSize = kFrameSize + (pulseCoherent ? 36 : 0);
        link.Sizes.WaveSamples = waveSamples;
        acquisition = std::make_unique<LiveAcquisition>(kvr, link, prompt, 8);
        acquisition->SetInstrumentPort(&instrument);
        acquisition->SetProfileHandler([this](int count, const LiveSlot&, bool good) { taken.push_back({count, good}); });
        acquisition->SetRenumberHandler([this] { ++restarts; });
        ASSERT_TRUE(acquisition->BeginCollection());
    }

    // A profile frame numbered `number` whose bottom track has the ranges `ranges` (cm).
    static std::string Frame(uint32_t number, std::array<uint16_t, 4> ranges = {500, 500, 500, 0}) {
        InstrumentConf conf;
        conf.Nbeams = 3;
        conf.CPUSoftwareVerNum = 120;
        UserSetup user;
        user.NumberOfCells = 4;
        user.BottomTrack = 1;
        const ProfileLayout layout = MakeProfileLayout(conf, user, GpsForm::None, 2);
        ProfileRecord record;
        record.Resize(4, 3);
        record.header.type = kFrameSync;  // the header's first bytes: sync, record type, size
        record.header.flags = kProfileFrameType;
        record.header.size = kFrameHeaderSizeByte;
        record.header.profileNumber = number;
        ByteWriter bt(record.bottomTrack.data(), record.bottomTrack.size());
        bt.u8(1, 1);  // flag: a bottom was found
        for (size_t beam = 0; beam < 4; ++beam) {
            bt.u16(2 + 2 * beam, ranges[beam]);
            bt.i16(10 + 2 * beam, static_cast<int16_t>(100 * number + beam));
        }
        std::string bytes(layout.RecordSize(), '\0');
        EXPECT_EQ(layout.RecordSize(), static_cast<size_t>(kFrameSize));
        EXPECT_TRUE(EncodeProfileRecord(record, layout, BlockOrder::Frame, reinterpret_cast<uint8_t*>(bytes.data())));
        return bytes;
    }

    void Arrive(const std::string& bytes) { instrument.ArriveAfter(0, bytes); }
    void Tick(int n = 1) {
        for (int i = 0; i < n; ++i) {
            acquisition->OnAcquisitionTick();
            clock->AdvanceUs(kTickUs);
        }
    }
    int16_t BottomVelocity(int profile, size_t beam) const {
        const ProfileRecord& r = acquisition->Record(profile);
        return ByteReader(r.bottomTrack.data(), r.bottomTrack.size()).i16(10 + 2 * beam);
    }
    uint16_t Range(int profile, size_t beam) const {
        const ProfileRecord& r = acquisition->Record(profile);
        return ByteReader(r.bottomTrack.data(), r.bottomTrack.size()).u16(2 + 2 * beam);
    }
    std::string StartRecording() {
        DataFileNameRequest request;
        request.directory = dir.File("");
        request.deploymentName = "LIVE";
        EXPECT_TRUE(acquisition->ToggleRecord(request, PmkSettings{}));
        return acquisition->DataPath();
    }

    std::shared_ptr<VirtualClock> clock = std::make_shared<VirtualClock>();
    ScriptedPort instrument{"kvr", clock};
    ScratchDir dir;
    CKvrData kvr;
    InstrumentLinkState link;
    RecordingPrompt prompt;
    std::unique_ptr<LiveAcquisition> acquisition;
    std::vector<std::pair<int, bool>> taken;
    int restarts = 0;
};

TEST_F(LiveAcquisitionTest, DevicesArePolledOnlyWhileTheProfileIsNotDue) {
    // Interval 1 s: TickReload 4, so the counter runs 3, 2, 1, 0; the last two ticks before the
    // profile is due (and the ticks past it) leave the GPS's and echo sounder's bytes waiting.
    // The first tick takes the first position of the track from the GPS.
    link.GpsOn = true;
    link.GpsSource = kGpsSourceExternal;
    ScriptedPort gps{"gps", clock}, echo{"echo", clock};
    LiveDeviceSettings devices;
    devices.echoOn = true;
    acquisition->SetGpsPort(&gps);
    acquisition->SetEchoPort(&echo);
    acquisition->SetDevices(devices);
    EXPECT_EQ(acquisition->TickReload(), 4);
    const struct {
        int counter;
        bool polled;
    } ticks[] = {{3, true}, {2, true}, {1, false}, {0, false}, {0, false}};
    for (const auto& t : ticks) {
        gps.ArriveAfter(0, "$GPGGA,123519.00,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n");
        echo.ArriveAfter(0, "$SDDPT,3.2,0.0*5C\r\n");
        Tick();
        EXPECT_EQ(acquisition->TickCounter(), t.counter);
        EXPECT_EQ(echo.RxCount() == 0, t.polled) << "counter " << t.counter;
        EXPECT_EQ(gps.RxCount() == 0, t.polled) << "counter " << t.counter;
    }
    EXPECT_NEAR(acquisition->FirstPosition().Latitude, 48.1173, 1e-4);  // 48 deg 07.038 min
}

TEST_F(LiveAcquisitionTest, SilentInstrumentLosesAProfile2750MsAfterItWasDue) {
    // Lost at 11 overdue ticks; the next one is expected 8 ticks (2 s) early. A TickReload under
    // 9 leaves the counter at or below 0, and the next tick brings it back to 0.
    const struct {
        int seconds, reload, firstLostTick, secondLostTick, counterAfterLost;
    } cases[] = {{1, 4, 15, 26, -4}, {2, 8, 19, 30, 0}, {3, 12, 23, 38, 4}};
    for (const auto& c : cases) {
        taken.clear();
        Configure(c.seconds);
        EXPECT_EQ(acquisition->TickReload(), c.reload);
        std::vector<int> lostAt;
        for (int tick = 1; tick <= c.secondLostTick; ++tick) {
            const size_t before = taken.size();
            Tick();
            if (taken.size() > before) lostAt.push_back(tick);
            if (tick == c.firstLostTick) {
                EXPECT_EQ(acquisition->TickCounter(), c.counterAfterLost) << c.seconds;
                EXPECT_EQ(acquisition->OverdueTicks(), 0);
            }
            if (tick == c.firstLostTick + 1 && c.counterAfterLost <= 0) {
                EXPECT_EQ(acquisition->TickCounter(), 0);
                EXPECT_EQ(acquisition->OverdueTicks(), 1);
            }
        }
        EXPECT_EQ(lostAt, (std::vector<int>{c.firstLostTick, c.secondLostTick})) << c.seconds << " s";
        ASSERT_EQ(taken.size(), 2u);
        EXPECT_EQ(taken[0], std::make_pair(1, false));
        EXPECT_EQ(acquisition->Slot(1).quality, kSlotLost);
        EXPECT_EQ(acquisition->Record(1).header.heading, kBadVelocity);
    }
}

TEST_F(LiveAcquisitionTest, TickCountersCountQuarterSecondsOfTheIntervalInSecondsOrTenths) {
    // TickReload is the interval x 4, truncated; in pulse-coherent mode (bottom track 1) the
    // interval counts tenths. The count-down shows (TickCounter - 1) / TickReload x interval + 1
    // seconds, truncated: 10 s at the start, 5 after 21 ticks (counter 19), 1 in the last tick.
    const struct {
        int interval;
        bool pulseCoherent;
        int reload;
        double seconds;
    } cases[] = {{10, false, 40, 10.0}, {25, true, 10, 2.5}, {7, true, 2, 0.7}};
    for (const auto& c : cases) {
        Configure(c.interval, 0, c.pulseCoherent);
        EXPECT_DOUBLE_EQ(acquisition->IntervalSeconds(), c.seconds) << c.interval;
        EXPECT_EQ(acquisition->TickReload(), c.reload) << c.interval;
        EXPECT_EQ(acquisition->TickCounter(), c.reload) << c.interval;
    }
    Configure(10);
    EXPECT_EQ(acquisition->CountDownText(), "  10");
    Tick(21);
    EXPECT_EQ(acquisition->TickCounter(), 19);
    EXPECT_EQ(acquisition->CountDownText(), "   5");
    Tick(18);
    EXPECT_EQ(acquisition->TickCounter(), 1);
    EXPECT_EQ(acquisition->CountDownText(), "   1");
}

TEST_F(LiveAcquisitionTest, ALoneByteIsLeftButTheTickCountsAsServed) {
    Tick(6);  // two ticks overdue
    Arrive("\x01");
    Tick();
    EXPECT_EQ(instrument.RxCount(), 1);
    EXPECT_EQ(acquisition->ProfileCount(), 0);
    EXPECT_TRUE(taken.empty());
    EXPECT_EQ(acquisition->OverdueTicks(), 0);
    EXPECT_EQ(acquisition->TickCounter(), acquisition->TickReload());
}

TEST_F(LiveAcquisitionTest, FramesAreFoundCheckedAndCounted) {
    std::string badSum = Frame(2);
    badSum[kFrameSize - 1] = static_cast<char>(badSum[kFrameSize - 1] ^ 0x01);
    const std::string noise(kFrameSize - 1, '\x33');  // no sync byte in it
    const struct {
        const char* what;
        std::string line;
        int count;
        bool good;
    } cases[] = {
        {"noise shorter than a frame, then the frame", noise + Frame(1), 1, true},
        {"a frame with a wrong checksum", Frame(1) + badSum, 2, false},
        {"a gap of numbers", Frame(1) + Frame(4), 4, true},
    };
    for (const auto& c : cases) {
        taken.clear();
        Configure(1);
        Arrive(c.line);
        Tick(2);
        ASSERT_FALSE(taken.empty()) << c.what;
        EXPECT_EQ(taken.back(), std::make_pair(c.count, c.good)) << c.what;
        EXPECT_EQ(acquisition->ProfileCount(), c.count) << c.what;
        EXPECT_EQ(acquisition->Slot(c.count).quality, c.good ? kSlotGood : kSlotLost) << c.what;
    }
    // The gap's slots keep what they held; the decoded frame stands in its own slot.
    EXPECT_EQ(acquisition->Slot(2).quality, kSlotEmpty);
    EXPECT_EQ(acquisition->Slot(3).quality, kSlotEmpty);
    EXPECT_EQ(acquisition->Record(4).header.profileNumber, 4u);
    EXPECT_EQ(BottomVelocity(4, 2), 402);
    EXPECT_EQ(acquisition->LastProfileNumber(), 4);
}

TEST_F(LiveAcquisitionTest, SyncByteWithAWrongTypeGivesMinusOneAndMarksTheSlotLost) {
    Arrive(Frame(1));
    Tick();
    Arrive(std::string("\xA5\x33", 2) + "rest");
    EXPECT_EQ(acquisition->ReadFrame(), kFrameUnknown);
    EXPECT_EQ(acquisition->Record(1).header.heading, kBadVelocity);
    EXPECT_EQ(Range(1, 0), 32767);
    // The bytes after the wrong type are left for the next search.
    EXPECT_EQ(instrument.RxCount(), 4);
}

TEST_F(LiveAcquisitionTest, FrameNumberOneRestartsTheNumberingOnlyAfterProfiles) {
    Arrive(Frame(1));
    Tick();
    EXPECT_EQ(restarts, 0);  // number 1 at ProfileCount 0 is the expected first number
    for (uint32_t n = 2; n <= 5; ++n) {
        Arrive(Frame(n));
        Tick();
    }
    ASSERT_EQ(acquisition->ProfileCount(), 5);
    Arrive(Frame(1));
    Tick();
    EXPECT_EQ(restarts, 1);
    EXPECT_EQ(acquisition->Renumberings(), 1);
    EXPECT_EQ(acquisition->ProfileCount(), 1);
    EXPECT_EQ(acquisition->ProfileNumberOffset(), 0);
}

TEST_F(LiveAcquisitionTest, ABitErrorLosesOnlyItsFrameAndNeverMovesTheCount) {
    // Profile 3 arrives with one bit turned over: in its number (to 1, which would restart the
    // numbering; to 0x80000003, beyond any count; to 19, a gap) or in its body. Each time the
    // frame fails its checksum and counts as profile 3 lost; 4 follows as if nothing happened.
    const struct {
        const char* what;
        size_t byte;
        int bit;
    } flips[] = {{"number 3 becomes 1", 14, 1},
                 {"number 3 becomes 0x80000003", 17, 7},
                 {"number 3 becomes 19", 14, 4},
                 {"a velocity byte", 110, 2}};
    for (const auto& f : flips) {
        taken.clear();
        restarts = 0;
        Configure(1);
        std::string third = Frame(3);
        third[f.byte] = static_cast<char>(third[f.byte] ^ (1 << f.bit));
        for (const std::string& frame : {Frame(1), Frame(2), third, Frame(4)}) {
            Arrive(frame);
            Tick();
        }
        EXPECT_EQ(taken, (std::vector<std::pair<int, bool>>{{1, true}, {2, true}, {3, false}, {4, true}})) << f.what;
        EXPECT_EQ(restarts, 0) << f.what;
        EXPECT_EQ(acquisition->ProfileCount(), 4) << f.what;
        EXPECT_EQ(acquisition->LastProfileNumber(), 4) << f.what;
        EXPECT_EQ(acquisition->Slot(3).quality, kSlotLost) << f.what;
        EXPECT_EQ(acquisition->Record(4).header.profileNumber, 4u) << f.what;
    }
}

TEST_F(LiveAcquisitionTest, ARestartOnTheFirstFrameOfARecordingCountsFromOne) {
    // Three profiles come in before the recording starts, so the recording's numbers start after
    // 3. Its first frame is numbered 1 (the instrument restarted), or 2 (and its frame 1 was
    // lost): the count starts from that number, never below 1, and the record is written.
    // A first frame numbered 4 is the expected one: no restart.
    const struct {
        uint32_t first;
        int count;
        int restarts;
    } cases[] = {{1, 1, 1}, {2, 2, 1}, {4, 1, 0}};
    for (const auto& c : cases) {
        taken.clear();
        restarts = 0;
        Configure(1);
        for (uint32_t n = 1; n <= 3; ++n) {
            Arrive(Frame(n));
            Tick();
        }
        StartRecording();
        ASSERT_EQ(acquisition->ProfileNumberOffset(), 3);
        Arrive(Frame(c.first));
        Tick();
        EXPECT_EQ(restarts, c.restarts) << c.first;
        EXPECT_EQ(acquisition->ProfileCount(), c.count) << c.first;
        EXPECT_EQ(taken.back(), std::make_pair(c.count, true)) << c.first;
        EXPECT_EQ(acquisition->ProfilesWritten(), 1) << c.first;
        EXPECT_EQ(acquisition->Record(c.count).header.profileNumber, c.first);
        Arrive(Frame(c.first + 1));
        Tick();
        EXPECT_EQ(acquisition->ProfileCount(), c.count + 1) << c.first;
        EXPECT_EQ(restarts, c.restarts) << c.first;
        acquisition->StopRecording();
    }
}

TEST_F(LiveAcquisitionTest, BadBeamsAreHeldFromThePreviousProfileAsTheFrameIsRead) {
    // NumBadBeams 0: beam 2's range of 0 makes the ensemble bad. The first profile has no
    // previous one: velocities and the bad range become 32767. The second takes profile 1's
    // velocities and its range for the bad beam; the good beams keep their own ranges.
    Arrive(Frame(1, {500, 0, 500, 0}));
    Tick();
    EXPECT_EQ(BottomVelocity(1, 0), kBadVelocity);
    EXPECT_EQ(Range(1, 1), 32767);
    EXPECT_EQ(Range(1, 0), 500);
    Arrive(Frame(2, {600, 610, 620, 0}));
    Tick();
    Arrive(Frame(3, {700, 0, 720, 0}));
    Tick();
    EXPECT_EQ(BottomVelocity(3, 0), 200);
    EXPECT_EQ(BottomVelocity(3, 2), 202);
    EXPECT_EQ(Range(3, 1), 610);
    EXPECT_EQ(Range(3, 0), 700);
    // One bad beam allowed: the velocities are still held, the range stays as sent.
    LiveDeviceSettings devices;
    devices.numBadBeams = 1;
    acquisition->SetDevices(devices);
    Arrive(Frame(4, {800, 0, 820, 0}));
    Tick();
    EXPECT_EQ(BottomVelocity(4, 1), 201);
    EXPECT_EQ(Range(4, 1), 0);
}

TEST_F(LiveAcquisitionTest, WaveFramesAreWrittenWhileRecordingAndAFailedOneZeroesTheWaveHeader) {
    Configure(1, 4);
    const std::string path = StartRecording();
    WaveBurst burst;
    burst.header[0] = 0xA5;
    burst.header[1] = 0x20;
    burst.header[2] = 0x50;
    burst.header[10] = 0x77;
    burst.samples = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    std::string wave(80 + 12 + 2, '\0');
    ASSERT_TRUE(EncodeWaveBurst(burst, 12, reinterpret_cast<uint8_t*>(wave.data())));
    const auto sizeAfterHead = std::filesystem::file_size(path);
    Arrive(Frame(1));
    Tick();
    Arrive(wave);
    EXPECT_EQ(acquisition->ReadLiveProfile(), kFrameWave);
    EXPECT_EQ(acquisition->ProfileCount(), 1);  // a wave burst is no profile
    EXPECT_EQ(acquisition->Wave().Sample(3), 0x0C0B0Au);
    EXPECT_EQ(std::filesystem::file_size(path), sizeAfterHead + kFrameSize + wave.size());

    wave[wave.size() - 1] = static_cast<char>(wave.back() ^ 0x01);
    Arrive(wave);
    EXPECT_EQ(acquisition->ReadLiveProfile(), kFrameNothing);
    EXPECT_EQ(acquisition->Wave().header[10], 0);
    EXPECT_EQ(std::filesystem::file_size(path), sizeAfterHead + kFrameSize + wave.size());
}

TEST_F(LiveAcquisitionTest, AFullDiskCutsTheFileBackToWholeRecordsAndEndsTheRecording) {
    const std::string path = StartRecording();
    Arrive(Frame(1));
    Tick();
    const auto whole = std::filesystem::file_size(path);
    // The file may grow by half a record more: the next record cannot be written whole.
    struct rlimit saved {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit limited = saved;
    limited.rlim_cur = static_cast<rlim_t>(whole + kFrameSize / 2);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
    Arrive(Frame(2));
    Tick();
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previousHandler);

    EXPECT_EQ(std::filesystem::file_size(path), whole);
    EXPECT_EQ(acquisition->RunState(), kRunReady);
    EXPECT_EQ(acquisition->ProfilesWritten(), 1);
    ASSERT_FALSE(prompt.messages.empty());
    EXPECT_EQ(prompt.messages.back().rfind("Disk Full or Bad media writing to file:", 0), 0u) << prompt.messages.back();
}

TEST_F(LiveAcquisitionTest, ADataFileThatCannotBeReopenedIsReportedAndTheTickGoesOn) {
    const std::string path = StartRecording();
    std::filesystem::remove(path);
    Arrive(Frame(1));
    Tick();
    ASSERT_FALSE(prompt.messages.empty());
    EXPECT_EQ(prompt.messages.back(), "Can not write output file");
    EXPECT_EQ(acquisition->RunState(), kRunRecording);
    EXPECT_EQ(acquisition->ProfilesWritten(), 0);
    EXPECT_EQ(acquisition->Slot(1).quality, kSlotGood);  // the profile stands in the ring
}

}  // namespace
}  // namespace rm::test
