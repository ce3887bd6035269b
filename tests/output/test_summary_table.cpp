// The discharge summary's rows: record cells, the blank row, the three statistics rows, both unit
// systems and the Copy text. Expected texts are worked by hand from the column formats.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "output/summary_table.h"

namespace rm {
namespace {

namespace col = summary_column;

std::shared_ptr<CDischargeData> Record(const std::string& name, int hour, float totalQ) {
    auto r = std::make_shared<CDischargeData>();
    r->fileName = name;
    r->Active = 1;
    r->startTime.hour = static_cast<uint8_t>(hour);
    r->endTime.hour = static_cast<uint8_t>(hour);
    r->TotalDischarge = totalQ;
    r->settings = NodeRef::MakeNew();
    return r;
}

// Every {column, text} pair stands in the row's cells.
void ExpectCells(const SummaryRow& row, std::initializer_list<std::pair<int, const char*>> expected) {
    for (const auto& [column, text] : expected) EXPECT_EQ(row.cells[static_cast<size_t>(column)], text) << column;
}

SummaryTable Build(SummaryList& list, int unitSystem = 1, int digits = 5) {
    return BuildSummaryTable(list, SummaryTableOptions{unitSystem, digits});
}

// The metric header lines stand in full in the Copy text below; English changes the units.
TEST(SummaryTableHeaders, EnglishSecondLine) {
    SummaryList list;
    const SummaryTable english = Build(list, 0);
    EXPECT_EQ(english.units[col::Area], "(ft^2)");
    EXPECT_EQ(english.units[col::TotalDistance], "ft");  // no parentheses on this one
    EXPECT_EQ(english.units[col::TopQ], "(ft^3/s)");
    EXPECT_EQ(english.units[col::StartTime], "Time");
}

TEST(SummaryTableRows, ZeroRecordsStillGiveTheBlankAndStatisticsRows) {
    SummaryList list;
    const SummaryTable t = Build(list);
    ASSERT_EQ(t.rows.size(), 4u);
    EXPECT_EQ(t.recordRows, 0);
    EXPECT_EQ(t.rows[0].kind, SummaryRowKind::Blank);
    ExpectCells(t.rows[0], {{col::FileName, ""}});
    // Zeros through the unpadded formats; rounded columns give the text of 0; columns without
    // statistics stay empty.
    ExpectCells(t.rows[1], {{col::FileName, "Mean"}, {col::Profiles, "0"}, {col::StartMHW, "0.00"},
                            {col::MeanVelocity, "0.00"}, {col::Area, "0"}, {col::TrackReference, ""},
                            {col::StartDate, ""}});
    ExpectCells(t.rows[2], {{col::FileName, "Std. Dev."}, {col::TrackDistance, "0.0"}, {col::TotalQ, "0"}});
    ExpectCells(t.rows[3], {{col::FileName, "Coefficient of Variation"}, {col::TotalQ, "--"}, {col::Profiles, "--"}});
    EXPECT_EQ(t.absMean, "0");
    EXPECT_EQ(t.coefficientOfVariation, "--");
}

TEST(SummaryTableRows, RecordCellsByTheColumnTable) {
    SummaryList list;
    auto r = Record("RIVER01.kvr", 7, 12.345f);
    r->startTime.year = 2024;
    r->startTime.month = 3;
    r->startTime.day = 5;
    r->startTime.minute = 8;
    r->startTime.second = 9;
    r->endTime.hour = 25;  // not a time: empty cell
    r->ProfileCount = 321;
    r->TrackReference = 2;
    r->VelocityReference = 0;
    r->DepthReference = 3;
    r->ShallowWaterPing = 1;
    const NodeRef discharge = r->settings.GetOrCreateChild("Discharge");
    discharge.SetValue("UseShallowWaterPing", Variant(int32_t{1}));
    discharge.SetValue("StartMeanHW", Variant(1.5));
    r->TrackLength = 123.45;
    r->TotalWidth = 50.25f;
    r->MeanVelocity = 0.875;
    r->Area = 98.765;
    r->TopDischarge = 32767.0f;
    list.Add(r);
    const SummaryTable t = Build(list, 1, 3);
    ASSERT_EQ(t.recordRows, 1);
    ExpectCells(t.rows[0], {{col::FileName, "RIVER01.kvr"}, {col::StartDate, "05/03/2024 "},
                            {col::StartTime, "07:08:09"}, {col::EndTime, ""}, {col::Profiles, "321"},
                            {col::TrackReference, "GPS"}, {col::VelocityReference, "System"},
                            {col::DepthReference, "Echo Sounder"}, {col::ShallowWaterPing, "On"},
                            {col::StartMHW, "    1.50"}, {col::EndMTW, "    0.00"},
                            {col::TrackDistance, "   123.5"},  // 123.45 is 123.4500000000000028 in double
                            {col::TotalDistance, "    50.2"},  // 50.25 to even
                            {col::MeanVelocity, "    0.88"}, {col::Area, "98.8"}, {col::TotalQ, "12.3"},
                            {col::TopQ, "--"}});
    // The setting off turns the column off even with the record's flag set.
    discharge.SetValue("UseShallowWaterPing", Variant(int32_t{0}));
    EXPECT_EQ(Build(list).rows[0].cells[col::ShallowWaterPing], "Off");
}

TEST(SummaryTableStatistics, OneRecordHasZeroDeviationAndCoefficient) {
    SummaryList list;
    list.Add(Record("A.kvr", 8, -20.0f));
    const SummaryTable t = Build(list);
    ASSERT_EQ(t.rows.size(), 5u);
    EXPECT_EQ(t.rows[1].kind, SummaryRowKind::Blank);
    // Absolute values: the mean of -20 is 20, five digits: 20.000. A mean of exactly zero: the
    // coefficient is "--", mean and deviation are formatted.
    ExpectCells(t.rows[2], {{col::TotalQ, "20.000"}, {col::StartMHW, "    0.00"}});
    ExpectCells(t.rows[3], {{col::TotalQ, "0"}});
    ExpectCells(t.rows[4], {{col::TotalQ, "   0.000"}, {col::StartMHW, "--"}});
    EXPECT_EQ(t.absMean, "20.000");
    EXPECT_EQ(t.standardDeviation, "0");
    EXPECT_EQ(t.coefficientOfVariation, "   0.000");
}

TEST(SummaryTableStatistics, TwoRecordsAndAnExcludedOne) {
    SummaryList list;
    auto a = Record("A.kvr", 8, 100.0f);
    auto b = Record("B.kvr", 9, -110.0f);
    auto c = Record("C.kvr", 10, 1000.0f);
    a->ProfileCount = 10;
    b->ProfileCount = 20;
    c->ProfileCount = 90;
    c->ExcludeFromStatistics = 1;
    list.Add(a);
    list.Add(b);
    list.Add(c);
    const SummaryTable t = Build(list);
    ASSERT_EQ(t.recordRows, 3);
    // |100|, |-110|: mean 105, deviation sqrt(50) = 7.0710678, coefficient 0.0673. Profile
    // counts are not made absolute: mean 15, deviation sqrt(50).
    ExpectCells(t.rows[4], {{col::TotalQ, "105.00"}, {col::Profiles, "      15"}});
    ExpectCells(t.rows[5], {{col::TotalQ, "7.0711"}, {col::Profiles, "       7"}});
    ExpectCells(t.rows[6], {{col::TotalQ, "   0.067"}, {col::Profiles, "   0.471"}});
    // The excluded row is painted white on red, the others black on white.
    EXPECT_TRUE(t.rows[2].excluded);
    EXPECT_EQ(ColoursOf(t.rows[2]).text, 0xFFFFFFu);
    EXPECT_EQ(ColoursOf(t.rows[2]).background, 0xFF0000u);
    EXPECT_EQ(ColoursOf(t.rows[0]).background, 0xFFFFFFu);
    EXPECT_EQ(ColoursOf(t.rows[3]).background, 0xAAAAAAu);
    EXPECT_EQ(ColoursOf(t.rows[3]).text, 0xFF0000u);
    EXPECT_EQ(ColoursOf(t.rows[4]).background, 0xDCDCDCu);
}

TEST(SummaryTableStatistics, AllRecordsExcludedGiveZeroMeanAndNoCoefficient) {
    SummaryList list;
    auto a = Record("A.kvr", 8, 5.0f);
    a->ExcludeFromStatistics = 1;
    list.Add(a);
    const SummaryTable t = Build(list);
    ExpectCells(t.rows[2], {{col::StartMHW, "    0.00"}, {col::TotalQ, "0"}});
    ExpectCells(t.rows[4], {{col::TotalQ, "--"}});
}

TEST(SummaryTableUnits, EnglishUsesTheCubeOfTheSinglePrecisionFactor) {
    SummaryList list;
    auto r = Record("A.kvr", 8, 1.0f);
    r->TotalWidth = 10.0f;
    r->Area = 1.0;
    list.Add(r);
    const SummaryTable t = Build(list, 0, 5);
    // 1 m3/s x 35.313381820931106 -> five digits 35.313; 10 m x 3.2808 = 32.808 -> 32.8;
    // 1 m2 x 3.2808^2 = 10.76365 -> 10.764.
    ExpectCells(t.rows[0], {{col::TotalQ, "35.313"}, {col::TotalDistance, "    32.8"}, {col::Area, "10.764"}});
    ExpectCells(t.rows[2], {{col::TotalQ, "35.313"}});
}

TEST(SummaryTableRows, ActiveRecordWithoutNameLeavesTheList) {
    SummaryList list;
    list.Add(Record("", 8, 1.0f));
    auto hidden = Record("", 9, 1.0f);
    hidden->Active = 0;
    list.Add(hidden);
    list.Add(Record("B.kvr", 10, 2.0f));
    const SummaryTable t = Build(list);
    EXPECT_EQ(t.recordRows, 1);
    EXPECT_EQ(list.Size(), 2);  // the inactive one stays
    EXPECT_EQ(t.rows[2].cells[col::TotalQ], "2.0000");
}

TEST(SummaryCopyText, TabAfterEveryCellAndCrLfLineEnds) {
    SummaryList list;
    list.Add(Record("A.kvr", 8, 3.0f));
    const SummaryTable t = Build(list);
    const std::string text = SummaryCopyText(t);
    const std::string firstLine =
        "File Name\tStart\tStart\tEnd\tEnd\t# Profiles\tTrack\tVelocity\tDepth\tSW Ping\tStart MHW\tStart MTW\t"
        "End MHW\tEnd MTW\tTrack Distance\tLeft Distance\tMeasured Distance\tRight Distance\tTotal Distance\tArea\t"
        "Mean Vel\tTop Discharge\tMiddle Discharge\tBottom Discharge\tLeft Discharge\tRight Discharge\t"
        "Total Discharge\t\r\n";
    const std::string secondLine =
        " \tDate\tTime\tDate\tTime\t \tReference\tReference\tReference\tOn/Off\t(m)\t(m)\t(m)\t(m)\t(m)\t(m)\t(m)\t"
        "(m)\tm\t(m^2)\t(m/s)\t(m^3/s)\t(m^3/s)\t(m^3/s)\t(m^3/s)\t(m^3/s)\t(m^3/s)\t\r\n";
    ASSERT_GE(text.size(), firstLine.size() + secondLine.size());
    EXPECT_EQ(text.substr(0, firstLine.size()), firstLine);
    EXPECT_EQ(text.substr(firstLine.size(), secondLine.size()), secondLine);
    // Two header lines and five rows, 27 tabs each.
    size_t lines = 0, tabs = 0, pos = 0;
    while ((pos = text.find("\r\n", pos)) != std::string::npos) ++lines, pos += 2;
    tabs = static_cast<size_t>(std::count(text.begin(), text.end(), '\t'));
    EXPECT_EQ(lines, 7u);
    EXPECT_EQ(tabs, 7u * 27u);
    EXPECT_NE(text.find("\r\n\t\t\t\t"), std::string::npos);  // the blank row
    // The last cell is the coefficient of the total discharge: deviation 0 over mean 3.
    EXPECT_EQ(text.substr(text.size() - 11), "   0.000\t\r\n");
}

}  // namespace
}  // namespace rm
