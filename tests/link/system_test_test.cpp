// The system test's steps, window and log; the internal GPS set-up sequence.

#include "link/system_test.h"
#include "transfer_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

using test::TextWindow;

class SystemTestTest : public test::TransferTest {
protected:
    // An instrument that answers every test command with a listing and its prompt, prints
    // sensor lines after "sensor cont" and compass lines after "compass cont" until a break.
    void ScriptTestCommands(const std::string& showSystemReply = "\r\nSystem listing\r\n>") {
        port.OnWrite("test\r", "\r\nAll tests passed\r\n>");
        port.OnWrite("show conf\r", "\r\nConf listing\r\n>");
        port.OnWrite("show system\r", showSystemReply);
        port.OnWrite("show setup\r", "\r\nSetup listing\r\n>");
        port.OnWrite("show deploy\r", "\r\nDeploy listing\r\n>");
        port.OnWrite("show other\r", "\r\nOther listing\r\n>");
        port.OnWrite("sensor cont\r", "\r\nT=12.5 P=3.1\r\n");
        port.OnWrite("compass cont\r", "\r\nH=271.0\r\n");
        port.OnBreak("\r\nKVR woken\r\n>", 50, true);
        port.SetEcho(true);
        port.OnWrite("Ver\r", test::kKvrVerReply, 0, true);
        // Once printing continuously, the instrument ignores blanks until a break.
        port.OnWrite("\r", ">", 0, true);
    }
    std::string LogPath() const { return dir.File("RIVER.TestLog"); }
    TextWindow window;
};

TEST_F(SystemTestTest, EveryStepRunsInOrderAndTheLogHoldsWhatWasShownAndTheSensorOutput) {
    ScriptTestCommands();
    EXPECT_EQ(RunSystemTest(dialogue, LogPath(), true, &window), kSystemTestPassed);
    // Each title, the command's echo, the listing up to the prompt.
    const std::string expectedWindow =
        "System Test.................... \ntest\r\r\nAll tests passed\r\n>"
        "Show Conf...................... \nshow conf\r\r\nConf listing\r\n>"
        "Show System.................... \nshow system\r\r\nSystem listing\r\n>"
        "Show Setup..................... \nshow setup\r\r\nSetup listing\r\n>"
        "Show Deploy.................... \nshow deploy\r\r\nDeploy listing\r\n>"
        "Show Other..................... \nshow other\r\r\nOther listing\r\n>"
        "Checking Sensors............... Success\r\n";
    EXPECT_EQ(window.text, expectedWindow);
    const std::string log = test::ReadWholeFile(LogPath());
    EXPECT_EQ(log.substr(0, log.find("Checking Sensors")), expectedWindow.substr(0, expectedWindow.find("Checking")));
    EXPECT_NE(log.find("T=12.5 P=3.1"), std::string::npos);
    EXPECT_NE(log.find("H=271.0"), std::string::npos);
    EXPECT_EQ(port.Breaks().size(), 2u);  // one wake-up after each continuous printout
    EXPECT_EQ(log.substr(log.size() - 9), "Success\r\n");
}

TEST_F(SystemTestTest, AStepWithoutItsPromptFailsAndNothingAfterItIsSent) {
    ScriptTestCommands("\r\nSystem listing, cut off\r\n");
    SystemTestTiming quick;
    quick.promptRounds = 3000;
    EXPECT_EQ(RunSystemTest(dialogue, LogPath(), true, &window, nullptr, quick), kSystemTestStepFailed);
    EXPECT_EQ(window.text.substr(window.text.size() - 8), "Failed\r\n");
    EXPECT_EQ(port.Written().find("show setup"), std::string::npos);
}

TEST_F(SystemTestTest, TheLogIsAppendedToAndACreationFailureIsShown) {
    ScriptTestCommands();
    RunSystemTest(dialogue, LogPath(), false, nullptr);
    const size_t first = test::ReadWholeFile(LogPath()).size();
    ScriptTestCommands();
    RunSystemTest(dialogue, LogPath(), false, nullptr);
    EXPECT_GT(test::ReadWholeFile(LogPath()).size(), first);

    EXPECT_EQ(RunSystemTest(dialogue, dir.File("no/such/folder/X.TestLog"), false, nullptr), kSystemTestNoLog);
    EXPECT_EQ(prompt.titles, std::vector<std::string>{"Error"});
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"Unable to create log file."});
}

TEST(TestLogPathTest, TheDeploymentNamesTheLogInTheRecordingFolder) {
    EXPECT_EQ(TestLogPath("/data/river", "RIVER"), "/data/river/RIVER.TestLog");
    EXPECT_EQ(TestLogPath("/data/river/", "RIVER"), "/data/river/RIVER.TestLog");
    EXPECT_EQ(TestLogPath(kDefaultRecordedFileDirectory, "A"), "C:\\QorData\\A.TestLog");
}

TEST_F(SystemTestTest, InternalGpsSetupShowsEachStep) {
    Answer("GPS yes", "\r\nOK\r\n>");
    Answer("SaveSetup", "\r\nOK\r\n>");
    Ready();
    EXPECT_EQ(RunInternalGpsSetup(dialogue, &window), 1);
    EXPECT_EQ(window.text,
              "Waking up System............... Success\r\n"
              "Enable Internal GPS............ Success\r\n"
              "Save Setup..................... Success\r\n"
              "Display GPS Output.............  Success\r\n");
}

}  // namespace
}  // namespace rm
