// The instrument commands of ripplemark-cli against the simulated instrument on a
// pseudo-terminal, as a person would run them: what they print, their exit statuses, and what
// the instrument holds afterwards (asked by a second command, not by the first one's word).

#include "cli/process_runner.h"
#include "cli/sim_recording.h"
#include "data/kvr_data.h"
#include "data/record_dumps.h"
#include "sim/sim_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>
#include <sys/wait.h>

#include <nlohmann/json.hpp>

namespace rm::test {
namespace {

using Args = std::vector<std::string>;

class LinkCommandPty : public ::testing::Test {
protected:
    void Start(const Args& args) {
        Args all{"instrument"};
        all.insert(all.end(), args.begin(), args.end());
        ASSERT_TRUE(instrument.Start(sim::KvrSimProgram(), all, dir.File("instrument.err"))) << instrument.Error();
    }
    ProcessResult Cli(Args args, unsigned alarmSeconds = 60) {
        args.insert(args.begin() + 1, {"--port", instrument.DevicePath()});
        return RunProgram("ripplemark-cli", args, alarmSeconds);
    }
    // Whether a fresh `setup` reads `cells` cells from the instrument.
    bool InstrumentHoldsCells(int cells) {
        const ProcessResult read = Cli({"setup", "--config-dir", dir.path()});
        EXPECT_EQ(read.exitStatus, 0) << read.Describe();
        return read.out.find(DumpLine("No. of Cells", std::to_string(cells))) != std::string::npos;
    }
    // The instrument's bytes reach the screen as they come; a terminal shows "\r\n" as "\n".
    static std::string WithoutReturns(std::string text) {
        text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
        return text;
    }

