// The User Setup retrieval: its order of commands and progress texts, and its end at each
// step that fails.

#include "link/user_setup_retrieval.h"
#include "transfer_test_support.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace rm {
namespace {

using test::GetReply;

// The full dialogue of a down-looking instrument with a table-driven pressure sensor.
std::vector<std::pair<std::string, std::string>> FullDialogue() {
    test::ConfSpec conf;
    conf.extPressure = 2;
    conf.pressureRange = 7;
    test::UserSpec user;
    user.cells = 40;
    return {
        {"bt", "\r\nBottom Track Current: YES\r\n>"},
        {"enablewaves", "\r\nWaves Current: NO\r\n>"},
        {"Get CONF", GetReply(test::ConfImage(conf))},
        {"Get USER", GetReply(test::UserImage(user))},
        {"Get OPER", GetReply(test::OperImage())},
        {"cs 9999", "\r\nCell Size out of range: 0.10 to 4.00 m\r\n>"},
        {"nc 99999", "\r\nNumber of Cells out of range: 1 to 128\r\n>"},
        {"Get Druck", GetReply(std::string(250, '\x11'))},
        {"enablebtrack", "\r\nBottom track enabled: YES\r\n>"},
    };
}

const std::vector<std::string> kAllCommands = {"Ver",     "bt",      "enablewaves", "Get CONF",  "Get USER",
                                               "Get OPER", "cs 9999", "nc 99999",   "Get Druck", "enablebtrack"};

class RetrievalTest : public test::TransferTest {
protected:
    // Scripts the full dialogue, with `broken` answered by a line that fails its step.
    void Script(const std::string& broken = "") {
        for (const auto& [command, reply] : FullDialogue()) {
            Answer(command, command == broken ? "\r\nERROR\r\n>" : reply);
        }
        Ready();
    }
};

TEST_F(RetrievalTest, EverythingIsReadInItsOrder) {
    Script();
    EXPECT_EQ(RetrieveUserSetup(dialogue, kvr, state), kRetrievalDone);
    EXPECT_EQ(Commands(), kAllCommands);
    EXPECT_EQ(prompt.progressTexts,
              (std::vector<std::string>{"Retrieving KVR Settings", "Interfacing with KVR", "KVR Options",
                                        "KVR User Configuration", "KVR User Settings", "Operational Settings",
                                        "System Limits", "Druck Settings", "Bottom Track Settings"}));
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(kvr.user.NumberOfCells, 40);
    EXPECT_DOUBLE_EQ(state.MinCellSize, 0.10);
    EXPECT_DOUBLE_EQ(state.MaxCellSize, 4.00);
    EXPECT_EQ(state.MaxNumberOfCells, 128);
    EXPECT_EQ(kvr.oper.unwrapSamples, 12);
    EXPECT_EQ(std::string(kvr.calibration.begin(), kvr.calibration.end()), std::string(250, '\x11'));
    EXPECT_EQ(kvr.derived.pressureRangeCounts, 7000000u);
    EXPECT_EQ(state.BottomTrackAvailable, 1);
}

struct BrokenStep {
    const char* command;  // the command whose answer fails
    int result;
    const char* message;  // the last message shown
    const char* closing;  // the step the closing line names
};

class RetrievalFailureTest : public RetrievalTest, public ::testing::WithParamInterface<BrokenStep> {};

TEST_P(RetrievalFailureTest, EndsAtTheFailingStepAndAsksNothingAfterIt) {
    const BrokenStep& b = GetParam();
    Script(b.command);
    EXPECT_EQ(RetrieveUserSetup(dialogue, kvr, state), b.result);
    std::vector<std::string> expected(kAllCommands.begin(),
                                      std::find(kAllCommands.begin(), kAllCommands.end(), b.command) + 1);
    EXPECT_EQ(Commands(), expected);
    ASSERT_FALSE(prompt.messages.empty());
    EXPECT_EQ(prompt.messages.back(), b.message);
    EXPECT_EQ(RetrievalFailureText(b.result), std::string("Retrieving KVR Settings stopped at: ") + b.closing);
}

INSTANTIATE_TEST_SUITE_P(
    EachStep, RetrievalFailureTest,
    ::testing::Values(BrokenStep{"Get CONF", -3, "Failed to get the Kvr Sensor Configuration", "KVR User Configuration"},
                      BrokenStep{"Get USER", -4, "Failed to get the Kvr User Setup Configuration", "KVR User Settings"},
                      BrokenStep{"Get OPER", -5, "Failed to get the Kvr Operation Configuration", "Operational Settings"},
                      BrokenStep{"cs 9999", -6, "Failed to get System Limits", "System Limits"},
                      BrokenStep{"nc 99999", -6, "Failed to get System Limits", "System Limits"},
                      BrokenStep{"Get Druck", -7, "Error Getting System Variable Structure: ", "Druck Settings"}));

TEST_F(RetrievalTest, AnUpLookingSystemIsRefusedAfterItsConfiguration) {
    test::ConfSpec conf;
    conf.orientation = 1;
    Answer("bt", "\r\nBottom Track Current: YES\r\n>");
    Answer("enablewaves", "\r\nWaves Current: NO\r\n>");
    Answer("Get CONF", GetReply(test::ConfImage(conf)));
    Ready();
    EXPECT_EQ(RetrieveUserSetup(dialogue, kvr, state), -3);
    EXPECT_EQ(prompt.messages,
              std::vector<std::string>{"Quorle Ripplemark will only operate with DOWN looking systems. Please refer to "
                                       "the Ripplemark Manual for instructions on changing system orientation."});
}

TEST_F(RetrievalTest, AFailedBottomTrackQuestionLeavesBottomTrackUnavailable) {
    Script("enablebtrack");
    EXPECT_EQ(RetrieveUserSetup(dialogue, kvr, state), kRetrievalDone);
    EXPECT_EQ(state.BottomTrackAvailable, 0);
    EXPECT_EQ(prompt.messages.back(), "Failed to get the Kvr Bottom Track Availability");
}

}  // namespace
}  // namespace rm
