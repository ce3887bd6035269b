// The .sum file of a hand-built measurement. The expected bytes are put together from the
// layout's literals and the values worked out by hand from the formats.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>

#include <unistd.h>

#include "app/settings_path.h"
#include "ascii_test_support.h"
#include "output/sum_file.h"
#include "output/sum_file_export.h"

namespace rm {
namespace {

struct SumFileFixture : ::testing::Test {
    CDischargeData m;
    SumFileInputs in;

    void SetUp() override {
        m.startTime.year = 2024;
        m.startTime.month = 3;
        m.startTime.day = 5;
        m.startTime.hour = 7;
        m.startTime.minute = 8;
        m.startTime.second = 9;
        m.endTime = m.startTime;
        m.endTime.minute = 20;
        m.endTime.second = 30;
        m.VelocityReference = 1;
        m.TrackReference = 2;
        m.MiddleDischarge = 12.345f;
        m.TopDischarge = 1.5f;
        m.BottomDischarge = 1.25f;
        m.LeftDischarge = 0.5f;
        m.RightDischarge = 32767.0f;
        m.TotalDischarge = 15.6f;
        m.MadeGood = 40.5f;
        m.MaxDepth = 3.25f;
        m.MaxMeanSpeed = 0.75f;
        m.MaxBoatSpeed = 1.125f;

        in.measurement = &m;
        in.discharge = NodeRef::MakeNew();
        const NodeRef p = in.discharge.GetOrCreateChild("ProfileExtrapolation");
        p.SetValue("SameTopBottom", Variant(int32_t{1}));  // independent top and bottom
        p.SetValue("TopFitType", Variant(int32_t{1}));
        p.SetValue("TopExponent", Variant(0.1667));
        p.SetValue("TopEntireProfile", Variant(int32_t{1}));  // a range of cells
        p.SetValue("NumTopCells", Variant(int32_t{2}));
        p.SetValue("BottomFitType", Variant(int32_t{0}));
        p.SetValue("BottEntireProfile", Variant(int32_t{1}));
        in.discharge.SetValue("CorrectedLeftDistance", Variant(5.0));
        in.discharge.SetValue("LeftProfile", Variant(int32_t{3}));
        in.discharge.SetValue("LeftBankMethod", Variant(int32_t{2}));
        in.discharge.SetValue("LeftBankSlope", Variant(0.5));
        in.discharge.SetValue("LeftNumProfiles", Variant(int32_t{4}));
        in.discharge.SetValue("CorrectedRightDistance", Variant(7.25));
        in.discharge.SetValue("RightProfile", Variant(int32_t{118}));
        in.discharge.SetValue("RightBankMethod", Variant(int32_t{1}));
        in.unitSystem = 1;
        in.significantDigits = 5;
        in.dataFileStem = "RIVER01";
        in.frequencyCode = 1;
        in.serialNumber = "KV1234";
        in.firmware = 123;
        in.numberOfCells = 20;
        in.cellSizeCm = 25.0;
        in.blanking = 0.2;
        in.transducerDepth = 0.15;
        in.rangeEnd = 5.2;
        in.averagingInterval = 10.0;
        in.coordinateSystem = 2;
        in.bottomTrack = true;
        in.magneticDeclination = 1.5;
        in.temperature = TemperatureSource::User;
        in.userTemperatureTenths = 155;
        in.salinity = 0.0;
        in.speedOfSound = 1500.0;
    }
};

const std::string kDegree = "\xB0";
const std::string kRule = "\n-----------------------------------------------------";
const std::string kRemarkRule = "\n\n\n---------------------------------------------------------------";

TEST_F(SumFileFixture, MetricFileByTheLayout) {
    std::string expected;
    expected += "Quorle Ripplemark v4.50 Discharge Measurement Report";
    expected += "\n--------------------------------------\n";
    expected += "\nDate:                  05/03/2024";
    expected += "\nStart Time:              07:08:09         End Time:                07:20:30";
    expected += "\nKVR Data File:           RIVER01.kvr";
    expected += "\nSystem Frequency:            1500 kHz";
    expected += "\nSerial #:                     KV1234         Firmware Ver:                 12.3";
    expected += "\nVelocity Ref:                  BT         Track Ref:                    GPS";
    expected += "\n\n\nUser Setup Parameters\n---------------------";
    expected += "\nNumber of Cells:               20         Cell Size:                   0.25 m";
    expected += "\nBlanking Distance:           0.20 m       Transducer Depth:            0.15 m";
    expected += "\nProfiling Range:             5.20 m";
    expected += "\nAveraging Interval:           10.0 s";
    expected += "\nCoordinate System:            ENU";
    expected += "\nBottom Track:                 Yes         Magnetic Declination:        1.50 " + kDegree;
    expected += "\nTemperature Mode:            User      Water Temperature: 15.50" + kDegree + "C";
    expected += "\nWater Salinity:              0.00 ppt     Speed of Sound:           1500.00 m/s";
    expected += "\n\n\nProfile Extrapolation\n---------------------";
    expected += "\nTop variables used in calculation";
    expected += "\nPower Law with an exponent of 0.167 using the first 2 cells";
    expected += "\n\nBottom variables used in calculation";
    expected += "\nConstant distribution";
    expected += "\n\n\nEdge Discharge Estimation\n-------------------------";
    expected += "\n\nDistance to left bank:                               5.000 m";
    expected += "\nProfile used for left discharge calculation:          3";
    expected += "\nLeft Edge Method - Calculated: with a Sloped (0.500) Bank Shape using 4 profiles";
    expected += "\n\nDistance to right bank:                              7.250 m";
    expected += "\nProfile used for right discharge calculation        118";
    expected += "\nRight Edge Method - Calculated: with a Vertical Bank Shape";
    expected += "\n\n\nDischarge Summary\n-----------------";
    expected += "\n\nMeasured Middle Portion Discharge:              12.345 m^3/s";
    expected += "\nComputed Top Layer Discharge:                \x05 m^3/s";
    expected += "\nComputed Bottom Layer Discharge:             \x05 m^3/s";
    expected += "\nComputed Left Edge Discharge:              \x05 m^3/s";
    expected += "\nComputed Right Edge Discharge:                -- m^3/s";
    expected += kRule;
    expected += "\nTotal Discharge:               \x05 m^3/s";
    expected += kRule;
    expected += "\n\n\nStatistics\n----------";
    // 12.345f x 100 / 15.6f = 79.13...
    expected += "\n\nMeasured Discharge as a % of Total:         79.1 %";
    expected += "\nMeasured Distance                          40.50 m";
    expected += "\nMaximum Water Depth:                              3.25 m";
    expected += "\nMaximum Measured Depth-Averaged Velocity:             0.8 m/s";
    expected += "\nMaximum Vessel Velocity:                    1.12 m/s";
    expected += "\n\n\nRemarks\n-------" + kRemarkRule + kRemarkRule + kRemarkRule;
    EXPECT_EQ(SumFileText(in), expected);
}

TEST_F(SumFileFixture, EnglishUnitsAndOtherBranches) {
    in.unitSystem = 0;
    in.variableRange = true;
    in.rangeStart = 1.0;
    in.rangeEnd = 2.0;
    in.transducerDepthFromSensor = true;
    in.discharge.SetValue("LeftBankMethod", Variant(int32_t{0}));
    in.discharge.SetValue("RightBankMethod", Variant(int32_t{2}));
    in.discharge.SetValue("RightBankSlope", Variant(0.707));
    in.discharge.SetValue("RightNumProfiles", Variant(int32_t{1}));
    in.discharge.GetOrCreateChild("ProfileExtrapolation").SetValue("SameTopBottom", Variant(int32_t{0}));
    m.MiddleDischarge = 1.0f;
    const std::string text = SumFileText(in);
    const auto has = [&text](const std::string& part) {
        EXPECT_NE(text.find(part), std::string::npos) << part;
    };
    // 25 cm x 3.2808 x 0.01 = 0.82; 0.2 m -> 0.66 ft; 1 m and 2 m -> 3.28 and 6.56 ft.
    has("         Cell Size:                   0.82 ft");
    has("\nBlanking Distance:           0.66 ft       Transducer Depth:           Sensor");
    has("\nProfiling Range: 3.28 - 6.56 ft");
    // 15.5 C x 1.8 + 32 = 59.9 F; 1500 m/s -> 4921.20 ft/s.
    has("      Water Temperature: 59.90" + kDegree + "F");
    has("     Speed of Sound:           4921.20 ft/s");
    has("\nSame Top and Bottom variables used in calculation\nPower Law with an exponent of 0.167 using the "
        "first/last 2 cells\n\n\nEdge");
    // The user estimate literal has no conversion and stands as it is.
    has("\nLeft Edge Method - User Estimate: %7.1 ft^3/s");
    has("\nRight Edge Method - Calculated: with a Sloped (0.707) Bank Shape using 1 profiles");
    // 5 m x 3.2808 = 16.404 ft; 1 m3/s -> 35.313 ft3/s.
    has("\n\nDistance to left bank:                              16.404 ft");
    has("\n\nMeasured Middle Portion Discharge:              35.313 ft^3/s");
    has("\nTotal Discharge:               \x05 ft^3/s");
}

// A variable range shows both ends; a CTD replaces the temperature and salinity lines and adds
// the ranges of the measurement under the statistics.
TEST_F(SumFileFixture, VariableRangeAndCtdLines) {
    in.variableRange = true;
    in.rangeStart = 0.2;
    in.temperature = TemperatureSource::Ctd;
    in.ctdPresent = true;
    in.ctdTemperatureMin = 4.5;
    in.ctdTemperatureMax = 12.25;
    in.ctdSalinityMin = 0.5;
    in.ctdSalinityMax = 1.75;
    const auto has = [](const std::string& text, const std::string& part) {
        EXPECT_NE(text.find(part), std::string::npos) << part;
    };
    std::string text = SumFileText(in);
    has(text, "Transducer Depth:            0.15 m\nProfiling Range:     0.20 -  5.20 m\nAveraging");
    has(text, "1.50 " + kDegree +
                  "\nTemperature Mode:               CTD"
                  "\nWater Salinity:                 CTD     Speed of Sound:                 CTD\n\n\nProfile");
    has(text, "1.12 m/s\nCTD Temperature Range:                 4.50 - 12.25" + kDegree +
                  "C\nCTD Salinity Range:\t\t\t\t\t\t    0.50 -    1.75 ppt\n\n\nRemarks");
    // English: 4.5 C x 1.7999999523 + 32 = 40.0999998 -> 40.10; 12.25 C -> 54.0499994 -> 54.05.
    in.unitSystem = 0;
    text = SumFileText(in);
    has(text, "\nCTD Temperature Range:                40.10 - 54.05" + kDegree + "F\nCTD Salinity Range:");
    has(text, "\nProfiling Range: 0.66 - 17.06 ft");  // 0.2 m and 5.2 m x 3.2808
}

// The document's inputs: the CTD extremes of the pass over the range, the setup's fixed
// transducer depth (20 cm in the virtual river) and a fixed range without the shallow-water ping.
TEST(SumFileInputsOfDocument, CtdRangesComeFromTheRecomputedProfiles) {
    asciitest::ScratchFolder folder;
    const std::string path = folder.File("CTD.kvr");
    // Profile p carries 5 + p degrees and p / 4 ppt: over profiles 1 to 6, 6 to 11 and 0.25 to 1.5.
    asciitest::MakeRecording(
        path, 6, {},
        [](ProfileRecord& r, int p) {
            r.hasCtd = true;
            r.ctd.temperature = 5.0f + static_cast<float>(p);
            r.ctd.salinity = 0.25f * static_cast<float>(p);
        },
        [](CKvrData& d) { d.conf.CtdSensorInstalled = 1; });
    auto opened = asciitest::OpenRecording(path);
    ASSERT_TRUE(opened->doc->Recompute());
    const SumFileInputs in = SumFileInputsOf(*opened->doc, opened->app);
    EXPECT_TRUE(in.ctdPresent);
    EXPECT_EQ(in.ctdTemperatureMin, 6.0);
    EXPECT_EQ(in.ctdTemperatureMax, 11.0);
    EXPECT_EQ(in.ctdSalinityMin, 0.25);
    EXPECT_EQ(in.ctdSalinityMax, 1.5);
    EXPECT_EQ(in.temperature, TemperatureSource::Ctd);
    EXPECT_FALSE(in.transducerDepthFromSensor);
    EXPECT_DOUBLE_EQ(in.transducerDepth, 0.2);
    EXPECT_FALSE(in.variableRange);
}

// The extrapolation block describes what the pass did, from the settings that produced it. By
// default the top and the bottom share one power fit over the entire profile, whatever the
// cell count; a range of cells and independent settings change both the pass and the words.
TEST(SumFileInputsOfDocument, ExtrapolationBlockDescribesTheSettingsOfThePass) {
    asciitest::ScratchFolder folder;
    const std::string path = folder.File("FIT.kvr");
    asciitest::MakeRecording(path, 40);
    auto opened = asciitest::OpenRecording(path);
    CSurveyKVRDoc& doc = *opened->doc;
    const auto pass = [&](const std::string& assignment) {
        if (!assignment.empty()) {
            EXPECT_TRUE(AssignSetting(doc.Root(), "Discharge/ProfileExtrapolation/" + assignment).ok) << assignment;
        }
        EXPECT_TRUE(doc.Recompute());
        return std::make_pair(doc.Measurement(), SumFileText(SumFileInputsOf(doc, opened->app)));
    };
    const auto block = [](const std::string& text) {
        const size_t from = text.find("\nProfile Extrapolation");
        return text.substr(from, text.find("\n\n\nEdge Discharge") - from);
    };
    const std::string head = "\nProfile Extrapolation\n---------------------";

    const auto [entire, entireText] = pass("");
    EXPECT_EQ(block(entireText), head + "\nSame Top and Bottom variables used in calculation"
                                        "\nPower Law with an exponent of 0.167 using the entire profile ");
    const auto [threeCells, threeCellsText] = pass("NumTopCells=3");
    EXPECT_EQ(threeCells.TopDischarge, entire.TopDischarge);
    EXPECT_EQ(threeCells.BottomDischarge, entire.BottomDischarge);
    EXPECT_EQ(block(threeCellsText), block(entireText));

    const auto [range, rangeText] = pass("TopEntireProfile=1");
    EXPECT_NE(range.TopDischarge, entire.TopDischarge);
    EXPECT_NE(range.BottomDischarge, entire.BottomDischarge);
    EXPECT_EQ(block(rangeText), head + "\nSame Top and Bottom variables used in calculation"
                                       "\nPower Law with an exponent of 0.167 using the first/last 3 cells");

    pass("BottomFitType=0");
    const auto [independent, independentText] = pass("SameTopBottom=1");
    EXPECT_EQ(independent.TopDischarge, range.TopDischarge);
    EXPECT_NE(independent.BottomDischarge, range.BottomDischarge);
    EXPECT_EQ(block(independentText), head + "\nTop variables used in calculation"
                                             "\nPower Law with an exponent of 0.167 using the first 3 cells"
                                             "\n\nBottom variables used in calculation\nConstant distribution");
}

TEST(SumFileFields, ComputedDischargeFieldIsTheDigitsCharacter) {
    EXPECT_EQ(ComputedDischargeFieldText(12.0, 5), "\x05");
    EXPECT_EQ(ComputedDischargeFieldText(12.0, 3), "\x03");
    EXPECT_EQ(ComputedDischargeFieldText(32767.0, 5), "--");
    EXPECT_EQ(ComputedDischargeFieldText(1.0, 'x'), "x");
    EXPECT_EQ(ComputedDischargeFieldText(1.0, '%'), "");
}

TEST_F(SumFileFixture, FileHasCrLfLineEndsAndTheDegreeByte) {
    const std::string path = (std::filesystem::temp_directory_path() /
                              ("rm_sum_" + std::to_string(::getpid()) + ".sum")).string();
    ASSERT_TRUE(WriteSumFile(path, in));
    std::ifstream file(path, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    std::filesystem::remove(path);
    std::string expected;
    for (const char c : SumFileText(in)) {
        if (c == '\n') expected += '\r';
        expected += c;
    }
    EXPECT_EQ(bytes.str(), expected);
    EXPECT_NE(bytes.str().find("Report\r\n----"), std::string::npos);
    EXPECT_NE(bytes.str().find("1.50 \xB0\r\n"), std::string::npos);
    EXPECT_FALSE(WriteSumFile("/nonexistent-folder/x.sum", in));
}

}  // namespace
}  // namespace rm
