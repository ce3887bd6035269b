// Writing a data file and reading it back through CKvrData.

#include <gtest/gtest.h>

#include <tuple>

#include "data/kvr_data.h"
#include "data/test_data_file_support.h"
#include "data/user_prompt.h"

namespace rm {
namespace {

// Every optional part: shallow water, bottom track, CTD, external sensors, GPS, calibration
// block, and a wave burst after every third profile (first burst index floor(4 / 1 / 2) = 2).
test::InstrumentShape Everything() {
    test::InstrumentShape s;
    s.beams = 4;
    s.pcMode = true;
    s.bottomTrack = 2;
    s.ctd = s.extSensor = s.internalGps = true;
    s.extPressure = 2;
    s.waveInterval = 3;
    s.waveLength = 4;
    s.profileInterval = 2;
    return s;
}

bool Open(CKvrData& data, const std::string& path) { return data.OpenFile(path) && data.ReadHeader(false) == kReadOk; }

// Reads every record of `from` and writes it again to `to`, in the order of the file.
void Rewrite(const std::string& from, const std::string& to) {
    CKvrData in, out;
    ASSERT_TRUE(Open(in, from));
    out.conf = in.conf;
    out.oper = in.oper;
    out.user = in.user;
    out.calibration = in.calibration;
    ASSERT_TRUE(out.CreateDataFile(to) && out.WriteHeader());
    int burst = 0;
    for (int i = 0; i < in.ProfileCount(); ++i) {
        ASSERT_EQ(in.LoadProfile(i, i), kReadOk) << "profile " << i;
        ASSERT_TRUE(out.WriteProfile(in.Slot(i)));
        if (out.WaveBurstFollows(i + 1) && burst < in.BurstCount()) {
            WaveBurst w;
            ASSERT_EQ(in.ReadWaveBurst(burst++, w), kReadOk);
            ASSERT_TRUE(out.WriteWaveBurst(w));
        }
    }
    EXPECT_EQ(burst, in.BurstCount());
    ASSERT_TRUE(out.CloseFile());
}

TEST(DataFileRoundTrip, HeadAndEveryProfileReadBackAsWritten) {
    test::ScratchDir dir;
    const auto written = test::WriteRecording(dir.File("all.kvr"), Everything(), 7);
    CKvrData data;
    ASSERT_TRUE(data.OpenFile(dir.File("all.kvr")));
    EXPECT_EQ(data.Validate(), 0);
    ASSERT_EQ(data.ReadHeader(true), kReadOk);
    EXPECT_EQ(data.conf.SerialNumber, "K1234");
    EXPECT_EQ(data.user.DeploymentName, "RIVER");
    EXPECT_EQ(data.calibration.size(), kCalibrationBlockSize);
    EXPECT_EQ(data.HeaderSize(), 96 + 64 + 256 + 250);
    EXPECT_EQ(data.RecordSize(), 82 + 4 * 8 * 4 + 36 + 18 + 16 + 8 + 48);
    EXPECT_EQ(data.BurstSize(), 3 * 4 + 82);
    EXPECT_EQ(data.ProfileCount(), 7);
    EXPECT_EQ(data.BurstCount(), 2);  // after profiles 3 and 6
    EXPECT_EQ(data.FileSize(), data.HeaderSize() + 7 * data.RecordSize() + 2 * data.BurstSize());
    EXPECT_EQ(data.FirstProfileTime().day, written.front().header.day);
    EXPECT_EQ(data.LastProfileTime().minute, written.back().header.minute);
    EXPECT_EQ(data.FirstWaveBurst().samples, test::MakeWaveBurst(12, 2).samples);

    // Field by field the blocks are pinned by the codec tests and the byte-exact rewrite below;
    // here each profile must come from its own place in the file, behind the bursts before it.
    for (int i = 0; i < 7; ++i) {
        ASSERT_EQ(data.LoadProfile(i, i), kReadOk);
        EXPECT_EQ(data.Slot(i).header.profileNumber, written[static_cast<size_t>(i)].header.profileNumber);
        EXPECT_EQ(data.Slot(i).velocity, written[static_cast<size_t>(i)].velocity);
    }
    EXPECT_EQ(data.LoadProfile(7, 7), kReadOutOfRange);
    EXPECT_EQ(data.LoadProfile(-1, 0), kReadOutOfRange);
}

TEST(DataFileRoundTrip, RewritingEveryRecordGivesIdenticalBytes) {
    test::ScratchDir dir;
    test::WriteRecording(dir.File("first.kvr"), Everything(), 10);
    Rewrite(dir.File("first.kvr"), dir.File("second.kvr"));
    const auto first = test::ReadFileBytes(dir.File("first.kvr"));
    ASSERT_GT(first.size(), 3000u);
    EXPECT_TRUE(first == test::ReadFileBytes(dir.File("second.kvr")));
}

TEST(DataFileReading, BadChecksumGivesTwoAndTheProfileStaysInItsSlot) {
    test::ScratchDir dir;
    const auto written = test::WriteRecording(dir.File("c.kvr"), test::InstrumentShape{}, 3);
    CKvrData data;
    ASSERT_TRUE(Open(data, dir.File("c.kvr")));
    auto bytes = test::ReadFileBytes(dir.File("c.kvr"));
    // No blocks: beam 1, cell 1 velocity follows the header of profile 2.
    bytes[static_cast<size_t>(data.ProfilePosition(1) + 80)] = 0x77;
    test::WriteFileBytes(dir.File("c.kvr"), bytes);
    ASSERT_TRUE(Open(data, dir.File("c.kvr")));
    EXPECT_EQ(data.LoadProfile(0, 0), kReadOk);
    EXPECT_EQ(data.LoadProfile(1, 1), kReadBadChecksum);
    EXPECT_EQ(data.Slot(1).header.profileNumber, 2u);
    EXPECT_EQ(data.Slot(1).Velocity(0, 0), 0x77);
    EXPECT_EQ(data.Slot(1).Velocity(0, 1), written[1].Velocity(0, 1));
    EXPECT_EQ(data.LoadProfile(2, 2), kReadOk);
}

TEST(DataFileCache, SlotsAreTheIndexModuloTheCapacity) {
    test::ScratchDir dir;
    test::WriteRecording(dir.File("c.kvr"), test::InstrumentShape{}, 6);
    CKvrData data;
    ASSERT_TRUE(Open(data, dir.File("c.kvr")));
    EXPECT_EQ(data.CacheCapacity(), 3000);
    ASSERT_EQ(data.ReadProfile(0, 1), kReadOk);
    ASSERT_EQ(data.ReadProfile(4, 3001), kReadOk);  // slot 3001 of 3000 is slot 1
    EXPECT_EQ(data.Slot(1).header.profileNumber, 5u);
    EXPECT_EQ(&data.Slot(3001), &data.Slot(1));

    data.SetCacheCapacity(4);
    for (int i = 0; i < 6; ++i) ASSERT_EQ(data.LoadProfile(i, i), kReadOk);
    EXPECT_EQ(data.Slot(0).header.profileNumber, 5u);
    EXPECT_EQ(data.Slot(1).header.profileNumber, 6u);
    EXPECT_EQ(data.Slot(2).header.profileNumber, 3u);
    EXPECT_EQ(data.Slot(-1).header.profileNumber, 4u);  // slot 3
}

TEST(DataFileReading, HeadsThatWouldOverrunTheArraysOrEndEarlyAreRefused) {
    test::ScratchDir dir;
    for (auto [cells, beams, result] : {std::tuple{0, 3, kReadBadLayout}, {129, 3, kReadBadLayout},
                                        {128, 4, kReadOk}, {10, 5, kReadBadLayout}}) {
        test::InstrumentShape shape;
        shape.cells = cells;
        shape.beams = beams;
        test::WriteRecording(dir.File("x.kvr"), shape, 1);
        CKvrData data;
        ASSERT_TRUE(data.OpenFile(dir.File("x.kvr")));
        EXPECT_EQ(data.Validate(), 0);
        EXPECT_EQ(data.ReadHeader(false), result) << cells << " cells, " << beams << " beams";
        EXPECT_EQ(data.ReadProfile(0, 0), result == kReadOk ? kReadOk : kReadError);
    }
    auto bytes = test::ReadFileBytes(dir.File("x.kvr"));
    bytes.resize(300);  // inside the user setup
    test::WriteFileBytes(dir.File("short.kvr"), bytes);
    test::WriteFileBytes(dir.File("text.kvr"), std::vector<uint8_t>(500, 'a'));
    CKvrData data;
    ASSERT_TRUE(data.OpenFile(dir.File("short.kvr")));
    EXPECT_EQ(data.ReadHeader(false), kReadError);
    ASSERT_TRUE(data.OpenFile(dir.File("text.kvr")));
    EXPECT_EQ(data.Validate(), 1);
    EXPECT_NE(data.ReadHeader(false), kReadOk);
    EXPECT_EQ(data.LoadProfile(0, 0), kReadOutOfRange);
    EXPECT_FALSE(data.OpenFile(dir.File("missing.kvr")));
    EXPECT_EQ(data.ReadHeader(false), kReadError);
}

TEST(DataFileReading, PulseCoherentProfilesAreUnwrappedOnReading) {
    test::ScratchDir dir;
    test::InstrumentShape shape;
    shape.cells = 6;
    shape.beams = 1;
    shape.cpu = 120;  // limit from the shallow-water block, velocity scale 1
    shape.pcMode = true;
    // True velocities 50, 80, ..., 200 seen modulo 200 in [-100, 100]; L = 2 x 50.
    const int16_t wrapped[] = {50, 80, -90, -60, -30, 0};
    test::WriteRecording(dir.File("pc.kvr"), shape, 1, [&](ProfileRecord& p, int) {
        p.shallowWater[10] = 50;
        p.shallowWater[11] = 0;
        for (int c = 0; c < 6; ++c) p.Velocity(0, c) = wrapped[c];
    });
    CKvrData data;
    ASSERT_TRUE(Open(data, dir.File("pc.kvr")));
    ASSERT_EQ(data.LoadProfile(0, 0), kReadOk);
    for (int c = 0; c < 6; ++c) EXPECT_EQ(data.Slot(0).Velocity(0, c), 50 + 30 * c) << "cell " << c;
}

TEST(DataFileWriting, WriteFailureTellsThePersonAndGivesFalse) {
    RecordingPrompt prompt;
    CKvrData out;
    out.SetPrompt(&prompt);
    test::InstrumentShape shape;
    shape.cells = 100;
    test::SetInstrument(out, shape);
    ASSERT_TRUE(out.CreateDataFile("/dev/full"));
    bool allWritten = out.WriteHeader();
    const ProfileRecord p = test::MakeProfile(out.WriteLayout(), 1);
    for (int i = 0; i < 10 && allWritten; ++i) allWritten = out.WriteProfile(p);
    EXPECT_FALSE(allWritten && out.CloseFile());
    ASSERT_FALSE(prompt.messages.empty());
    EXPECT_EQ(prompt.messages.front(), "Disk Full or Bad media writing to file:/dev/full");

    ProfileRecord otherShape = p;
    otherShape.Resize(101, 3);
    ASSERT_TRUE(out.CreateDataFile("/dev/null"));
    EXPECT_FALSE(out.WriteProfile(otherShape));
    EXPECT_FALSE(out.WriteWaveBurst(test::MakeWaveBurst(10, 1)));  // the setup has no bursts
    EXPECT_EQ(out.BytesWritten(), 0);
}

TEST(DataFileWriting, FileCanBeReopenedForEachProfile) {
    test::ScratchDir dir;
    CKvrData out;
    test::SetInstrument(out, test::InstrumentShape{});
    ASSERT_TRUE(out.CreateDataFile(dir.File("live.kvr")) && out.WriteHeader() && out.CloseFile());
    for (uint32_t n = 1; n <= 3; ++n) {
        ASSERT_TRUE(out.OpenForAppend(dir.File("live.kvr")));
        ASSERT_TRUE(out.WriteProfile(test::MakeProfile(out.WriteLayout(), n)));
        ASSERT_TRUE(out.CloseFile());
    }
    CKvrData data;
    ASSERT_TRUE(Open(data, dir.File("live.kvr")));
    EXPECT_EQ(data.ProfileCount(), 3);
    ASSERT_EQ(data.LoadProfile(2, 0), kReadOk);
    EXPECT_EQ(data.Slot(0).header.profileNumber, 3u);
}

}  // namespace
}  // namespace rm
