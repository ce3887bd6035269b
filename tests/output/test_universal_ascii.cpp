// The Universal ASCII output: its head with the discharge block in both unit systems (expected
// text from the layout), and the per-profile lines after the head's own pass.

#include <gtest/gtest.h>

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
        return TextLines(out);
    }
    ScratchFolder folder;
    std::string path = folder.File("U.kvr");
};

// The head line by line: {line, beginning, end} (an end of "" asks for the whole line).
struct HeadLine {
    size_t line;
    std::string begins, ends;
};

void ExpectHead(const std::vector<std::string>& lines, const std::vector<HeadLine>& head) {
    for (const HeadLine& h : head) {
        const std::string& l = lines.at(h.line);
        if (h.ends.empty()) {
            EXPECT_EQ(l, h.begins) << "line " << h.line;
        } else {
            EXPECT_TRUE(StartsWith(l, h.begins) && EndsWith(l, h.ends)) << "line " << h.line << ": " << l;
        }
    }
}

TEST_F(UniversalAscii, MetricHeadWithDischargeBlock) {
    const std::vector<std::string> lines = Write(1, true);
    ASSERT_EQ(lines.size(), static_cast<size_t>(kFirstLine + kProfiles));
    EXPECT_TRUE(StartsWith(lines[1], "% Start Date + Time: ")) << lines[1];
    ExpectHead(lines, {{0, "% KVR Data File: U.kvr", ""},
                       {2, "% All Track Calculations use: - Bottom Track data", ""},
                       {3, "% All Flow Velocities Relative to: Bottom Track", ""},
                       {4, "% Metric Units", ""},
                       {5, kRule, ""},
                       {6, "%", ""},
                       {7, "% Discharge Summary", ""},
                       {8, "% ", ""},
                       {9, "% Top Q      = ", " (cms)"},
                       {10, "% Measured Q = ", " (cms)"},
                       {11, "% Bottom Q   = ", " (cms)"},
                       {12, "% Left Q     = ", " (cms)"},
                       {13, "% Right Q    = ", " (cms)"},
                       {14, "% Total Q    = ", " (cms)"},
                       {15, "% ", ""},
                       {16, "% MeasQ/EstQ = ", " (%)"},
                       {17, "% ", ""},
                       {18, "% TotalArea  = ", " (m2)"},
                       {19, "% MeanVel    = ", " (m/s)"},
                       {20, "% ", ""},
                       {21, kColumns, ""},
                       {22, kMetricUnits, ""},
                       {23, kRule, ""}});
    // The lines follow the pass that made the head's totals: numbered from 1, the cumulative
    // discharge starting again from 0 (columns Q and Q Cumul after the number).
    double sum = 0.0;
    for (int i = 0; i < kProfiles; ++i) {
        const std::vector<double> v = Numbers(lines[static_cast<size_t>(kFirstLine + i)]);
        ASSERT_EQ(v.size(), 22u);
        EXPECT_EQ(v[0], i + 1);
        if (v[19] < 32767.0) sum += v[19];
        EXPECT_NEAR(v[20], sum, 0.05 + 0.005 * (i + 1));
    }
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

// English: the comment head stays and the unit words change. (The numbers of the lines are the
// .dis writer's, checked with the .dis file in both unit systems.)
TEST_F(UniversalAscii, EnglishUnitWords) {
    const std::vector<std::string> english = Write(0, true);
    ASSERT_EQ(english.size(), static_cast<size_t>(kFirstLine + kProfiles));
    ExpectHead(english, {{4, "% English Units", ""},
                         {14, "% Total Q    = ", " (cfs)"},
                         {18, "% TotalArea  = ", " (ft2)"},
                         {19, "% MeanVel    = ", " (ft/s)"},
                         {21, kColumns, ""},
                         {22, kEnglishUnits, ""}});
}

}  // namespace
}  // namespace rm
