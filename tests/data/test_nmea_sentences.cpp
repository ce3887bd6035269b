// The NMEA line reader and the tree of newest sentences.

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "data/nmea_sentences.h"
#include "data/test_data_file_support.h"

namespace rm {
namespace {

std::vector<std::string> FeedLines(NmeaLineReader& reader, const std::string& bytes) {
    std::vector<std::string> lines;
    reader.Feed(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(),
                [&](const std::string& line) { lines.push_back(line); });
    return lines;
}

std::vector<std::string> Fields(const NodeRef& sentences, const std::string& id) {
    NodeRef fields = FindSentence(sentences, id);
    std::vector<std::string> out;
    for (int i = 0; i < SentenceFieldCount(fields); ++i) out.push_back(SentenceField(fields, i));
    return out;
}

using Words = std::vector<std::string>;

TEST(NmeaLineReader, LineFeedCarriageReturnAndNulEndLinesAndEmptyLinesAreSkipped) {
    NmeaLineReader reader;
    std::string bytes = "$GPA,1\r\n$GPB,2\n\n$GPC,3";
    bytes.push_back('\0');
    bytes += "\r\r$GPD";
    EXPECT_EQ(FeedLines(reader, bytes), (Words{"$GPA,1", "$GPB,2", "$GPC,3"}));
    EXPECT_EQ(reader.Pending(), "$GPD");
}

TEST(NmeaLineReader, LongStreamWithoutLineEndKeepsOnlyItsTail) {
    // 2000 distinct characters. The 1024th character drops the oldest 299 (keeps 725); each
    // further 299 characters do the same: drops after characters 1024, 1323, 1622 and 1921,
    // 1196 characters dropped in all, so characters 1197 to 2000 (804) remain.
    std::string stream;
    for (int i = 0; i < 2000; ++i) stream.push_back(static_cast<char>('A' + i % 26));
    NmeaLineReader reader;
    EXPECT_TRUE(FeedLines(reader, stream).empty());
    EXPECT_EQ(reader.Pending().size(), 804u);
    EXPECT_EQ(reader.Pending(), stream.substr(1196));
    EXPECT_EQ(FeedLines(reader, "\n"), (Words{stream.substr(1196)}));
}

TEST(ParseNmeaLine, StoresWholeLineAsValueAndFieldsAfterIdInOrder) {
    NodeRef tree = NodeRef::MakeNew();
    const std::string line = "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47";
    EXPECT_EQ(ParseNmeaLine(line, "GP", tree), 1);
    EXPECT_EQ(SentenceLine(tree, "GGA"), line);
    EXPECT_EQ(Fields(tree, "GGA"),
              (Words{"123519", "4807.038", "N", "01131.000", "E", "1", "08", "0.9", "545.4", "M", "46.9", "M", "", ""}));
}

TEST(ParseNmeaLine, ChecksumCutOnlyWhenNoCommaFollowsTheStar) {
    NodeRef tree = NodeRef::MakeNew();
    EXPECT_EQ(ParseNmeaLine("$GPXYZ,1,2", "GP", tree), 1);  // no "*": taken whole
    EXPECT_EQ(Fields(tree, "XYZ"), (Words{"1", "2"}));
    EXPECT_EQ(ParseNmeaLine("$GPABC,a*b,c", "GP", tree), 1);  // "*" before the last comma stays
    EXPECT_EQ(Fields(tree, "ABC"), (Words{"a*b", "c"}));
    EXPECT_EQ(ParseNmeaLine("$GPDEF,x*y,z*7F", "GP", tree), 1);  // only the last "*" cuts
    EXPECT_EQ(Fields(tree, "DEF"), (Words{"x*y", "z"}));
}

TEST(ParseNmeaLine, DropsOtherTalkersMissingDollarAndEmptyId) {
    NodeRef tree = NodeRef::MakeNew();
    EXPECT_EQ(ParseNmeaLine("$SDDPT,3.4,0.0*5A", "GP", tree), 0);
    EXPECT_EQ(ParseNmeaLine("GPGGA,1,2", "GP", tree), 0);
    EXPECT_EQ(ParseNmeaLine("$GP,1,2", "GP", tree), 0);
    EXPECT_EQ(ParseNmeaLine("$GP*11", "GP", tree), 0);
    EXPECT_EQ(ParseNmeaLine("$G", "GP", tree), 0);
    EXPECT_EQ(ParseNmeaLine("", "GP", tree), 0);
    EXPECT_EQ(tree.ItemCount(), 0);
    EXPECT_EQ(ParseNmeaLine("$gpRMC,1", "GP", tree), 1);  // the prefix is matched without case
}

TEST(ParseNmeaLine, TheGpsStreamTakesThePositionTalkersOfTodaysReceivers) {
    // "GP" and the talkers of combined and other satellite systems, each keyed by the id alone:
    // the newest GGA stands under "GGA" with its own talker in the line.
    NodeRef tree = NodeRef::MakeNew();
    for (const char* talker : {"GP", "GN", "GL", "GA", "GB", "GQ", "GI", "gn"}) {
        const std::string line = std::string("$") + talker + "GGA,120000.00,4500.0,N,00700.0,E,1,08,1.0,10.0,M,,M,,";
        EXPECT_EQ(ParseNmeaLine(line, kGpsTalkerPrefix, tree), 1) << talker;
        EXPECT_EQ(SentenceLine(tree, "GGA"), line);
    }
    for (const char* other : {"$IIGGA,1", "$SDDPT,3.4,0.0", "$GXGGA,1", "$G", "$", "GNGGA,1"})
        EXPECT_EQ(ParseNmeaLine(other, kGpsTalkerPrefix, tree), 0) << other;
    EXPECT_EQ(tree.ItemCount(), 1);
    // The echo sounder's stream is not widened.
    EXPECT_EQ(ParseNmeaLine("$GNDPT,3.4,0.0", kEchoTalkerPrefix, tree), 0);
}

TEST(ParseNmeaLine, LaterSentenceOverwritesFieldsAndKeepsOnesItLacks) {
    NodeRef tree = NodeRef::MakeNew();
    ParseNmeaLine("$GPGXP,1,2,3", "GP", tree);
    ParseNmeaLine("$GPGXP,7,8", "GP", tree);
    EXPECT_EQ(Fields(tree, "GXP"), (Words{"7", "8", "3"}));
    EXPECT_EQ(SentenceLine(tree, "GXP"), "$GPGXP,7,8");
    ParseNmeaLine("$GPGXP,a,b,c,d", "GP", tree);
    EXPECT_EQ(Fields(tree, "GXP"), (Words{"a", "b", "c", "d"}));
    EXPECT_EQ(tree.ItemCount(), 1);
}

TEST(NmeaStreamReader, TakeHandsOverSentencesAndStartsEmpty) {
    NmeaStreamReader reader("GP");
    EXPECT_EQ(reader.Feed("$GPGGA,1\r\n$SDDPT,2\r\n$GPRMC,3\r\n$GPGGA,4"), 2);
    NodeRef taken = reader.TakeSentences();
    EXPECT_EQ(taken.ItemCount(), 2);
    EXPECT_EQ(reader.Sentences().ItemCount(), 0);
    EXPECT_EQ(reader.Feed("\n"), 1);  // the line begun before the take is completed
    EXPECT_EQ(Fields(reader.Sentences(), "GGA"), (Words{"4"}));
    EXPECT_EQ(Fields(taken, "GGA"), (Words{"1"}));  // the taken tree did not change
    reader.Feed("$GPVTG,5");
    reader.Reset();
    EXPECT_EQ(reader.Sentences().ItemCount(), 0);
    EXPECT_EQ(reader.Lines().Pending(), "");
}

TEST(NmeaNumberTest, NumberTestRejectsNonNumbersAndPlainConversionTakesTheLeadingNumber) {
    double value = 0.0;
    EXPECT_TRUE(IsNmeaNumber(" -0.75 ", &value));
    EXPECT_DOUBLE_EQ(value, -0.75);
    EXPECT_TRUE(IsNmeaNumber("+3") && IsNmeaNumber(".5") && IsNmeaNumber("1.5e2"));
    for (const char* bad : {"", " ", "M", "1.2.3", "12m", "-", ".", "nan", "inf", "0x10", "1e", "1,5"}) {
        EXPECT_FALSE(IsNmeaNumber(bad)) << bad;
    }
    EXPECT_DOUBLE_EQ(NmeaFieldToDouble("12.5M"), 12.5);
    EXPECT_DOUBLE_EQ(NmeaFieldToDouble("abc"), 0.0);
    EXPECT_GT(NmeaFieldToDouble("1e999"), 1e300);  // overflow must not read as a small number
    EXPECT_DOUBLE_EQ(NmeaFieldToDouble("1e-999"), 0.0);
}

TEST(FormatNmeaSentence, AppendsTheXorChecksumInUpperCaseHex) {
    // The widely published GGA example carries the checksum 47.
    EXPECT_EQ(FormatNmeaSentence("GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,"),
              "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47");
    // 'A' ^ 'B' = 0x41 ^ 0x42 = 0x03.
    EXPECT_EQ(FormatNmeaSentence("AB"), "$AB*03");
}

TEST(ProfileSentences, StoredCopiesDoNotFollowTheReaderAndSurviveTheSideFile) {
    NmeaStreamReader gps("GP");
    gps.Feed("$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n");
    NodeRef echo = BuildSentenceTree({"$SDDPT,3.4,0.5*5A", "$SDDBT,11.2,f,3.4,M,1.8,F"}, "SD");

    NodeRef profile = NodeRef::MakeNew();
    StoreProfileSentences(profile, gps.Sentences(), echo);
    gps.Feed("$GPGGA,999999,1,N,1,E,1,08,0.9,545.4,M,46.9,M,,\r\n");  // must not reach the copy

    test::TempFile file;
    ASSERT_TRUE(profile.Save(file.get()));
    std::rewind(file.get());
    NodeRef loaded = NodeRef::MakeNew();
    ASSERT_TRUE(loaded.Load(file.get()));

    // The side file's reader asks for "GpsData"; names match without case.
    NodeRef gpsData = FindSentence(loaded, "GpsData");
    ASSERT_FALSE(gpsData.IsNull());
    EXPECT_EQ(SentenceLine(gpsData, "GGA"), "$GPGGA,123519,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47");
    EXPECT_EQ(SentenceFieldCount(FindSentence(gpsData, "GGA")), 14);  // empty fields survive
    NodeRef esData = FindSentence(loaded, "EsData");
    EXPECT_EQ(Fields(esData, "DBT"), (Words{"11.2", "f", "3.4", "M", "1.8", "F"}));
    EXPECT_EQ(Fields(esData, "DPT"), (Words{"3.4", "0.5"}));
}

}  // namespace
}  // namespace rm
