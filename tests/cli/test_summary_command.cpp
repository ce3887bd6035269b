// ripplemark-cli summary and export --format sum on recordings of the virtual river.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "cli/sim_recording.h"

namespace rm::test {
namespace {

SimRecording River(const TempDir& dir, const std::string& name, const char* start) {
    return RecordRiver(dir, name, {"--profiles", "30", "--cells", "12", "--start", start});
}

TEST(SummaryCommand, RowsSortedByTimeOfDayThenTheStatisticsRows) {
    TempDir dir;
    const SimRecording late = River(dir, "LATE", "2024-03-08 10:00:00");
    const SimRecording early = River(dir, "EARLY", "2024-03-09 09:00:00");
    const nlohmann::json out = RunCliJson({"summary", late.path, early.path, "--json"});
    const nlohmann::json& rows = out["rows"];
    ASSERT_EQ(rows.size(), 6u);
    // The next day's 09:00 transect sorts before the 10:00 one.
    EXPECT_EQ(rows[0]["cells"][0], early.path);
    EXPECT_EQ(rows[0]["cells"][1], "09/03/2024 ");
    EXPECT_EQ(rows[0]["cells"][2], "09:00:00");
    EXPECT_EQ(rows[1]["cells"][0], late.path);
    EXPECT_EQ(rows[2]["kind"], "blank");
    EXPECT_EQ(rows[3]["cells"][0], "Mean");
    EXPECT_EQ(rows[4]["cells"][0], "Std. Dev.");
    EXPECT_EQ(rows[5]["cells"][0], "Coefficient of Variation");
    EXPECT_EQ(rows[0]["cells"][5], "30");
    // Two equal recordings of the same river: the same total, so no spread.
    EXPECT_EQ(rows[0]["cells"][26], rows[1]["cells"][26]);
    EXPECT_EQ(out["totalDischarge"]["standardDeviation"], "0");
    EXPECT_EQ(out["totalDischarge"]["coefficientOfVariation"], "   0.000");
    EXPECT_FALSE(out["columns"][14]["visible"]);  // "Track Distance" starts hidden
}

TEST(SummaryCommand, ListTextAndCopyText) {
    TempDir dir;
    const SimRecording rec = River(dir, "ONE", "2024-03-09 12:00:00");
    const ProcessResult list = RunCli({"summary", rec.path, "--units", "english"});
    ASSERT_TRUE(list.Exited() && list.exitStatus == 0) << list.Describe();
    EXPECT_NE(list.out.find("Total Discharge"), std::string::npos);
    EXPECT_NE(list.out.find("(ft^3/s)"), std::string::npos);
    EXPECT_EQ(list.out.find("Track Distance"), std::string::npos);  // hidden column
    EXPECT_NE(list.out.find("Coefficient of Variation"), std::string::npos);
    EXPECT_NE(list.out.find("Std. Dev."), std::string::npos);
    const ProcessResult copy = RunCli({"summary", rec.path, "--copy"});
    ASSERT_TRUE(copy.Exited() && copy.exitStatus == 0) << copy.Describe();
    EXPECT_EQ(copy.out.rfind("File Name\tStart\tStart\t", 0), 0u);
    EXPECT_NE(copy.out.find("Track Distance\t"), std::string::npos);  // Copy gives hidden columns too
    EXPECT_NE(copy.out.find("\tm\t(m^2)\t"), std::string::npos);
    EXPECT_EQ(copy.out.substr(copy.out.size() - 3), "\t\r\n");
}

TEST(SummaryCommand, BadInputsHaveClearStatuses) {
    TempDir dir;
    EXPECT_EQ(RunCli({"summary", dir.File("missing.kvr")}).exitStatus, 2);
    EXPECT_EQ(RunCli({"summary"}).exitStatus, 64);
    std::ofstream(dir.File("bad.dis")) << "not a discharge file\n";
    EXPECT_EQ(RunCli({"summary", dir.File("bad.dis")}).exitStatus, 2);
}

TEST(SummaryCommand, DisFileOfTheExportJoinsTheSummary) {
    TempDir dir;
    const SimRecording rec = River(dir, "DIS", "2024-03-09 12:00:00");
    const ProcessResult exported = RunCli({"export", rec.path, "--format", "dis", "-o", dir.File("DIS.dis")});
    ASSERT_TRUE(exported.Exited() && exported.exitStatus == 0) << exported.Describe();
    const nlohmann::json out = RunCliJson({"summary", dir.File("DIS.dis"), rec.path, "--json"});
    ASSERT_EQ(out["rows"].size(), 6u);
    EXPECT_EQ(out["rows"][0]["cells"][0], "DIS.kvr");
    EXPECT_EQ(out["rows"][0]["cells"][5], "30");
}

TEST(ExportSum, WritesTheTransectSummaryFile) {
    TempDir dir;
    const SimRecording rec = River(dir, "SUMRIVER", "2024-03-09 12:00:00");
    const ProcessResult run = RunCli({"export", rec.path, "--format", "sum"});
    ASSERT_TRUE(run.Exited() && run.exitStatus == 0) << run.Describe();
    std::ifstream file(dir.File("SUMRIVER.sum"), std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    const std::string text = bytes.str();
    EXPECT_EQ(text.rfind("Quorle Ripplemark v4.50 Discharge Measurement Report\r\n", 0), 0u);
    EXPECT_NE(text.find("\r\nKVR Data File:           SUMRIVER.kvr"), std::string::npos);
    EXPECT_NE(text.find("\r\nDate:                  09/03/2024"), std::string::npos);
    EXPECT_NE(text.find("\r\nTotal Discharge:               \x05 m^3/s"), std::string::npos);
    // A failed check writes nothing and says why.
    const ProcessResult refused = RunCli({"export", rec.path, "--format", "sum", "-o", dir.File("x.sum"), "--set",
                                          "Discharge/LeftProfile=0"});
    EXPECT_NE(refused.exitStatus, 0);
    EXPECT_NE(refused.err.find("Left Profile must be between 1 and 30 (the total number of profiles)"),
              std::string::npos);
    EXPECT_FALSE(std::ifstream(dir.File("x.sum")).good());
}

}  // namespace
}  // namespace rm::test
