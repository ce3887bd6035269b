// Measurement station files (.dms): Key=Value lines, comments and blank lines, line ends of
// either platform, and the errors a person can make in one.

#include <gtest/gtest.h>

#include <string>

#include "output/station_file.h"

namespace rm {
namespace {

TEST(StationFile, ReadsKeysInOrderTrimmedAndSkipsComments) {
    ReportFields fields;
    std::string error;
    ASSERT_TRUE(ParseStationText("# campaign\r\n\r\nStationName =  Millbrook at Weir Lane \r\n; note\n"
                                 "StationNumber=04-2231\nComments=a=b, c\n  Party\t= A. Hale",
                                 fields, error))
        << error;
    ASSERT_EQ(fields.size(), 4u);
    EXPECT_EQ(fields[0].key, "StationName");
    EXPECT_EQ(fields[0].text, "Millbrook at Weir Lane");
    EXPECT_EQ(fields[1].text, "04-2231");
    EXPECT_EQ(fields[2].text, "a=b, c");  // only the first '=' separates
    EXPECT_EQ(fields[3].key, "Party");
    EXPECT_EQ(fields[3].text, "A. Hale");
}

TEST(StationFile, BadLinesAreErrorsNamingTheLine) {
    ReportFields fields;
    std::string error;
    EXPECT_FALSE(ParseStationText("StationName=A\nno equals sign\n", fields, error));
    EXPECT_EQ(error.rfind("line 2:", 0), 0u) << error;
    EXPECT_TRUE(fields.empty());
    EXPECT_FALSE(ParseStationText("Station Name=A\n", fields, error));
    EXPECT_EQ(error.rfind("line 1:", 0), 0u) << error;
    EXPECT_FALSE(ParseStationText("=A\n", fields, error));
    EXPECT_FALSE(ParseStationText("A=1\n#\nA=2\n", fields, error));
    EXPECT_NE(error.find("line 3"), std::string::npos);
    EXPECT_NE(error.find("twice"), std::string::npos);
}

TEST(StationFile, MissingFileIsAnErrorNamingThePath) {
    ReportFields fields{{"Old", "x"}};
    std::string error;
    EXPECT_FALSE(ReadStationFile("/nonexistent/station.dms", fields, error));
    EXPECT_NE(error.find("/nonexistent/station.dms"), std::string::npos);
    EXPECT_TRUE(fields.empty());
}

}  // namespace
}  // namespace rm
