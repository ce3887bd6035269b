// `ripplemark-cli process` and `export --format dis` on recordings of the virtual river: the
// measurement printed against the truth, the options that change the processing and the .cfg
// written by --save. The refusals are in test_hostile_inputs.cpp.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "cli/sim_recording.h"
#include "data/node_tree.h"

namespace rm::test {
namespace {

class ProcessCommand : public ::testing::Test {
protected:
    void SetUp() override {
        rec = RecordRiver(dir, "PROC", {"--profiles", "80", "--boat-speed", "0.5", "--internal-gps", "--coords", "beam",
                                        "--pitch", "2", "--roll", "3"});
    }
    TempDir dir;
    SimRecording rec;
};

TEST_F(ProcessCommand, JsonHoldsTheMeasurementInSiUnits) {
    const nlohmann::json j = RunCliJson({"process", rec.path, "--json"});
    for (const char* key : {"FileName", "NumProfiles", "TopDischarge", "MiddleDischarge", "BottomDischarge",
                            "LeftDischarge", "RightDischarge", "TotalDischarge", "Area", "MeanVelocity",
                            "TrackDistance", "LeftDistance", "MeasuredDistance", "RightDistance", "TotalDistance",
                            "LeftEdgeArea", "RightEdgeArea", "MaxBoatSpeed", "MaxDepth", "MaxMeanSpeed", "MaxPitch",
                            "MaxRoll", "MeanBoatEast", "MeanBoatNorth", "TrackReference", "VelocityReference",
                            "DepthReference", "StartTime", "EndTime"}) {
        EXPECT_TRUE(j.contains(key)) << key;
    }
    EXPECT_FALSE(j.contains("profiles"));
    EXPECT_EQ(j["NumProfiles"], 80);
    const double q = j["TopDischarge"].get<double>() + j["MiddleDischarge"].get<double>() +
                     j["BottomDischarge"].get<double>();
    const double truth = rec.truth["discharge"].get<double>();
    EXPECT_NEAR(q, truth, 0.005 * truth);
    EXPECT_NEAR(j["MeasuredDistance"].get<double>(), rec.truth["width"].get<double>(), 0.4);
    EXPECT_NEAR(j["MaxDepth"].get<double>(), 4.0, 0.05);
    EXPECT_NEAR(std::fabs(j["MaxPitch"].get<double>()), 2.0, 0.05);
    EXPECT_EQ(j["TrackReference"], 1);
    EXPECT_EQ(j["StartTime"].get<std::string>().size(), 22u);
}

TEST_F(ProcessCommand, ProfilesListEveryProfileAndTheySumToTheMeasurement) {
    const nlohmann::json j = RunCliJson({"process", rec.path, "--json", "--profiles", "--track-ref", "gps",
                                         "--velocity-ref", "gps"});
    ASSERT_EQ(j["profiles"].size(), 80u);
    EXPECT_EQ(j["TrackReference"], 2);
    EXPECT_EQ(j["VelocityReference"], 2);
    double middle = 0.0;
    for (const nlohmann::json& p : j["profiles"]) {
        for (const char* key : {"TotalQ", "TopQ", "MiddleQ", "BottomQ", "MeanEast", "MeanNorth", "Depth", "WaterCells",
                                "QualityIndex", "BoatEast", "BoatNorth"}) {
            ASSERT_TRUE(p.contains(key)) << key;
        }
        middle += p["MiddleQ"].get<double>();
        // The river flows north; the boat crosses eastward, so the bed seems to move west.
        EXPECT_LT(p["BoatEast"].get<double>(), 0.0);
        EXPECT_GT(p["MeanNorth"].get<double>(), 0.0);
    }
    EXPECT_NEAR(middle, j["MiddleDischarge"].get<double>(), 1e-3);
}

TEST_F(ProcessCommand, SetChangesASettingAndSaveWritesItToTheCfg) {
    const nlohmann::json plain = RunCliJson({"process", rec.path, "--json"});
    const nlohmann::json constant = RunCliJson({"process", rec.path, "--json", "--set",
                                                "Discharge/ProfileExtrapolation/TopFitType=0", "--set",
                                                "Discharge/CorrectedStartBankSide=1", "--save"});
    EXPECT_NE(constant["TopDischarge"], plain["TopDischarge"]);
    EXPECT_FLOAT_EQ(constant["MiddleDischarge"].get<float>(), -plain["MiddleDischarge"].get<float>());
    const std::string cfg = dir.File("PROC.cfg");
    ASSERT_TRUE(std::filesystem::exists(cfg));
    const NodeRef root = NodeRef::MakeNew();
    ASSERT_TRUE(LoadTreeFile(root, cfg));
    EXPECT_EQ(root.GetOrCreateChild("Discharge").GetOrCreateChild("ProfileExtrapolation").GetTyped<int32_t>("TopFitType", -1),
              0);
    // A later run opens the recording with what was saved.
    const nlohmann::json again = RunCliJson({"process", rec.path, "--json"});
    EXPECT_EQ(again["TopDischarge"], constant["TopDischarge"]);
}

TEST_F(ProcessCommand, SelectionOptionsReachTheDocumentAndTextNamesItsUnits) {
    // A kept profile stands for the intervals it represents: a thinned load measures the river.
    const double full = RunCliJson({"process", rec.path, "--json"})["TotalDischarge"].get<double>();
    const nlohmann::json every = RunCliJson({"process", rec.path, "--json", "--every", "4"});
    const nlohmann::json average = RunCliJson({"process", rec.path, "--json", "--average", "8"});
    EXPECT_EQ(every["NumProfiles"], 20);
    EXPECT_EQ(average["NumProfiles"], 10);
    EXPECT_NEAR(every["TotalDischarge"].get<double>(), full, 0.01 * full);
    EXPECT_NEAR(average["TotalDischarge"].get<double>(), full, 0.01 * full);
    EXPECT_EQ(RunCliJson({"process", rec.path, "--json", "--first", "11", "--last", "50"})["NumProfiles"], 40);
    // Metric is the default; the option switches the text to English units.
    const ProcessResult metric = RunCli({"process", rec.path});
    const ProcessResult english = RunCli({"process", rec.path, "--units", "english"});
    ASSERT_TRUE(metric.exitStatus == 0 && english.exitStatus == 0) << metric.Describe() << english.Describe();
    EXPECT_NE(metric.out.find("m^3/s"), std::string::npos);
    EXPECT_EQ(metric.out.find("ft^3/s"), std::string::npos);
    EXPECT_NE(english.out.find("ft^3/s"), std::string::npos);
    EXPECT_EQ(english.out.find("m^3/s"), std::string::npos);
}

TEST_F(ProcessCommand, ExportWritesTheDisFileBesideTheRecordingOrWhereAsked) {
    const ProcessResult run = RunCli({"export", rec.path, "--format", "dis"});
    ASSERT_EQ(run.exitStatus, 0) << run.Describe();
    const std::string dis = dir.File("PROC.dis");
    ASSERT_TRUE(std::filesystem::exists(dis));
    std::ifstream in(dis);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    EXPECT_EQ(lines.front(), "% KVR Data File: PROC.kvr\r");  // a text file: CR LF line ends
    int profileLines = 0;
    for (const std::string& l : lines) profileLines += !l.empty() && l[0] != '%';
    EXPECT_EQ(profileLines, 80);

    const std::string elsewhere = dir.File("other.dis");
    ASSERT_EQ(RunCli({"export", rec.path, "--format", "dis", "-o", elsewhere}).exitStatus, 0);
    EXPECT_TRUE(std::filesystem::exists(elsewhere));
}

}  // namespace
}  // namespace rm::test
