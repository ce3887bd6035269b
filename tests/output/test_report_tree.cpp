// The measurement report's tree: the keys of User, Records and Statistics for hand-built
// transects whose texts are worked out by hand, the mismatch check, the italics flag, and the
// two rounding modes of discharges.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "output/report_tree.h"
#include "processing/settings_reader.h"

namespace rm {
namespace {

ProfileHeader At(int hour, int minute, int second) {
    ProfileHeader h;
    h.year = 2024;
    h.month = 5;
    h.day = 2;
    h.hour = static_cast<uint8_t>(hour);
    h.minute = static_cast<uint8_t>(minute);
    h.second = static_cast<uint8_t>(second);
    return h;
}

// A transect with a Discharge node of defaults and every discharge part zero but the total.
std::shared_ptr<CDischargeData> Transect(const std::string& name, float total) {
    auto r = std::make_shared<CDischargeData>();
    r->settings = NodeRef::MakeNew();
    NodeRef discharge = r->settings.GetOrCreateChild(kDischargeNode);
    CreateDischargeDefaults(discharge);
    r->fileName = name;
    r->Active = 1;
    r->TotalDischarge = total;
    r->MiddleDischarge = total;
    r->startTime = At(9, 5, 0);
    r->endTime = At(9, 12, 30);
    return r;
}

std::string Field(const ReportFields& fields, const std::string& key) {
    const std::string* text = FindReportField(fields, key);
    return text == nullptr ? "<missing " + key + ">" : *text;
}

// Every {key, text} pair of `expected` stands in `fields`.
void ExpectTexts(const ReportFields& fields, std::initializer_list<std::pair<const char*, const char*>> expected) {
    for (const auto& [key, text] : expected) EXPECT_EQ(Field(fields, key), text) << key;
}

ReportSettings Metric(int digits, bool usgs) {
    ReportSettings s;
    s.unitSystem = 1;
    s.significantDigits = digits;
    s.usgsRounding = usgs;
    return s;
}

NodeRef Extrapolation(const CDischargeData& r) {
    return r.settings.GetChildByName(kDischargeNode).GetOrCreateChild(kExtrapolationNode);
}

TEST(ReportTreeKeys, UserHoldsEveryParameterInOrderWithItsTitle) {
    auto r = Transect("/data/RIVER01.KVR", 10.0f);
    r->SystemName = "K0815";
    r->SystemType = "1000 kHz";
    r->SoftwareVersion = "16.5";
    r->Interval = 5.0;
    r->TransducerDepth = 0.25;
    r->Blanking = 0.5;
    r->NumberOfCells = 40;
    r->CellSize = 0.125;
    r->TrackReference = 2;
    r->VelocityReference = 1;
    r->DepthReference = 1;
    NodeRef discharge = r->settings.GetChildByName(kDischargeNode);
    discharge.SetValue("MagneticDeclination", Variant(-3.125));
    discharge.SetValue("AreaComputation", Variant(int32_t{2}));
    discharge.SetValue("LeftBankMethod", Variant(int32_t{0}));
    discharge.SetValue("RightBankMethod", Variant(int32_t{1}));
    NodeRef x = Extrapolation(*r);
    x.SetValue("SameTopBottom", Variant(int32_t{1}));
    x.SetValue("TopFitType", Variant(int32_t{0}));
    x.SetValue("BottomFitType", Variant(int32_t{1}));
    x.SetValue("BottomExponent", Variant(0.25));

    TransectFacts facts;
    facts.salinity = 12.25;
    facts.echoSounderPresent = true;
    const ReportTree tree = BuildReportTree({{r, facts}}, Metric(5, true));

    // Every entry in order, with its text.
    const std::pair<const char*, const char*> expected[] = {
        {"TopFit", "Constant            "},  // 9 letters and blank, 11 more blanks
        {"TopExponent", "0.1667"},          // 1/6
        {"BottomFit", "Power               "}, {"BottomExponent", "0.2500"}, {"AreaMethod", "Proj Angle"},
        {"LeftBank", "User"}, {"RightBank", "Vertical"}, {"OrientationProfiles", "all"}, {"SerialNumber", "K0815"},
        {"SystemFrequency", "1000 kHz"}, {"FirmwareVersion", "16.5"}, {"RipplemarkVersion", "v4.50"},
        {"AveragingInterval", "5.0"}, {"MountingDepth", "0.25"}, {"BlankingDistance", "0.50"},
        {"NumberOfCells", "40"},
        {"CellSize", "0.12"},  // 0.125 is exact in binary: printf rounds to even
        {"TrackReference", "GPS"}, {"VelocityReference", "BTrack"}, {"DepthReference", "EchoS"},
        {"MagneticDeclination", "-3.12"},  // an exact tie, to even
        {"Salinity", "12.2"}, {"EchoSounder", "Present"},
        {"FootNote",
         "Note: Units for the above parameters are:Distance (m), Velocity (m/s), Area (m2), Discharge (cms)"
         "\nDischarge values in italics have a Total Discharge that is more than 5% from the mean."},
        {"UnitDistance", "m"}, {"UnitVelocity", "m/s"}, {"UnitArea", "m2"}, {"UnitDischarge", "m3/s"}};
    ASSERT_EQ(tree.user.size(), std::size(expected));
    for (size_t i = 0; i < tree.user.size(); ++i) {
        EXPECT_EQ(tree.user[i].key, expected[i].first);
        EXPECT_EQ(tree.user[i].text, expected[i].second) << expected[i].first;
    }
    EXPECT_EQ(tree.user[0].title, "Profile Extrapolation - Top Fit\n");
    EXPECT_TRUE(tree.mismatched.empty());
    EXPECT_EQ(tree.MismatchMessage(), "");
}

TEST(ReportTreeKeys, EnglishUnitsScaleLengthsAndNameTheUnits) {
    auto r = Transect("a.kvr", 1.0f);
    r->TransducerDepth = 1.0;
    ReportSettings s = Metric(3, false);
    s.unitSystem = 0;
    const ReportTree tree = BuildReportTree({{r, {}}}, s);
    EXPECT_EQ(*tree.UserText("MountingDepth"), "3.28");  // 1 m x 3.2808
    EXPECT_EQ(*tree.UserText("UnitDistance"), "ft");
    EXPECT_EQ(*tree.UserText("UnitDischarge"), "cfs");
    EXPECT_NE(tree.UserText("FootNote")->find("Distance (ft), Velocity (ft/s), Area (ft2), Discharge (cfs)"),
              std::string::npos);
    // 1 m3/s x 3.2808^3 = 35.3134 ft3/s; three digits: 35.3.
    EXPECT_EQ(Field(tree.records[0].fields, "TotalDischarge"), "35.3");
    EXPECT_EQ(*tree.UserText("EchoSounder"), "Not Pres.");
}

TEST(ReportTreeKeys, RecordsHoldTheTransectValuesInTheirFormats) {
    auto r = Transect("/survey/day2/T007.kvr", 10.0f);
    r->TopDischarge = 1.23456f;
    r->BottomDischarge = 0.98765f;
    r->LeftDischarge = 0.25f;
    r->RightDischarge = -0.0125f;
    r->MiddleDischarge = 7.5f;
    r->LeftDistance = 2.25f;
    r->RightDistance = 3.0f;
    r->TotalWidth = 55.75f;
    r->Area = 120.04;
    r->MadeGoodSpeed = 0.456;
    r->MeanVelocity = 0.789;
    r->ProfileCount = 88;
    NodeRef discharge = r->settings.GetChildByName(kDischargeNode);
    discharge.SetValue("CorrectedStartBankSide", Variant(int32_t{1}));
    discharge.SetValue("StartMeanHW", Variant(1.5));
    discharge.SetValue("EndMeanTW", Variant(0.125));
    TransectFacts facts;
    facts.badProfiles = 3;
    const ReportTree tree = BuildReportTree({{r, facts}}, Metric(3, false));
    ASSERT_EQ(tree.records.size(), 1u);
    const ReportFields& f = tree.records[0].fields;
    ExpectTexts(f, {{"StartSide", "Right"}, {"FileName", "T007"}, {"Name", "T007"},
                    {"TopDischarge", "1.23"},       // 123.456 -> 123 / 100
                    {"BottomDischarge", "0.988"},   // a < 1: d = 3, 987.65 -> 988
                    {"LeftDischarge", "0.25"},      // 0.250 printed with its own digits
                    {"RightDischarge", "-0.0125"}, {"MiddleDischarge", "7.5"}, {"TotalDischarge", "10"},
                    {"Discharge", "10"}, {"PercentMeasuredDischarge", "75.0"},
                    {"LeftDistance", "2.2"},  // 2.25 exact: printf rounds to even
                    {"RightDistance", "3.0"}, {"TotalDistance", "55.8"}, {"TotalWidth", "55.8"}, {"Area", "120.0"},
                    {"StartTime", "09:05"}, {"EndTime", "09:12"}, {"BoatVelocity", "0.46"},
                    {"WaterVelocity", "0.79"}, {"MeanVelocity", "0.79"}, {"TotalProfiles", "88"},
                    {"BadProfiles", "3"}, {"StartMHW", "1.50"}, {"StartMTW", "0.00"},
                    {"EndMTW", "0.12"}});  // 0.125 exact: rounds to even
}

TEST(ReportTreeKeys, InactiveTransectsAreLeftOutAndMissingValuesShowDashes) {
    auto shown = Transect("A.kvr", 32767.0f);
    auto deleted = Transect("B.kvr", 5.0f);
    deleted->Active = 0;
    const ReportTree tree = BuildReportTree({{shown, {}}, {deleted, {}}}, Metric(3, true));
    ASSERT_EQ(tree.records.size(), 1u);
    EXPECT_EQ(Field(tree.records[0].fields, "TotalDischarge"), "--");
    EXPECT_EQ(Field(tree.records[0].fields, "PercentMeasuredDischarge"), "--");
    // The only total is missing: no statistics of it.
    EXPECT_EQ(Field(tree.statistics.mean, "TotalDischarge"), "--");
    EXPECT_FALSE(tree.records[0].italic);
    EXPECT_EQ(Field(tree.collection, "NumberOfTransects"), "1");
}

TEST(ReportStatistics, TwoTransectsGiveMeanDeviationAndCoefficient) {
    auto a = Transect("A.kvr", 10.0f);
    auto b = Transect("B.kvr", -12.0f);  // a crossing from the other bank: statistics take |Q|
    a->ProfileCount = 10;
    b->ProfileCount = 20;
    b->startTime = At(9, 40, 0);
    b->endTime = At(9, 58, 0);
    const ReportTree tree = BuildReportTree({{a, {}}, {b, {}}}, Metric(3, false));
    const ReportStatistics& s = tree.statistics;
    // |Q| = 10, 12: mean 11, deviation sqrt(2) = 1.41421 -> 1.41, coefficient 0.12856 -> 0.129.
    // Profiles 10 and 20: mean 15, deviation sqrt(50) = 7.07, coefficient 0.471. Columns without
    // numbers have no statistics; all widths are 0, so their coefficient is "--".
    ExpectTexts(s.mean, {{"TotalDischarge", "11"}, {"TotalProfiles", "15"}, {"FileName", "--"},
                         {"LeftDistance", "0.0"}});
    ExpectTexts(s.stdDev, {{"TotalDischarge", "1.41"}, {"TotalProfiles", "7"}});
    ExpectTexts(s.rm, {{"TotalDischarge", "0.129"}, {"TotalProfiles", "0.471"}, {"LeftDistance", "--"}});
    // Total: the span from the first start to the last end.
    ExpectTexts(s.total, {{"StartTime", "09:05"}, {"EndTime", "09:58"}, {"TotalDischarge", "--"}});
    EXPECT_EQ(s.mean.size(), tree.records[0].fields.size());
}

TEST(ReportStatistics, OneTransectHasDeviationZeroAndCoefficientZero) {
    const ReportTree tree = BuildReportTree({{Transect("A.kvr", 4.5f), {}}}, Metric(5, true));
    ExpectTexts(tree.statistics.mean, {{"TotalDischarge", "4.5"}});
    ExpectTexts(tree.statistics.stdDev, {{"TotalDischarge", "0"}});
    ExpectTexts(tree.statistics.rm, {{"TotalDischarge", "0.000"}});
}

TEST(ReportStatistics, NoTransectGivesDashesEverywhere) {
    const ReportTree tree = BuildReportTree({}, Metric(5, true));
    EXPECT_TRUE(tree.records.empty());
    ASSERT_FALSE(tree.statistics.mean.empty());
    for (const ReportFields* row : {&tree.statistics.mean, &tree.statistics.stdDev, &tree.statistics.rm,
                                    &tree.statistics.total}) {
        for (const ReportField& f : *row) EXPECT_EQ(f.text, "--") << f.key;
    }
    // Units and the foot note still describe the report; the parameters are empty.
    EXPECT_EQ(*tree.UserText("UnitArea"), "m2");
    EXPECT_EQ(*tree.UserText("TopFit"), "");
    EXPECT_EQ(Field(tree.collection, "NumberOfTransects"), "0");
}

TEST(ReportStatistics, ExcludedTransectStaysListedButOutOfTheStatistics) {
    auto a = Transect("A.kvr", 10.0f);
    auto b = Transect("B.kvr", 50.0f);
    b->ExcludeFromStatistics = 1;
    const ReportTree tree = BuildReportTree({{a, {}}, {b, {}}}, Metric(3, true));
    EXPECT_EQ(tree.records.size(), 2u);
    EXPECT_EQ(Field(tree.statistics.mean, "TotalDischarge"), "10");
    EXPECT_TRUE(tree.records[1].italic);  // 50 is far from the mean of 10
}

TEST(ReportItalics, TotalsMoreThanFivePercentFromTheMeanAreFlagged) {
    // Mean (10 + 10.2 + 12) / 3 = 10.7333; 5% of it is 0.5367. Distances: 0.733, 0.533, 1.267.
    const ReportTree tree = BuildReportTree(
        {{Transect("A.kvr", 10.0f), {}}, {Transect("B.kvr", 10.2f), {}}, {Transect("C.kvr", 12.0f), {}}},
        Metric(5, true));
    ASSERT_EQ(tree.records.size(), 3u);
    EXPECT_TRUE(tree.records[0].italic);
    EXPECT_FALSE(tree.records[1].italic);
    EXPECT_TRUE(tree.records[2].italic);
    // Totals of equal magnitude are compared by magnitude, as the mean is: none is flagged.
    const ReportTree equal =
        BuildReportTree({{Transect("A.kvr", 7.0f), {}}, {Transect("B.kvr", -7.0f), {}}}, Metric(5, true));
    EXPECT_FALSE(equal.records[0].italic);
    EXPECT_FALSE(equal.records[1].italic);
}

TEST(ReportMismatch, DifferingTopFitBlanksItAndNamesItOnce) {
    auto a = Transect("A.kvr", 1.0f);
    auto b = Transect("B.kvr", 1.0f);
    Extrapolation(*a).SetValue("SameTopBottom", Variant(int32_t{1}));
    Extrapolation(*b).SetValue("SameTopBottom", Variant(int32_t{1}));
    Extrapolation(*b).SetValue("TopFitType", Variant(int32_t{0}));
    const ReportTree tree = BuildReportTree({{a, {}}, {b, {}}}, Metric(5, true));
    EXPECT_EQ(*tree.UserText("TopFit"), "                    ");
    EXPECT_EQ(*tree.UserText("BottomFit"), "Power               ");
    ASSERT_EQ(tree.mismatched.size(), 1u);
    EXPECT_EQ(tree.MismatchMessage(),
              "The following parameters in the files selected for the discharge summary do not match:\n\n"
              "Profile Extrapolation - Top Fit\n");
    EXPECT_EQ(Field(tree.collection, "ParametersMatch"), "No");
}

TEST(ReportMismatch, SameTopAndBottomCarriesTheTopFitToTheBottom) {
    auto a = Transect("A.kvr", 1.0f);
    auto b = Transect("B.kvr", 1.0f);
    Extrapolation(*b).SetValue("TopFitType", Variant(int32_t{0}));  // SameTopBottom 0 in both
    const ReportTree tree = BuildReportTree({{a, {}}, {b, {}}}, Metric(5, true));
    EXPECT_EQ(tree.MismatchMessage(),
              std::string(kMismatchHeading) + "Profile Extrapolation - Top Fit\nProfile Extrapolation - Bottom Fit\n");
}

TEST(ReportMismatch, ADifferenceInALaterTransectOnlyIsFoundToo) {
    auto a = Transect("A.kvr", 1.0f);
    auto b = Transect("B.kvr", 1.0f);
    auto c = Transect("C.kvr", 1.0f);
    a->SystemName = b->SystemName = "K1";
    c->SystemName = "K2";
    TransectFacts fresh, salty;
    salty.salinity = 35.0;
    const ReportTree tree = BuildReportTree({{a, fresh}, {b, fresh}, {c, salty}}, Metric(5, true));
    EXPECT_EQ(*tree.UserText("SerialNumber"), kBlankParameterText);
    EXPECT_EQ(*tree.UserText("Salinity"), kBlankParameterText);
    EXPECT_EQ(tree.MismatchMessage(), std::string(kMismatchHeading) + "Serial Number\nSalinity\n");
    EXPECT_EQ(*tree.UserText("RipplemarkVersion"), "v4.50");
}

TEST(ReportRounding, UsgsRoundsExactHalvesToEvenAndSignificantDigitsUp) {
    // Two digits. 125: f = 50 exactly, to even under USGS. Negative values are truncated toward
    // zero in both modes. 1250.5: y = 12.505, f = 50.5 lies between the thresholds: USGS rounds
    // it down, the significant-digit rule up. 1255: f = 55 rounds up in both.
    const struct {
        double value;
        const char *usgs, *digits;
    } rows[] = {{125.0, "120", "130"},     {135.0, "140", "140"},   {-135.0, "-130", "-130"},
                {1250.5, "1200", "1300"},  {1255.0, "1300", "1300"}, {0.0, "0", "0"},
                {32767.0, "--", "--"}};
    for (const auto& r : rows) {
        EXPECT_EQ(ReportDischargeText(r.value, Metric(2, true)), r.usgs) << r.value;
        EXPECT_EQ(ReportDischargeText(r.value, Metric(2, false)), r.digits) << r.value;
    }
}

TEST(ReportRounding, TheTreeUsesTheChosenModeForRecordsAndStatistics) {
    auto a = Transect("A.kvr", 125.0f);
    const ReportTree usgs = BuildReportTree({{a, {}}}, Metric(2, true));
    const ReportTree digits = BuildReportTree({{a, {}}}, Metric(2, false));
    EXPECT_EQ(Field(usgs.records[0].fields, "TotalDischarge"), "120");
    EXPECT_EQ(Field(digits.records[0].fields, "TotalDischarge"), "130");
    EXPECT_EQ(Field(usgs.statistics.mean, "TotalDischarge"), "120");
    EXPECT_EQ(Field(digits.statistics.mean, "TotalDischarge"), "130");
    EXPECT_EQ(Field(usgs.collection, "RoundingFormat"), "USGS");
}

TEST(ReportCollection, StationFieldsFollowTheFactsAndCannotReplaceThem) {
    ReportSettings s = Metric(5, true);
    s.reportDate = "2024-05-03 08:00";
    const ReportTree tree = BuildReportTree({{Transect("A.kvr", 1.0f), {}}}, s,
                                            {{"StationName", "Millbrook"}, {"ProgramName", "Other"}});
    EXPECT_EQ(Field(tree.collection, "ProgramName"), "Quorle Ripplemark");
    EXPECT_EQ(Field(tree.collection, "ProgramVersion"), "v4.50");
    EXPECT_EQ(Field(tree.collection, "StationName"), "Millbrook");
    EXPECT_EQ(Field(tree.collection, "ReportDate"), "2024-05-03 08:00");
    EXPECT_EQ(Field(tree.collection, "UnitSystem"), "Metric");
    int programNames = 0;
    for (const ReportField& f : tree.collection) programNames += f.key == "ProgramName";
    EXPECT_EQ(programNames, 1);
}

}  // namespace
}  // namespace rm
