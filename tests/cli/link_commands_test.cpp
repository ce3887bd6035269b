// The instrument commands of the command-line tool, run on scripted ports: what they print, the
// link's messages, and their exit statuses, where a scripted line shows more than the simulated
// instrument of link_commands_pty_test.cpp (several devices at once, the exact bytes written).

#include "cli/link_commands.h"
#include "cli/command.h"
#include "link/transfer_test_support.h"

#include <gtest/gtest.h>

#include <sstream>

namespace rm::cli {
namespace {

using test::GetReply;

class LinkCommandTest : public ::testing::Test {
protected:
    ScriptedPort& Port(const std::string& path) {
        auto port = factory.MakePort(path);
        ScriptedPort& ref = *port;
        factory.Provide(path, std::move(port));
        return ref;
    }
    ScriptedPortFactory factory;
    RecordingPrompt prompt;
    std::ostringstream out;
};

TEST_F(LinkCommandTest, CheckReportsEveryDeviceAndFailsWhenOneIsNotFound) {
    ScriptedPort& kvr = Port("/dev/ttyKVR");
    kvr.OnWrite("Get CONF\r", GetReply(test::ConfImage({})));
    kvr.OnWrite("Get USER\r", GetReply(test::UserImage({})));
    test::ScriptAwakeInstrument(kvr, test::kKvrVerReply);
    // A receiver that sends its fix once a second, on the same virtual clock as the instrument.
    ScriptedPort& gps = Port("/dev/ttyGPS");
    for (uint32_t at = 0; at < 60000; at += 1000) {
        gps.ArriveAt(at, "$GPGGA,123519.00,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n");
    }

    CheckChoices choices;
    choices.instrument.path = "/dev/ttyKVR";
    choices.externalGps.path = "/dev/ttyGPS";
    EXPECT_EQ(RunCheckCommand(factory, choices, prompt, out), kExitOk);
    EXPECT_EQ(out.str(),
              "KVR on /dev/ttyKVR: Found - click to check again\nThe KVR is operating correctly.\n"
              "External GPS on /dev/ttyGPS: Found - click to check again\nThe GPS system is operating correctly.\n"
              "Echo Sounder: Disabled\n");

    out.str("");
    CheckChoices echoOnly;
    echoOnly.echoSounder.path = "/dev/ttyEcho";
    Port("/dev/ttyEcho");
    EXPECT_EQ(RunCheckCommand(factory, echoOnly, prompt, out), kExitFailure);
    EXPECT_NE(out.str().find("Echo Sounder on /dev/ttyEcho: Invalid - click here for information\nNo data is being "
                             "received from the EchoSounder.\nPlease check your cable and connection settings.\n"),
              std::string::npos);

    out.str("");
    CheckChoices missing;
    missing.externalGps.path = "/dev/ttyNoSuchGps";
    EXPECT_EQ(RunCheckCommand(factory, missing, prompt, out), kExitFailure);
    EXPECT_NE(out.str().find("External GPS: Disabled (Cannot open port /dev/ttyNoSuchGps"), std::string::npos);
}

// The whole User Setup retrieval of a down-looking instrument, every answer repeatable.
void ScriptRetrieval(ScriptedPort& port) {
    const std::vector<std::pair<std::string, std::string>> answers = {
        {"bt", "\r\nBottom Track Current: YES\r\n>"},
        {"enablewaves", "\r\nWaves Current: NO\r\n>"},
        {"Get CONF", GetReply(test::ConfImage({}))},
        {"Get USER", GetReply(test::UserImage({}))},
        {"Get OPER", GetReply(test::OperImage())},
        {"cs 9999", "\r\nCell Size out of range: 0.10 to 4.00 m\r\n>"},
        {"nc 99999", "\r\nNumber of Cells out of range: 1 to 128\r\n>"},
        {"enablebtrack", "\r\nBottom track enabled: YES\r\n>"},
    };
    for (const auto& [command, reply] : answers) port.OnWrite(command + "\r", reply, 0, true);
    test::ScriptAwakeInstrument(port, test::kKvrVerReply);
}

TEST_F(LinkCommandTest, SetupRefusesABadValueAndSendsNothing) {
    ScriptedPort& kvr = Port("/dev/ttyKVR");
    ScriptRetrieval(kvr);
    SetupChoices choices;
    choices.instrument.path = "/dev/ttyKVR";
    choices.assignments = {"Setup/NumberOfCells=1000"};  // above the 128 the instrument told
    EXPECT_EQ(RunSetupCommand(factory, choices, prompt, out), kExitFailure);
    ASSERT_FALSE(prompt.messages.empty());
    EXPECT_NE(prompt.messages.back().find("128"), std::string::npos);
    EXPECT_EQ(kvr.Written().find("Load"), std::string::npos);
    EXPECT_EQ(kvr.Written().find("Save"), std::string::npos);
}

TEST_F(LinkCommandTest, ClockShowsTheInstrumentsTimeOrItsError) {
    ScriptedPort& kvr = Port("/dev/ttyKVR");
    kvr.OnWrite("Date\r", "\r\nCurrent date is 2024/03/09\r\n>", 0, true);
    kvr.OnWrite("Time\r", "\r\nCurrent time is 13:04:59\r\n>", 0, true);
    test::ScriptAwakeInstrument(kvr, test::kKvrVerReply);
    EXPECT_EQ(RunClockCommand(factory, {"/dev/ttyKVR", 9600}, false, prompt, out), kExitOk);
    EXPECT_NE(out.str().find("Instrument: 2024/03/09 13:04:59\n"), std::string::npos);

    Port("/dev/ttySilent");
    EXPECT_EQ(RunClockCommand(factory, {"/dev/ttySilent", 9600}, false, prompt, out), kExitFailure);
    EXPECT_EQ(prompt.messages.back(), "Unable to get system time.");
}

}  // namespace
}  // namespace rm::cli
