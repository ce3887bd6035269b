// Profile header layouts, the optional blocks and the two block orders of a whole record.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <vector>

#include "data/byte_io.h"
#include "data/profile_codec.h"
#include "data/test_data_file_support.h"

namespace rm {
namespace {

ProfileLayout Layout(bool pulseCoherent = false, uint8_t cpu = 170) {
    ProfileLayout l;
    l.cells = 3;
    l.beams = 2;
    l.pulseCoherent = pulseCoherent;
    l.cpuVersion = cpu;
    return l;
}

TEST(ProfileHeaderCodec, FieldsAtTheirOffsetsAndPulseCoherentRules) {
    std::array<uint8_t, kProfileHeaderSize> b{};
    for (size_t i = 0; i < b.size(); ++i) b[i] = static_cast<uint8_t>(200 - i);  // kept-as-read pattern
    ByteWriter w(b.data(), b.size());
    w.u32(14, 123456);
    w.i16(18, 2023);
    w.u8(20, 17);  // day
    w.u8(21, 9);   // month
    w.u8(25, 58);  // second
    w.u16(36, 25);
    w.i16(40, 3599);
    w.i16(46, -250);
    w.u16(48, 65000);
    w.u8(53, 8);
    w.u16(56, 2222);
    w.u8(58, 0x42);
    for (bool pc : {false, true}) {
        ProfileHeader h;
        DecodeProfileHeader(b.data(), Layout(pc), h);
        EXPECT_EQ(h.profileNumber, 123456u);
        EXPECT_EQ(h.year, 2023);
        EXPECT_EQ(h.day, 17);
        EXPECT_EQ(h.month, 9);
        EXPECT_EQ(h.second, 58);
        EXPECT_EQ(h.heading, 3599);
        EXPECT_EQ(h.temperature, -250);
        EXPECT_EQ(h.pressureCounts, 65000);
        EXPECT_EQ(h.sdFourth, 8);
        EXPECT_EQ(h.word56, 2222);
        EXPECT_EQ(h.inputVoltage, 200 - 75);
        EXPECT_EQ(h.pingCount, pc ? 250u : 25u);
        EXPECT_EQ(h.pressureHighByte, pc ? 0x42 : 0);
        std::array<uint8_t, kProfileHeaderSize> out{};
        EncodeProfileHeader(h, Layout(pc), out.data());
        EXPECT_EQ(out, b) << "pulse-coherent " << pc;
        // A changed high byte is written only where it is one.
        h.pressureHighByte = 7;
        h.pingCount = 90;
        EncodeProfileHeader(h, Layout(pc), out.data());
        EXPECT_EQ(out[58], pc ? 7 : 0x42);
        EXPECT_EQ(out[36], pc ? 9 : 90);
    }
}

TEST(ProfileHeaderCodec, OldLayoutStandsOneByteLaterBetween27And56) {
    std::array<uint8_t, kProfileHeaderSize> old{}, cur{};
    for (size_t i = 0; i < old.size(); ++i) old[i] = static_cast<uint8_t>(i + 100);
    OldHeaderToCurrent(old.data(), cur.data());
    // New offset -> old offset; -1 for bytes the old header does not have.
    std::array<int, kProfileHeaderSize> from{};
    for (int i = 0; i < 80; ++i) from[static_cast<size_t>(i)] = i;
    for (int i = 27; i <= 49; ++i) from[static_cast<size_t>(i)] = i + 1;
    for (int i = 50; i <= 53; ++i) from[static_cast<size_t>(i)] = i + 3;
    from[54] = 57;
    from[55] = -1;
    from[56] = 58;
    from[57] = 59;
    from[58] = from[59] = -1;
    for (size_t i = 0; i < cur.size(); ++i) {
        EXPECT_EQ(cur[i], from[i] < 0 ? 0 : old[static_cast<size_t>(from[i])]) << "new byte " << i;
    }
}

TEST(ProfileBlockCodec, BottomTrackSwapsItsFirstTwoBytesOutsideFirmware88To150) {
    std::array<uint8_t, kBottomTrackBlockSize> stored{};
    for (size_t i = 0; i < stored.size(); ++i) stored[i] = static_cast<uint8_t>(i + 1);
    for (auto [cpu, swapped] : {std::pair<uint8_t, bool>{87, true}, {88, false}, {150, false}, {151, true}}) {
        ProfileRecord rec;
        DecodeBottomTrack(stored.data(), Layout(false, cpu), rec);
        EXPECT_EQ(rec.bottomTrack[0], swapped ? 2 : 1) << "firmware " << int(cpu);
        EXPECT_EQ(rec.bottomTrack[2], 3);
        std::array<uint8_t, kBottomTrackBlockSize> back{};
        EncodeBottomTrack(rec, Layout(false, cpu), back.data());
        EXPECT_EQ(back, stored) << "firmware " << int(cpu);
    }
}

TEST(ProfileBlockCodec, ExternalSensorWordsReorderedForPulseCoherentAndFirmware141To163) {
    const std::array<uint8_t, 8> stored{11, 0, 22, 0, 33, 0, 44, 0};
    const struct {
        uint8_t cpu;
        bool pc, reordered;
    } cases[] = {{140, false, false}, {141, false, true}, {163, false, true}, {164, false, false}, {100, true, true}};
    for (const auto& c : cases) {
        ProfileRecord rec;
        DecodeExtSensor(stored.data(), Layout(c.pc, c.cpu), rec);
        EXPECT_EQ(rec.extSensor[1], c.reordered ? 33 : 22) << "firmware " << int(c.cpu);
        EXPECT_EQ(rec.extSensor[2], c.reordered ? 22 : 33) << "firmware " << int(c.cpu);
        std::array<uint8_t, 8> back{};
        EncodeExtSensor(rec, Layout(c.pc, c.cpu), back.data());
        EXPECT_EQ(back, stored);
    }
}

TEST(ProfileBlockCodec, CtdBlockHoldsFourValuesInThousandths) {
    std::array<uint8_t, kCtdBlockSize> stored{};
    ByteWriter w(stored.data(), stored.size());
    w.i32(0, 12345);
    w.i32(4, 45000);
    w.i32(8, -250);
    w.i32(12, 35125);
    const CtdValues c = DecodeCtdBlock(stored.data());
    EXPECT_FLOAT_EQ(c.temperature, 12.345f);
    EXPECT_FLOAT_EQ(c.conductivity, 45.0f);
    EXPECT_FLOAT_EQ(c.pressure, -0.25f);
    EXPECT_FLOAT_EQ(c.salinity, 35.125f);
    std::array<uint8_t, kCtdBlockSize> back{};
    EncodeCtdBlock(c, back.data());
    EXPECT_EQ(back, stored);
}

TEST(ProfileLayoutRules, GpsFormAndRecordSize) {
    InstrumentConf conf;
    UserSetup user;
    EXPECT_EQ(GpsFormFromFlags(0x03, conf, user), GpsForm::Short40);
    EXPECT_EQ(GpsFormFromFlags(0x02, conf, user), GpsForm::Long48);
    user.EnableInternalGps = 1;
    EXPECT_EQ(GpsFormFromFlags(0x00, conf, user), GpsForm::None);  // the instrument has none
    conf.InternalGpsAvailable = 1;
    EXPECT_EQ(GpsFormFromFlags(0x00, conf, user), GpsForm::Long48);

    conf.Nbeams = 4;
    conf.CtdSensorInstalled = 1;
    conf.ExtSensorInstalled = 1;
    user.NumberOfCells = 20;
    user.BottomTrack = 2;
    // 82 + 4 x 20 x 4 = 402; shallow water 36, bottom track 18, CTD 16, ext 8, GPS 48 or 40.
    EXPECT_EQ(MakeProfileLayout(conf, user, GpsForm::Long48, 2).RecordSize(), 402u + 36 + 18 + 16 + 8 + 48);
    EXPECT_EQ(MakeProfileLayout(conf, user, GpsForm::Short40, 1).RecordSize(), 402u + 40);
    user.BottomTrack = 1;
    EXPECT_EQ(MakeProfileLayout(conf, user, GpsForm::None, 2).RecordSize(), 402u + 18 + 16 + 8);
}

TEST(ProfileRecordCodec, FileOrderPutsGpsAfterTheExternalSensorsAndFrameOrderBefore) {
    ProfileLayout l = Layout(false, 120);
    l.shallowWater = l.bottomTrack = l.ctd = l.extSensor = true;
    l.gps = GpsForm::Long48;
    const ProfileRecord p = test::MakeProfile(l, 5);
    std::vector<uint8_t> file(l.RecordSize()), frame(l.RecordSize());
    ASSERT_TRUE(EncodeProfileRecord(p, l, BlockOrder::File, file.data()));
    ASSERT_TRUE(EncodeProfileRecord(p, l, BlockOrder::Frame, frame.data()));
    const size_t blocks = 80 + 36 + 18 + 16;
    ByteReader f(file.data(), file.size()), w(frame.data(), frame.size());
    EXPECT_EQ(f.u16(blocks), p.extSensor[0]);
    EXPECT_EQ(f.f64(blocks + 8), p.gps.startTime);
    EXPECT_EQ(w.f64(blocks), p.gps.startTime);
    EXPECT_EQ(w.u16(blocks + 48), p.extSensor[0]);
    const size_t arrays = blocks + 8 + 48;  // beam-major, 3 cells a beam
    EXPECT_EQ(f.i16(arrays + 2 * 3), p.Velocity(1, 0));
    EXPECT_EQ(f.u8(arrays + 12 + 4), p.StdError(1, 1));
    EXPECT_EQ(f.u8(arrays + 18 + 5), p.Amplitude(1, 2));
    EXPECT_EQ(f.u16(l.RecordSize() - 2), RecordChecksum(file.data(), l.RecordSize() - 2));

    for (BlockOrder order : {BlockOrder::File, BlockOrder::Frame}) {
        ProfileRecord back;
        ASSERT_EQ(DecodeProfileRecord((order == BlockOrder::File ? file : frame).data(), l, order, false, back),
                  DecodeResult::Ok);
        EXPECT_EQ(back.extSensor, p.extSensor);
        EXPECT_EQ(back.gps.endLongitude, p.gps.endLongitude);
        EXPECT_EQ(back.bottomTrack, p.bottomTrack);
        EXPECT_EQ(back.velocity, p.velocity);
    }
}

TEST(ProfileRecordCodec, FileFlagsTellTheWrittenGpsFormAndFramesStayAsTheyAre) {
    ProfileLayout l = Layout();
    l.gps = GpsForm::Long48;
    ProfileRecord p = test::MakeProfile(l, 1);
    std::vector<uint8_t> bytes(l.RecordSize());
    const auto flagsWritten = [&](uint8_t flags, BlockOrder order) {
        p.header.flags = flags;
        EXPECT_TRUE(EncodeProfileRecord(p, l, order, bytes.data()));
        return bytes[1];
    };
    EXPECT_EQ(flagsWritten(0x10, BlockOrder::Frame), 0x10);
    EXPECT_EQ(flagsWritten(0x10, BlockOrder::File), 0x12);
    EXPECT_EQ(flagsWritten(0x11, BlockOrder::File), 0x12);  // read in the 40-byte form
    l.gpsImpliedBySetup = true;
    EXPECT_EQ(flagsWritten(0x10, BlockOrder::File), 0x10);
    l.gps = GpsForm::None;
    p.hasGps = false;
    EXPECT_EQ(flagsWritten(0x13, BlockOrder::File), 0x10);
    // The writer writes neither the 40-byte form nor the old layout.
    l.gps = GpsForm::Short40;
    EXPECT_FALSE(EncodeProfileRecord(p, l, BlockOrder::File, bytes.data()));
}

TEST(ProfileRecordCodec, CtdBlockGoesBackAsReadUnlessTheValuesChanged) {
    ProfileLayout l = Layout();
    l.ctd = true;
    ProfileRecord p = test::MakeProfile(l, 1);
    ByteWriter raw(p.ctdRaw.data(), p.ctdRaw.size());
    raw.i32(0, 100);  // 0.1 degC: not exact as a float
    raw.i32(12, 1100);
    p.ctd = DecodeCtdBlock(p.ctdRaw.data());
    std::vector<uint8_t> bytes(l.RecordSize());
    ASSERT_TRUE(EncodeProfileRecord(p, l, BlockOrder::File, bytes.data()));
    EXPECT_TRUE(std::equal(p.ctdRaw.begin(), p.ctdRaw.end(), bytes.begin() + 80));
    p.ctd.salinity = 2.5f;
    ASSERT_TRUE(EncodeProfileRecord(p, l, BlockOrder::File, bytes.data()));
    EXPECT_EQ(ByteReader(bytes.data(), bytes.size()).i32(80 + 12), 2500);
    EXPECT_EQ(ByteReader(bytes.data(), bytes.size()).i32(80), 100);
}

TEST(WaveBurstCodec, ChecksumCoversHeaderAndSamples) {
    const WaveBurst burst = test::MakeWaveBurst(30, 4);
    std::vector<uint8_t> bytes(80 + 30 + 2);
    ASSERT_TRUE(EncodeWaveBurst(burst, 30, bytes.data()));
    WaveBurst back;
    EXPECT_EQ(DecodeWaveBurst(bytes.data(), 30, back), DecodeResult::Ok);
    EXPECT_EQ(back.samples, burst.samples);
    EXPECT_EQ(back.Sample(1), static_cast<uint32_t>(bytes[83] | (bytes[84] << 8) | (bytes[85] << 16)));
    bytes[90] ^= 0xFF;
    EXPECT_EQ(DecodeWaveBurst(bytes.data(), 30, back), DecodeResult::BadChecksum);
    EXPECT_FALSE(EncodeWaveBurst(burst, 33, bytes.data()));
}

}  // namespace
}  // namespace rm
