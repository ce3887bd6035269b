// The kvr-sim program run as a user runs it: its JSON truth, its files and its exit statuses.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "sim/river_scenario.h"
#include "sim/sim_process.h"
#include "sim/truth.h"
#include "sim_test_support.h"

namespace rm::sim {
namespace {

std::string ReadText(const std::string& path) {
    std::ifstream in(path);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

struct ProgramRun {
    int status = -1;
    std::string out, err;
};

ProgramRun KvrSim(const simtest::ScratchFolder& dir, const std::vector<std::string>& args) {
    std::string command = "'" + KvrSimProgram() + "'";
    for (const std::string& a : args) command += " '" + a + "'";
    command += " >'" + dir.File("stdout") + "' 2>'" + dir.File("stderr") + "'";
    const int raw = std::system(command.c_str());
    ProgramRun r;
    r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    r.out = ReadText(dir.File("stdout"));
    r.err = ReadText(dir.File("stderr"));
    return r;
}

TEST(KvrSimCliTest, RiverWritesTheFileAndPrintsItsTruth) {
    simtest::ScratchFolder dir;
    const std::string path = dir.File("cross.kvr");
    const ProgramRun r =
        KvrSim(dir, {"river", "--out",        path,  "--profiles",   "40",    "--beams", "3", "--coords",
                     "xyz",   "--boat-speed", "0.9", "--start-bank", "right", "--noise", "1", "--seed",
                     "3",     "--width",      "50",  "--max-depth",  "3.5"});
    ASSERT_EQ(r.status, 0) << r.err;
    const nlohmann::json j = nlohmann::json::parse(r.out);
    for (const char* key : {"discharge", "top", "middle", "bottom", "width", "area", "mean_velocity", "profiles",
                            "file", "left_edge", "right_edge", "river", "sampled"}) {
        EXPECT_TRUE(j.contains(key)) << key;
    }
    EXPECT_EQ(j["profiles"], 40);
    EXPECT_EQ(j["file"], path);
    EXPECT_TRUE(j["pmk"].is_null());
    EXPECT_EQ(j["start_bank"], "right");
    EXPECT_NEAR(j["width"].get<double>(), 40 * 0.9, 1e-9);

    // The same truth from the library for the same river and span.
    VirtualRiver river;
    river.widthM = 50.0;
    river.maxDepthM = 3.5;
    CellLayout layout;
    const SpanTruth t = ComputeSpanTruth(river, 43.0, 7.0, layout);
    EXPECT_NEAR(j["discharge"].get<double>(), t.span.discharge, 1e-9 * t.span.discharge);
    EXPECT_NEAR(j["bottom"].get<double>(), t.layers.bottom, 1e-9 * t.span.discharge);
    EXPECT_NEAR(j["left_edge"]["distance"].get<double>(), 7.0, 1e-9);

    simtest::Recording rec;
    simtest::ReadRecording(path, rec);
    EXPECT_EQ(rec.profiles.size(), 40u);
    EXPECT_EQ(rec.data.conf.Nbeams, 3);
    EXPECT_EQ(rec.data.user.CoordinateSystem, 1);
}

TEST(KvrSimCliTest, SideFileOnlyWithExternalSensors) {
    simtest::ScratchFolder dir;
    ProgramRun r = KvrSim(dir, {"river", "--out", dir.File("a.kvr"), "--external-gps", "--echo-sounder"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(nlohmann::json::parse(r.out)["pmk"], dir.File("a.pmk"));
    EXPECT_FALSE(simtest::FileBytes(dir.File("a.pmk")).empty());
    r = KvrSim(dir, {"river", "--out", dir.File("b.kvr"), "--internal-gps"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(simtest::FileBytes(dir.File("b.pmk")).empty());
}

TEST(KvrSimCliTest, WrongArgumentsExitWithUsageStatus) {
    simtest::ScratchFolder dir;
    const std::string out = dir.File("u.kvr");
    const std::vector<std::vector<std::string>> cases{
        {},
        {"river"},
        {"river", "--out", out, "--beams", "5"},
        {"river", "--out", out, "--coords", "polar"},
        {"river", "--out", out, "--start-bank", "middle"},
        {"river", "--out", out, "--bottom-track", "3"},
        {"river", "--out", out, "--profiles", "1000"},
        {"river", "--out", out, "--internal-gps", "--external-gps"},
        {"river", "--out", out, "--start", "2024-02-30 10:00:00"},
        {"river", "--out", dir.File("u.txt")},
        {"river", "--out", out, "--cells", "abc"},
    };
    for (const auto& args : cases) {
        const ProgramRun r = KvrSim(dir, args);
        std::string line;
        for (const auto& a : args) line += a + " ";
        EXPECT_EQ(r.status, 64) << line;
        EXPECT_FALSE(r.err.empty()) << line;
        EXPECT_TRUE(r.out.empty()) << line;
    }
    EXPECT_TRUE(simtest::FileBytes(out).empty());

    // A folder that does not exist yet is made; one that cannot be made (a file stands in its
    // way) is a failure with a message, not a usage error.
    ProgramRun r = KvrSim(dir, {"river", "--out", dir.File("new/folder/x.kvr")});
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_FALSE(simtest::FileBytes(dir.File("new/folder/x.kvr")).empty());
    r = KvrSim(dir, {"river", "--out", dir.File("new/folder/x.kvr/y.kvr")});
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("new/folder/x.kvr"), std::string::npos) << r.err;
    EXPECT_TRUE(r.out.empty());
}

}  // namespace
}  // namespace rm::sim
