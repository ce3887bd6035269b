// Calendar arithmetic of the profile times and the text of the simulated NMEA sentences.

#include <gtest/gtest.h>

#include <vector>

#include "data/nmea_gps_fix.h"
#include "data/nmea_sentences.h"
#include "sim/nmea_output.h"
#include "sim/sim_clock.h"

namespace rm::sim {
namespace {

void ExpectTime(const CivilTime& t, int y, int mo, int d, int h, int mi, int s) {
    EXPECT_EQ((std::vector<int>{t.year, t.month, t.day, t.hour, t.minute, t.second}),
              (std::vector<int>{y, mo, d, h, mi, s}));
}

TEST(SimClockTest, SecondsCrossDaysMonthsAndLeapYears) {
    ExpectTime(AddSeconds({2024, 2, 28, 23, 59, 50}, 15), 2024, 2, 29, 0, 0, 5);
    ExpectTime(AddSeconds({2023, 2, 28, 23, 59, 50}, 15), 2023, 3, 1, 0, 0, 5);
    ExpectTime(AddSeconds({2023, 12, 31, 23, 59, 59}, 1), 2024, 1, 1, 0, 0, 0);
    ExpectTime(AddSeconds({2024, 3, 1, 0, 0, 0}, -1), 2024, 2, 29, 23, 59, 59);
    ExpectTime(AddSeconds({2024, 6, 1, 10, 0, 0}, 86400 * 30 + 3661), 2024, 7, 1, 11, 1, 1);
    EXPECT_DOUBLE_EQ(HhmmssOf({2024, 6, 1, 12, 34, 56}), 123456.0);
}

TEST(SimClockTest, ParsesOnlyRealTimes) {
    CivilTime t;
    ASSERT_TRUE(ParseCivilTime("2024-02-29T12:34:56", t));
    ExpectTime(t, 2024, 2, 29, 12, 34, 56);
    EXPECT_TRUE(ParseCivilTime("2023-07-04 00:00:00", t));
    for (const char* bad : {"2023-02-29 10:00:00", "2024-13-01 10:00:00", "2024-01-01 24:00:00", "2024-01-01",
                            "2024-01-01 10:00:00x", "yesterday"}) {
        EXPECT_FALSE(ParseCivilTime(bad, t)) << bad;
    }
}

TEST(NmeaOutputTest, AnglesCarrySevenDecimalsOfMinutes) {
    EXPECT_EQ(FormatNmeaLatitude(45.5).value, "4530.0000000");
    EXPECT_EQ(FormatNmeaLatitude(45.5).hemisphere, "N");
    EXPECT_EQ(FormatNmeaLongitude(-7.25).value, "00715.0000000");
    EXPECT_EQ(FormatNmeaLongitude(-7.25).hemisphere, "W");
    // 12.3456789 degrees = 12 degrees 20.740734 minutes.
    EXPECT_EQ(FormatNmeaLatitude(-12.3456789).value, "1220.7407340");
    // Minutes that round up to 60 turn into the next degree.
    EXPECT_EQ(FormatNmeaLatitude(10.999999999999).value, "1100.0000000");
}

TEST(NmeaOutputTest, SentencesDecodeToWhatWasSent) {
    const GeoPoint p{-33.8688197, 151.2092955};
    const std::string gga = GgaSentence({2024, 6, 1, 9, 5, 7}, p);
    EXPECT_EQ(gga.rfind("$GPGGA,090507.00,", 0), 0u);
    GpsFix fix;
    ASSERT_EQ(TakeNewestFix(BuildSentenceTree({gga}, kGpsTalkerPrefix), fix), 1);
    EXPECT_NEAR(fix.Latitude, p.latitudeDeg, 2e-9);
    EXPECT_NEAR(fix.Longitude, p.longitudeDeg, 2e-9);
    EXPECT_DOUBLE_EQ(fix.Time, 90507.0);
    // The checksum is the XOR of the characters between "$" and "*".
    unsigned sum = 0;
    const size_t star = gga.find('*');
    for (size_t i = 1; i < star; ++i) sum ^= static_cast<unsigned char>(gga[i]);
    EXPECT_EQ(std::stoul(gga.substr(star + 1), nullptr, 16), sum);

    EXPECT_EQ(DptSentence(3.456).rfind("$SDDPT,3.46,0.0*", 0), 0u);
    const NodeRef echo = BuildSentenceTree({DbtSentence(3.0)}, kEchoTalkerPrefix);
    EXPECT_EQ(SentenceField(FindSentence(echo, "DBT"), 2), "3.00");
    EXPECT_EQ(SentenceField(FindSentence(echo, "DBT"), 0), "9.8");
}

}  // namespace
}  // namespace rm::sim