    TempDir dir;
    sim::SimDeviceProcess instrument;
};

TEST_F(LinkCommandPty, WakeTellsEveryIdentificationWithItsTextAndStatus) {
    const std::string named[] = {
        "KVR in standby mode", "Hullstar in standby mode",
        "Skiffjack is conected to port\nPlease connect an KVR to this port for correct program operation",
        "ZSN is conected to port\nPlease connect an KVR to this port for correct program operation",
        "No Response from Instrument"};
    struct Case {
        Args simulator;
        int exitStatus;
        const std::string& text;
        const char* message;  // shown by the wake-up, "" for none
    } cases[] = {
        {{"--family", "kvr"}, 0, named[0], ""},
        {{"--family", "hullstar"}, 0, named[1], ""},
        {{"--asleep"}, 0, named[0], ""},
        {{"--family", "skiffjack"}, 1, named[2], "INSTRUMENT_IS_SKIFFJACK"},
        {{"--family", "zsn"}, 1, named[3], "INSTRUMENT_IS_ZSN"},
        {{"--family", "skiffjack-zsn"}, 1, named[4], ""},
        {{"--family", "zsn6600"}, 1, named[4], ""},
        {{"--family", "flow"}, 1, named[4], ""},
        {{"--family", "vnq"}, 1, named[4], ""},
        {{"--family", "unknown"}, 1, named[4], "FAIL_TO_WAKE_UP_INSTRUMENT5"},
        {{"--silent"}, 1, named[4], "FAIL_TO_WAKE_UP_INSTRUMENT3"},
    };
    for (const Case& c : cases) {
        Start(c.simulator);
        ASSERT_FALSE(HasFatalFailure());
        const std::string& path = instrument.DevicePath();
        const ProcessResult wake = Cli({"wake"});
        EXPECT_EQ(wake.exitStatus, c.exitStatus) << c.simulator.back() << ": " << wake.Describe();
        EXPECT_EQ(wake.out, "Finding KVR on " + path + "\nOpening " + path + "\nCommunications Parameters set\n" +
                                c.text + "\n")
            << c.simulator.back();
        EXPECT_EQ(wake.err, std::string(c.message) + (*c.message ? "\n" : "")) << c.simulator.back();
        instrument.Stop();
    }
}

TEST_F(LinkCommandPty, SetupSendsCheckedValuesReadsThemBackAndRefusesBadOnes) {
    // The simulated instrument's own setup passes the setup rules, so a configuration saved
    // from it loads again.
    Start({});
    ASSERT_FALSE(HasFatalFailure());

    const ProcessResult set =
        Cli({"setup", "--set", "Setup/NumberOfCells=12", "--config-dir", dir.path(), "--save-config", "river"});
    ASSERT_EQ(set.exitStatus, 0) << set.Describe() << set.err;
    EXPECT_NE(set.out.find(DumpLine("No. of Cells", "12")), std::string::npos) << set.out;
    EXPECT_TRUE(std::ifstream(dir.File("river.scf")).good());
    EXPECT_TRUE(InstrumentHoldsCells(12));

    // Above the 100 cells the instrument told: the rule's message, and the instrument keeps 12.
    const ProcessResult refused = Cli({"setup", "--set", "Setup/NumberOfCells=101", "--config-dir", dir.path()});
    EXPECT_EQ(refused.exitStatus, 1);
    EXPECT_EQ(refused.err, "Number of cells should be between 1 and 100.\n");
    EXPECT_EQ(refused.out, "");
    EXPECT_TRUE(InstrumentHoldsCells(12));

    // Another value, then the saved configuration brings 12 back.
    // (the command itself reads the value back and fails when it differs)
    ASSERT_EQ(Cli({"setup", "--set", "Setup/NumberOfCells=15", "--config-dir", dir.path()}).exitStatus, 0);
    const ProcessResult load = Cli({"setup", "--load-config", "river", "--config-dir", dir.path()});
    EXPECT_EQ(load.exitStatus, 0) << load.Describe() << load.err;
    EXPECT_EQ(load.err, "Configuration file: river has been loaded.\n");
    EXPECT_TRUE(InstrumentHoldsCells(12));
}

TEST_F(LinkCommandPty, ASetupThatBreaksARuleIsNotSavedSinceItCouldNotBeLoaded) {
    Start({"--averaging-interval", "1", "--profiles", "100"});
    ASSERT_FALSE(HasFatalFailure());
    const ProcessResult save = Cli({"setup", "--config-dir", dir.path(), "--save-config", "fast"});
    EXPECT_EQ(save.exitStatus, 1) << save.Describe();
    EXPECT_EQ(save.err,
              "AveragingInterval: The averaging interval must\nbe between 5 and 43200 seconds.\n"
              "ProfilingInterval: The profiling interval must\nbe between 10 and 43200 seconds.\n"
              "Error saving configuration.\n");
    EXPECT_FALSE(std::ifstream(dir.File("fast.scf")).good());
}

TEST_F(LinkCommandPty, SystemTestRunsEveryStepIntoItsLog) {
    Start({});
    ASSERT_FALSE(HasFatalFailure());
    const ProcessResult test = Cli({"systest", "--log-dir", dir.path(), "--deployment", "BANK"}, 120);
    ASSERT_EQ(test.exitStatus, 0) << test.Describe() << test.err;
    size_t at = 0;
    for (const char* title : {"System Test....................", "Show Conf......................",
                              "Show System....................", "Show Setup.....................",
                              "Show Deploy....................", "Show Other.....................",
                              "Checking Sensors............... "}) {
        at = test.out.find(title, at);
        EXPECT_NE(at, std::string::npos) << title;
    }
    EXPECT_EQ(WithoutReturns(test.out.substr(at)).substr(0, 40), "Checking Sensors............... Success\n");
    EXPECT_EQ(test.out.find("Failed"), std::string::npos);
    EXPECT_EQ(test.out.substr(test.out.rfind("Log: ")), "Log: " + dir.File("BANK.TestLog") + "\n");
    std::ifstream log(dir.File("BANK.TestLog"));
    const std::string text((std::istreambuf_iterator<char>(log)), std::istreambuf_iterator<char>());
    for (const char* answer : {"All tests passed", "Serial number SIM0001", "Deployment live", "Battery 12.0 V"})
        EXPECT_NE(text.find(answer), std::string::npos) << answer;
}

TEST_F(LinkCommandPty, TerminalPassesTypedLinesAndShowsTheAnswers) {
    Start({});
    ASSERT_FALSE(HasFatalFailure());
    const std::string command = "printf 'show deploy\\nshow setup\\n' | timeout 30 " + BinDir() +
                                "/ripplemark-cli terminal --port " + instrument.DevicePath() + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string out;
    char chunk[256];
    for (size_t n; (n = fread(chunk, 1, sizeof chunk, pipe)) > 0;) out.append(chunk, n);
    const int status = pclose(pipe);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status << out;
    // Each line is echoed and answered in turn, with the instrument's line ends made "\n".
    EXPECT_NE(WithoutReturns(out).find("show deploy\nDeployment live\n>show setup\nCells 20  Cell size 25 cm"),
              std::string::npos)
        << out;
}

TEST_F(LinkCommandPty, ClockSetNowBringsTheInstrumentToTheComputersTime) {
    Start({"--start", "2020-06-01 08:00:00"});
    ASSERT_FALSE(HasFatalFailure());
    auto seconds = [](const std::string& out, const char* label) {
        const size_t at = out.find(label);
        std::tm t{};
        if (at == std::string::npos ||
            sscanf(out.c_str() + at + std::strlen(label), "%d/%d/%d %d:%d:%d", &t.tm_year, &t.tm_mon, &t.tm_mday,
                   &t.tm_hour, &t.tm_min, &t.tm_sec) != 6)
            return -1.0;
        t.tm_year -= 1900;
        t.tm_mon -= 1;
        return static_cast<double>(timegm(&t));
    };
    const ProcessResult before = Cli({"clock"});
    ASSERT_EQ(before.exitStatus, 0) << before.Describe();
    EXPECT_EQ(before.out.substr(before.out.find("Instrument: "), 24), "Instrument: 2020/06/01 0");

    const ProcessResult set = Cli({"clock", "--set-now"});
    ASSERT_EQ(set.exitStatus, 0) << set.Describe() << set.err;
    EXPECT_NE(set.err.find("System time has been set to "), std::string::npos) << set.err;
    const double computer = seconds(set.out, "Computer:   "), inside = seconds(set.out, "Instrument: ");
    ASSERT_GT(computer, 0.0) << set.out;
    EXPECT_NEAR(inside, computer, 5.0) << set.out;
}

TEST_F(LinkCommandPty, APortThatIsNotThereFailsWithItsMessage) {
    const ProcessResult wake = RunProgram("ripplemark-cli", {"wake", "--port", "/dev/no-such-port"}, 30);
    EXPECT_EQ(wake.exitStatus, 1) << wake.Describe();
    EXPECT_NE(wake.out.find("Cannot locate KVR on /dev/no-such-port"), std::string::npos);
    for (const char* command : {"clock", "setup", "systest", "terminal"}) {
        const ProcessResult r = RunProgram("ripplemark-cli", {command, "--port", "/dev/no-such-port"}, 30);
        EXPECT_EQ(r.exitStatus, 1) << command << ": " << r.Describe();
        EXPECT_EQ(r.err.rfind("Cannot open port /dev/no-such-port", 0), 0u) << command << ": " << r.err;
    }
}

// Pulse-coherent frames with the shallow-water ping carry the 36-byte shallow-water block; a
// short recording of them decodes with the block and measures the simulator's river.
TEST_F(LinkCommandPty, PulseCoherentRecordingDecodesWithTheShallowWaterBlockAndMeasuresTheRiver) {
    constexpr int kProfiles = 20;
    Start({"--pulse-coherent", "--bottom-track", "2", "--interval", "0.3", "--averaging-interval", "1", "--profiles",
           "100", "--max-profiles", std::to_string(kProfiles), "--truth", dir.File("truth.json")});
    ASSERT_FALSE(HasFatalFailure());
    const ProcessResult r = Cli({"record", "--dir", dir.path(), "--name", "PC", "--profiles",
                                 std::to_string(kProfiles), "--left-distance", "0", "--right-distance", "0", "--json"},
                                120);
    ASSERT_EQ(r.exitStatus, 0) << r.Describe() << r.err;

    CKvrData kvr;
    ASSERT_TRUE(kvr.OpenFile(dir.File("PC.kvr")));
    ASSERT_EQ(kvr.ReadHeader(false), kReadOk);
    EXPECT_EQ(kvr.user.PCMode, 1);
    ASSERT_EQ(kvr.ProfileCount(), kProfiles);
    // 80 header + 36 shallow water + 18 bottom track + 20 cells x 4 beams x 4 bytes + 2.
    EXPECT_EQ(kvr.RecordSize(), 80 + 36 + 18 + 20 * 4 * 4 + 2);
    for (int i = 0; i < kProfiles; ++i) {
        ASSERT_EQ(kvr.LoadProfile(i, 0), kReadOk) << i;
        EXPECT_TRUE(kvr.Slot(0).hasShallowWater) << i;
        EXPECT_EQ(kvr.Slot(0).header.profileNumber, static_cast<uint32_t>(i + 1));
    }

    std::ifstream in(dir.File("truth.json"));
    ASSERT_TRUE(in.good());
    const double truth = nlohmann::json::parse(in)["discharge"].get<double>();
    const nlohmann::json processed = RunCliJson({"process", dir.File("PC.kvr"), "--json"});
    const double q = processed["TopDischarge"].get<double>() + processed["MiddleDischarge"].get<double>() +
                     processed["BottomDischarge"].get<double>();
    EXPECT_NEAR(q, truth, 0.005 * truth);
}

}  // namespace
}  // namespace rm::test
