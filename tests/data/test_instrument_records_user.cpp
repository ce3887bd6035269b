// User setup record: fields, the two tail rules, the cell size unit and its rounding, text and
// deployment time fields, byte-exact re-encoding.

#include <gtest/gtest.h>

#include "data/instrument_records.h"
#include "data/test_record_images.h"

namespace rm {
namespace {

using test::Image;

InstrumentConf Conf(uint8_t type, uint8_t cpu) {
    InstrumentConf c;
    c.type = type;
    c.CPUSoftwareVerNum = cpu;
    return c;
}

UserSetup Decode(const Image& img, const InstrumentConf& conf) {
    UserSetup u;
    EXPECT_EQ(DecodeUser(img.data(), img.size(), conf, u), RecordStatus::Ok);
    return u;
}

uint16_t Word(const std::array<uint8_t, kUserSize>& out, size_t at) {
    return static_cast<uint16_t>(out[at] | (out[at + 1] << 8));
}

TEST(UserSetup, DecodesFieldsAndReencodesToItsExactBytes) {
    const Image img = test::User(12);
    const InstrumentConf conf = Conf(16, 165);
    const UserSetup u = Decode(img, conf);
    // Fields on either side of every odd offset and of the text fields.
    EXPECT_EQ(u.DefaultSpeedOfSound, 14905);
    EXPECT_EQ(u.SensorDepth, 50u);
    EXPECT_EQ(u.TemperatureMode, 1);
    EXPECT_EQ(u.AveragingInterval, 10);
    EXPECT_EQ(u.ProfilesPerBurst, 8);
    EXPECT_EQ(u.CoordinateSystem, 2);
    EXPECT_EQ(u.DeploymentMode, 1);
    EXPECT_EQ(u.DeploymentName, "RIV");
    EXPECT_EQ(u.DeploymentYear, 2023);
    EXPECT_EQ(u.DeploymentMonth, 6);
    EXPECT_EQ(u.DeploymentHour, 13);
    EXPECT_EQ(u.DeploymentSecond, 8);
    EXPECT_EQ(u.CommentLine1, "first comment");
    EXPECT_EQ(u.CommentLine3, "third");
    EXPECT_EQ(u.BottomTrack, 2);
    EXPECT_EQ(u.MagneticDeclinationRaw, -250);
    EXPECT_EQ(u.PseriesLength, 1024);
    EXPECT_EQ(u.EnableInternalGps, 1);
    const auto out = EncodeUser(u, conf);
    EXPECT_EQ(std::vector<uint8_t>(out.begin(), out.end()), img.bytes);

    UserSetup shortRead;
    EXPECT_EQ(DecodeUser(img.data(), 255, conf, shortRead), RecordStatus::Short);
}

TEST(UserSetup, TailRulesOfDecodingAndEncodingDifferOnPurpose) {
    struct Case { uint8_t cpu, userType, confType; bool decoded, encoded; };
    const Case cases[] = {
        {44, 12, 16, true, true},   {44, 3, 16, true, true},
        {43, 12, 16, false, true},  // between 20 and 43 only the encoder keeps it
        {50, 12, 0, true, false},   // user type 12 counts for decoding only
        {19, 18, 0, true, false},   // old firmware with user type 18
        {20, 18, 0, false, false},
        {50, 18, 0, false, true},   // user type 18 counts for encoding from 44 on
    };
    for (const Case& k : cases) {
        SCOPED_TRACE(testing::Message() << int(k.cpu) << "/" << int(k.userType) << "/" << int(k.confType));
        const InstrumentConf conf = Conf(k.confType, k.cpu);
        UserSetup u = Decode(test::User(k.userType), conf);
        EXPECT_EQ(u.BottomTrack, k.decoded ? 2 : 0);
        EXPECT_EQ(u.MagneticDeclinationRaw, k.decoded ? -250 : 0);
        EXPECT_EQ(u.reserved253, k.decoded ? 0x53 : 0);
        EXPECT_EQ(u.EnableInternalGps, k.decoded ? 1 : 0);

        u.BottomTrack = 1;
        u.MagneticDeclinationRaw = 0x0102;
        u.EnableInternalGps = 1;
        const auto out = EncodeUser(u, conf);
        const std::vector<uint8_t> tail(out.begin() + 245, out.end());
        // Kept: the three changed fields, the others as decoded (image values or zero).
        const std::vector<uint8_t> kept = k.decoded ? std::vector<uint8_t>{1, 0x02, 0x01, 4, 0x14, 0x00, 0x04, 0x52, 0x53, 1, 1}
                                                    : std::vector<uint8_t>{1, 0x02, 0x01, 0, 0, 0, 0, 0, 0, 0, 1};
        EXPECT_EQ(tail, k.encoded ? kept : std::vector<uint8_t>(11, 0));
    }
}

TEST(UserSetup, CellSizeTurnsToTenthsInPulseCoherentModeFromFirmwareSixPointZero) {
    const Image pc = test::User(12);  // raw cell size 123, PCMode 1
    EXPECT_FLOAT_EQ(Decode(pc, Conf(16, 59)).CellSizeCm, 123.0f);
    EXPECT_FLOAT_EQ(Decode(pc, Conf(16, 60)).CellSizeCm, 12.3f);
    EXPECT_FLOAT_EQ(Decode(test::User(12).u8(254, 0), Conf(16, 60)).CellSizeCm, 123.0f);

    // Re-encoding rounds halves away from zero under the same condition.
    UserSetup u = Decode(pc, Conf(16, 60));
    u.CellSizeCm = 12.25f;  // 122.5 tenths
    EXPECT_EQ(Word(EncodeUser(u, Conf(16, 60)), 20), 123);
    u.CellSizeCm = 6.5f;  // whole centimetres on firmware 5.9
    EXPECT_EQ(Word(EncodeUser(u, Conf(16, 59)), 20), 7);
}

TEST(UserSetup, TextAndDeploymentTimeFieldsLandAtTheirOffsets) {
    const InstrumentConf conf = Conf(16, 165);
    UserSetup u = Decode(test::User(12), conf);
    u.DeploymentName = "ABCDE";
    u.CommentLine2 = std::string(60, 'x');  // a full line leaves no room for a NUL
    u.DeploymentYear = 2024;
    u.DeploymentDay = 29;
    u.DeploymentMonth = 2;
    u.DeploymentMinute = 7;
    u.DeploymentHour = 23;
    u.DeploymentHundredths = 50;
    u.DeploymentSecond = 59;
    const auto out = EncodeUser(u, conf);
    EXPECT_EQ(std::vector<uint8_t>(out.begin() + 47, out.begin() + 64),
              (std::vector<uint8_t>{'A', 'B', 'C', 'D', 'E', 0, 0, 0, 0, 2024 & 0xFF, 2024 >> 8, 29, 2, 7, 23, 50, 59}));
    EXPECT_EQ(std::string(out.begin() + 124, out.begin() + 184), u.CommentLine2);
    Image back(256);
    back.bytes.assign(out.begin(), out.end());
    EXPECT_EQ(Decode(back, conf).CommentLine2, u.CommentLine2);
}

TEST(UserSetup, DeclinationIsStoredInFiftiethsRoundedHalfAwayFromZero) {
    EXPECT_DOUBLE_EQ(DeclinationDegrees(-250), -5.0);
    EXPECT_EQ(DeclinationToRaw(0.25), 13);  // 12.5 goes up, not to the even 12
    EXPECT_EQ(DeclinationToRaw(-0.25), -13);
    EXPECT_EQ(DeclinationToRaw(1000.0), 32767);  // beyond the field: held at its limit
}

}  // namespace
}  // namespace rm
