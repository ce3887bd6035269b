// Configuration and operation records: both configuration layouts, validity checks,
// byte-exact re-encoding, and the frequency tables.

#include <gtest/gtest.h>

#include <iterator>

#include "data/instrument_records.h"
#include "data/test_record_images.h"

namespace rm {
namespace {

using test::Image;

std::vector<uint8_t> Bytes(const std::array<uint8_t, kConfSize>& a) { return {a.begin(), a.end()}; }

TEST(InstrumentConf, CurrentLayoutDecodesAndReencodesToItsExactBytes) {
    const Image img = test::ConfV2();
    InstrumentConf c;
    ASSERT_EQ(DecodeConf(img.data(), img.size(), c), RecordStatus::Ok);
    // Fields on either side of every layout boundary.
    EXPECT_EQ(c.CPUSoftwareVerNum, 165);
    EXPECT_EQ(c.BoardRev, 'F');
    EXPECT_EQ(c.SerialNumber, "S1234");
    EXPECT_EQ(c.KvrType, 1);
    EXPECT_EQ(c.BeamGeometry, 3);
    EXPECT_EQ(c.SlantAngle, 250);
    EXPECT_EQ(c.PressureInstalled, 1);
    EXPECT_EQ(c.TransformationMatrix[0], -600);
    EXPECT_EQ(c.TransformationMatrix[15], 900);
    EXPECT_EQ(c.PressureScale, 2500000);
    EXPECT_EQ(c.PressureOffset, -150000);
    EXPECT_EQ(c.ExtSensorInstalled, 1);
    EXPECT_EQ(c.PressureScale2, -42);
    EXPECT_EQ(c.InternalGpsAvailable, 1);
    EXPECT_EQ(c.PressureRange, 7);
    EXPECT_EQ(Bytes(EncodeConf(c)), img.bytes);  // reserved bytes and bytes behind the NUL survive

    c.KvrType = 6;
    c.SerialNumber = "AB";
    const auto out = EncodeConf(c);
    EXPECT_EQ(out[25], 6);
    const std::vector<uint8_t> serial(out.begin() + 15, out.begin() + 25);
    EXPECT_EQ(serial, (std::vector<uint8_t>{'A', 'B', 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(InstrumentConf, OldLayoutIsWidenedWithTheFixedValues) {
    Image img = test::ConfV1().u8(24, 4);  // four beams, yet only nine stored entries
    InstrumentConf c;
    ASSERT_EQ(DecodeConf(img.data(), img.size(), c), RecordStatus::Ok);
    EXPECT_EQ(c.SerialNumber, "OLD77");
    EXPECT_EQ(c.KvrType, 2);
    EXPECT_EQ(c.Nbeams, 4);
    EXPECT_EQ(c.SlantAngle, -30);  // i8 degrees x 10
    EXPECT_EQ(c.TemperatureInstalled, 0);
    EXPECT_EQ(c.PressureInstalled, 1);
    EXPECT_EQ(c.DSPSoftwareVerNum, 21);
    EXPECT_EQ(c.BoardRev, 'D');
    EXPECT_EQ(c.BeamGeometry, 1);
    for (int i = 0; i < 16; ++i) EXPECT_EQ(c.TransformationMatrix[i], i < 9 ? 1024 + i : 0) << i;

    const auto out = EncodeConf(c);
    EXPECT_EQ(out[1], 2);
    EXPECT_EQ(out[2] | (out[3] << 8), 96);
    EXPECT_EQ(out[35], 0);
    EXPECT_EQ(out[68] | (out[69] << 8), 90);
    InstrumentConf again;
    ASSERT_EQ(DecodeConf(out.data(), out.size(), again), RecordStatus::Ok);
    EXPECT_EQ(again.TransformationMatrix, c.TransformationMatrix);
    EXPECT_EQ(again.SerialNumber, "OLD77");
}

TEST(InstrumentConf, RefusesBadHeadersShortImagesAndEveryRange) {
    struct Case { Image img; size_t size; RecordStatus status; };
    const Case cases[] = {
        {test::ConfV2().u8(0, 15), 96, RecordStatus::BadHeader},
        {test::ConfV2().u8(1, 3), 96, RecordStatus::BadHeader},
        {test::ConfV2().u16(2, 64), 96, RecordStatus::BadHeader},
        {test::ConfV1().u16(2, 96), 64, RecordStatus::BadHeader},
        {test::ConfV2(), 95, RecordStatus::Short},
        {test::ConfV1().u8(1, 0), 64, RecordStatus::Ok},
        {test::ConfV2().u8(25, 6).u8(26, 5).u8(30, 2), 96, RecordStatus::Ok},  // upper limits
        {test::ConfV2().u8(26, 1), 96, RecordStatus::Ok},
        {test::ConfV2().u8(25, 7), 96, RecordStatus::BadRanges},  // KvrType
        {test::ConfV2().u8(26, 0), 96, RecordStatus::BadRanges},  // Nbeams
        {test::ConfV2().u8(26, 6), 96, RecordStatus::BadRanges},
        {test::ConfV2().u8(30, 3), 96, RecordStatus::BadRanges},  // orientation
        {test::ConfV2().u8(31, 2), 96, RecordStatus::BadRanges},  // the four installed flags
        {test::ConfV2().u8(32, 2), 96, RecordStatus::BadRanges},
        {test::ConfV2().u8(33, 2), 96, RecordStatus::BadRanges},
        {test::ConfV2().u8(34, 2), 96, RecordStatus::BadRanges},
        {test::ConfV1().u8(24, 0), 64, RecordStatus::BadRanges},  // old layout, own offsets
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        InstrumentConf c;
        EXPECT_EQ(DecodeConf(cases[i].img.data(), cases[i].size, c), cases[i].status) << "case " << i;
        EXPECT_EQ(ConfHeaderIsValid(cases[i].img.data(), cases[i].size), cases[i].status == RecordStatus::Ok);
        EXPECT_EQ(c.raw.empty(), cases[i].status != RecordStatus::Ok) << "a refused record is not decoded";
    }
}

TEST(FrequencyTables, DisplayAndUnwrappingDisagreeAtSixAndSevenHasNoUnwrapping) {
    EXPECT_STREQ(FrequencyName(6), "5000 kHz");
    EXPECT_EQ(DisplayFrequencyKHz(6), 5000);
    EXPECT_EQ(UnwrapFrequencyKHz(6), 125);
    EXPECT_STREQ(FrequencyName(7), "125kHz");
    EXPECT_EQ(DisplayFrequencyKHz(7), 125);
    EXPECT_EQ(UnwrapFrequencyKHz(7), 0);
    for (int i = 0; i < 6; ++i) EXPECT_EQ(DisplayFrequencyKHz(i), UnwrapFrequencyKHz(i)) << i;
    EXPECT_STREQ(FrequencyName(8), "");
    EXPECT_EQ(DisplayFrequencyKHz(-1), 0);
}

TEST(OperationRecord, UnwrapWordsNeedFirmwareSixteenAndKeptBytesSurvive) {
    Image img(64);
    for (size_t i = 0; i < 64; ++i) img.u8(i, static_cast<uint8_t>(3 * i + 1));
    img.i16(39, -2).i16(47, 480).i16(60, 6);
    InstrumentConf conf;
    for (uint8_t cpu : {15, 16}) {
        conf.CPUSoftwareVerNum = cpu;
        OperationRecord o;
        ASSERT_EQ(DecodeOper(img.data(), img.size(), conf, o), RecordStatus::Ok);
        EXPECT_EQ(o.bottomTrackDisable, -2);
        EXPECT_EQ(o.unwrapSamples, cpu >= 16 ? 480 : 0);
        EXPECT_EQ(o.unwrapPulses, cpu >= 16 ? 6 : 0);
        const auto out = EncodeOper(o, conf);
        EXPECT_EQ(std::vector<uint8_t>(out.begin(), out.end()), img.bytes) << int(cpu);
    }
    OperationRecord o;
    EXPECT_EQ(DecodeOper(img.data(), 63, conf, o), RecordStatus::Short);
}

}  // namespace
}  // namespace rm
