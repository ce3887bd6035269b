// The Universal ASCII output: its head with the discharge block in both unit systems (expected
// text from the layout), and the per-profile lines.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "ascii_test_support.h"
#include "output/universal_ascii.h"

namespace rm {
namespace {

using namespace asciitest;

const std::string kRule = "%" + std::string(199, '-');
const std::string kColumns =
    "%Profile   Time   Distance      DMG  DistEast DistNorth GPS Latitude  GPS Longitude Depth1 Depth2 Depth3 "
    "AvDepth EsDepth  uVess DirVess  uFlow DirFlow  StdDev   DQI # Valid       Q      Q Cumul";
const std::string kMetricUnits =
    "%                   (m)        (m)     (m)      (m)        (deg)         (deg)       (m)    (m)    (m)     (m)  "
    "   (m)   (m/s)  (deg)   (m/s)  (deg)    (m/s)        Cells     (m^3/s)   (m^3/s)";
const std::string kEnglishUnits =
    "%                  (ft)       (ft)    (ft)     (ft)        (deg)         (deg)      (ft)   (ft)   (ft)    (ft)  "
    "  (ft)  (ft/s)  (deg)  (ft/s)  (deg)   (ft/s)        Cells     (ft^3/s)  (ft^3/s)";
constexpr int kProfiles = 12;
constexpr int kFirstLine = 24;  // head 5 lines, discharge block 16, titles, units, rule

bool StartsWith(const std::string& text, const std::string& prefix) { return text.rfind(prefix, 0) == 0; }
bool EndsWith(const std::string& text, const std::string& suffix) {
    return text.size() >= suffix.size() && text.compare(text.size() - suffix.size(), suffix.size(), suffix) == 0;
}

class UniversalAscii : public ::testing::Test {
protected:
    void SetUp() override { MakeRecording(path, kProfiles); }
    std::vector<std::string> Write(int unitSystem, bool summary) {
        auto opened = OpenRecording(path, unitSystem);
        const std::string out = folder.File(unitSystem == 1 ? "U.T" : "UE.T");
        EXPECT_TRUE(WriteUniversalAscii(*opened->doc, opened->app, opened->prompt, out, summary));
        EXPECT_TRUE(opened->prompt.messages.empty());
        return SplitLines(ReadAll(out));
    }
    ScratchFolder folder;
    std::string path = folder.File("U.kvr");
};

TEST_F(UniversalAscii, MetricHeadWithDischargeBlock) {
    const std::vector<std::string> lines = Write(1, true);
    ASSERT_EQ(lines.size(), static_cast<size_t>(kFirstLine + kProfiles));
    EXPECT_EQ(lines[0], "% KVR Data File: U.kvr");
    EXPECT_TRUE(StartsWith(lines[1], "% Start Date + Time: "));
    EXPECT_EQ(lines[2], "% All Track Calculations use: - Bottom Track data");
    EXPECT_EQ(lines[3], "% All Flow Velocities Relative to: Bottom Track");
    EXPECT_EQ(lines[4], "% Metric Units");
    EXPECT_EQ(lines[5], kRule);
    EXPECT_EQ(lines[6], "%");
    EXPECT_EQ(lines[7], "% Discharge Summary");
    EXPECT_EQ(lines[8], "% ");
    const char* labels[] = {"% Top Q      = ", "% Measured Q = ", "% Bottom Q   = ",
                            "% Left Q     = ", "% Right Q    = ", "% Total Q    = "};
    for (int i = 0; i < 6; ++i) {
        EXPECT_TRUE(StartsWith(lines[9 + i], labels[i])) << lines[9 + i];
        EXPECT_TRUE(EndsWith(lines[9 + i], " (cms)")) << lines[9 + i];
    }
    EXPECT_EQ(lines[15], "% ");
    EXPECT_TRUE(StartsWith(lines[16], "% MeasQ/EstQ = ")) << lines[16];
    EXPECT_TRUE(EndsWith(lines[16], " (%)")) << lines[16];
    EXPECT_EQ(lines[17], "% ");
    EXPECT_TRUE(StartsWith(lines[18], "% TotalArea  = ") && EndsWith(lines[18], " (m2)")) << lines[18];
    EXPECT_TRUE(StartsWith(lines[19], "% MeanVel    = ") && EndsWith(lines[19], " (m/s)")) << lines[19];
    EXPECT_EQ(lines[20], "% ");
    EXPECT_EQ(lines[21], kColumns);
    EXPECT_EQ(lines[22], kMetricUnits);
    EXPECT_EQ(lines[23], kRule);
}

TEST_F(UniversalAscii, EnglishHeadKeepsTheCommentHeaderAndChangesTheUnitWords) {
    const std::vector<std::string> lines = Write(0, true);
    ASSERT_EQ(lines.size(), static_cast<size_t>(kFirstLine + kProfiles));
    EXPECT_EQ(lines[4], "% English Units");
    EXPECT_TRUE(EndsWith(lines[14], " (cfs)")) << lines[14];
    EXPECT_TRUE(EndsWith(lines[18], " (ft2)")) << lines[18];
    EXPECT_TRUE(EndsWith(lines[19], " (ft/s)")) << lines[19];
    EXPECT_EQ(lines[21], kColumns);
    EXPECT_EQ(lines[22], kEnglishUnits);
}

TEST_F(UniversalAscii, WithoutSummaryTheHeadGoesStraightToTheTitles) {
    const std::vector<std::string> lines = Write(1, false);
    ASSERT_EQ(lines.size(), static_cast<size_t>(5 + 3 + kProfiles + 1));
    EXPECT_EQ(lines[5], "% ");
    EXPECT_EQ(lines[6], kColumns);
    EXPECT_EQ(lines[8], kRule);
    // No trailer: the file ends with the last profile's line.
    EXPECT_TRUE(StartsWith(lines.back(), "     12 ")) << lines.back();
}

TEST_F(UniversalAscii, ProfileLinesNumberTheProfilesAndAccumulateTheDischarge) {
    const std::vector<std::string> lines = Write(1, true);
    ASSERT_EQ(lines.size(), static_cast<size_t>(kFirstLine + kProfiles));
    double sum = 0.0;
    for (int i = 0; i < kProfiles; ++i) {
        const std::string& line = lines[static_cast<size_t>(kFirstLine + i)];
        char expected[16];
        std::snprintf(expected, sizeof expected, "%7d ", i + 1);
        EXPECT_TRUE(StartsWith(line, expected)) << line;
        const std::vector<double> v = Numbers(line);
        ASSERT_EQ(v.size(), 22u) << line;  // the number and 21 columns after the time
        const double q = v[19], cumulative = v[20];
        if (q < 32767.0) sum += q;
        EXPECT_NEAR(cumulative, sum, 0.05 + 0.005 * (i + 1)) << line;
        // Depths are positive metres of a 4 m river; the direction columns lie in [0, 360).
        EXPECT_GT(v[7], 0.0);
        EXPECT_LT(v[7], 10.0);
        EXPECT_GE(v[13], 0.0);
        EXPECT_LT(v[13], 360.0);
    }
}

TEST_F(UniversalAscii, EnglishDischargeIsTheMetricTimesTheCubedLengthFactor) {
    const std::vector<std::string> metric = Write(1, true);
    const std::vector<std::string> english = Write(0, true);
    const double cube = 3.2808 * 3.2808 * 3.2808;
    const size_t middle = static_cast<size_t>(kFirstLine + kProfiles / 2);
    const std::vector<double> m = Numbers(metric[middle]);
    const std::vector<double> e = Numbers(english[middle]);
    ASSERT_EQ(m.size(), e.size());
    EXPECT_NEAR(e[19], m[19] * cube, 0.005 * cube + 0.005);
    EXPECT_NEAR(e[7], m[7] * 3.2808, 0.005 * 3.2808 + 0.005);  // Depth1
}

}  // namespace
}  // namespace rm
