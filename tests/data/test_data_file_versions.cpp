// Files written byte by byte in forms the writer never makes: the old version 1 layout and
// the 40-byte GPS form.

#include <gtest/gtest.h>

#include "data/byte_io.h"
#include "data/kvr_data.h"
#include "data/test_data_file_support.h"

namespace rm {
namespace {

// Appends a record of `size` bytes made by `fill`, closed with its checksum.
template <typename Fill>
void AppendRecord(std::vector<uint8_t>& file, size_t size, Fill fill) {
    std::vector<uint8_t> rec(size, 0);
    ByteWriter w(rec.data(), rec.size());
    fill(w);
    w.u16(size - 2, RecordChecksum(rec.data(), size - 2));
    file.insert(file.end(), rec.begin(), rec.end());
}

TEST(DataFileVersions, VersionOneFileWithOldHeaderAndCellMajorArrays) {
    std::vector<uint8_t> file(64 + 64 + 256, 0);
    ByteWriter w(file.data(), file.size());
    w.u8(0, 16);  // 64-byte configuration, version 1
    w.u8(1, 1);
    w.u16(2, 64);
    w.u8(12, 30);
    w.text(13, 10, "OLD77");
    w.u8(24, 3);          // beams
    w.u16(128 + 18, 2);   // user setup: cells
    w.u16(128 + 20, 50);  // cell size
    const size_t S = 80 + 48 + 4 * 2 * 3 + 2;
    for (int p = 0; p < 2; ++p) {
        AppendRecord(file, S, [&](ByteWriter& r) {
            r.u8(1, 0x02);  // GPS in the 48-byte form
            r.u32(14, static_cast<uint32_t>(500 + p));
            r.i16(18, 1998);
            r.u8(20, static_cast<uint8_t>(3 + p));  // day
            r.i16(41, static_cast<int16_t>(1200 + p));  // heading, old offset
            r.u8(57, 99);                               // second pressure byte, old offset
            r.f64(80, 83000.0 + p);
            for (int i = 0; i < 6; ++i) {  // cell 0 beams 0..2, then cell 1
                r.i16(128 + 2 * static_cast<size_t>(i), static_cast<int16_t>(100 * (i + 1) + p));
                r.u8(140 + static_cast<size_t>(i), static_cast<uint8_t>(i));
                r.u8(146 + static_cast<size_t>(i), static_cast<uint8_t>(200 + i));
            }
        });
    }
    file.resize(file.size() + 10, 0xEE);  // a partial third record

    test::ScratchDir dir;
    test::WriteFileBytes(dir.File("old.kvr"), file);
    CKvrData data;
    ASSERT_TRUE(data.OpenFile(dir.File("old.kvr")));
    EXPECT_EQ(data.Validate(), 0);
    ASSERT_EQ(data.ReadHeader(false), kReadOk);
    EXPECT_EQ(data.FileVersion(), 1);
    EXPECT_EQ(data.conf.SerialNumber, "OLD77");
    EXPECT_EQ(data.HeaderSize(), 384);
    EXPECT_EQ(data.RecordSize(), static_cast<int64_t>(S));
    EXPECT_EQ(data.ProfileCount(), 2);
    EXPECT_EQ(data.FirstProfileTime().day, 3);
    EXPECT_EQ(data.LastProfileTime().day, 4);

    ASSERT_EQ(data.LoadProfile(1, 0), kReadOk);
    const ProfileRecord& p = data.Slot(0);
    EXPECT_EQ(p.header.profileNumber, 501u);
    EXPECT_EQ(p.header.heading, 1201);
    EXPECT_EQ(p.header.pressure2Counts, 99);
    EXPECT_TRUE(p.hasGps);
    EXPECT_FALSE(p.hasBottomTrack);
    EXPECT_EQ(p.gps.startTime, 83001.0);
    const int16_t velocity[3][2] = {{101, 401}, {201, 501}, {301, 601}};  // [beam][cell]
    for (int b = 0; b < 3; ++b) {
        for (int c = 0; c < 2; ++c) EXPECT_EQ(p.Velocity(b, c), velocity[b][c]) << b << " " << c;
    }
    EXPECT_EQ(p.StdError(1, 1), 4);
    EXPECT_EQ(p.Amplitude(2, 1), 205);
}

TEST(DataFileVersions, GpsShortFormIsReadAsTheLongFormAndWrittenSo) {
    test::ScratchDir dir;
    test::InstrumentShape shape;
    shape.cells = 2;
    shape.beams = 2;
    test::WriteRecording(dir.File("short.kvr"), shape, 0);
    auto file = test::ReadFileBytes(dir.File("short.kvr"));
    const size_t S = 80 + 40 + 16 + 2;
    for (uint32_t p = 0; p < 3; ++p) {
        AppendRecord(file, S, [&](ByteWriter& r) {
            r.u8(1, 0x01);
            r.u32(14, p);
            r.u32(80, 120000 + p);
            r.f64(84, 10.5);
            r.f64(92, 20.5);
            r.u32(100, 120100 + p);
            r.f64(104, 11.5);
            r.f64(112, 21.5);
            r.i16(120, 7);
        });
    }
    test::WriteFileBytes(dir.File("short.kvr"), file);

    CKvrData data;
    ASSERT_TRUE(data.OpenFile(dir.File("short.kvr")));
    ASSERT_EQ(data.ReadHeader(false), kReadOk);
    EXPECT_EQ(data.Layout().gps, GpsForm::Short40);
    EXPECT_EQ(data.ProfileCount(), 3);
    ASSERT_EQ(data.LoadProfile(2, 0), kReadOk);
    const GpsBlock read = data.Slot(0).gps;
    EXPECT_EQ(read.startTime, 120002.0);
    EXPECT_EQ(read.startLatitude, 10.5);
    EXPECT_EQ(read.endTime, 120102.0);
    EXPECT_EQ(read.endLongitude, 21.5);
    EXPECT_EQ(data.Slot(0).Velocity(0, 0), 7);

    CKvrData out;
    out.conf = data.conf;
    out.oper = data.oper;
    out.user = data.user;
    ASSERT_TRUE(out.CreateDataFile(dir.File("long.kvr")));
    ASSERT_TRUE(out.WriteHeader() && out.WriteProfile(data.Slot(0)) && out.CloseFile());
    CKvrData again;
    ASSERT_TRUE(again.OpenFile(dir.File("long.kvr")));
    ASSERT_EQ(again.ReadHeader(false), kReadOk);
    EXPECT_EQ(again.Layout().gps, GpsForm::Long48);
    EXPECT_EQ(again.RecordSize(), static_cast<int64_t>(S + 8));
    ASSERT_EQ(again.LoadProfile(0, 0), kReadOk);
    EXPECT_EQ(again.Slot(0).gps.startTime, 120002.0);
    EXPECT_EQ(again.Slot(0).gps.endLongitude, 21.5);
}

}  // namespace
}  // namespace rm
