// The prompt dialogue: what goes on the line, the echo comparison with its ten attempts, the
// waits and their messages, "LogFile", and the acknowledgement wait.

#include "link/prompt_dialogue.h"
#include "link/scripted_port.h"
#include "link_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

class PromptDialogueTest : public ::testing::Test {
protected:
    // An instrument at its prompt that echoes and answers an empty line with the prompt.
    void ScriptPromptingInstrument(ScriptedPort& p) {
        p.SetEcho(true);
        p.OnWrite("\r", ">", 0, true);
    }
    std::string LogText() const { return test::ReadWholeFile(logPath); }

    test::ScratchDir dir;
    std::string logPath = dir.File("LogFile");
    ScriptedPort port;
    RecordingPrompt prompt;
    PromptDialogue dialogue{port, prompt, logPath};
};

TEST_F(PromptDialogueTest, AnEmptyLineForThePromptThenTheCommandWithItsCarriageReturn) {
    ScriptPromptingInstrument(port);
    EXPECT_EQ(dialogue.SendCommand("Ver", '>', true, nullptr), 1);
    EXPECT_EQ(port.Written(), "\rVer\r");
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(LogText(), "Ver\r>Ver\r");
}

TEST_F(PromptDialogueTest, ItsLeastTimeIsTheTwoSleepsThePromptAndFiveMsACharacter) {
    ScriptPromptingInstrument(port);
    dialogue.SendCommand("Ver", '>', true, nullptr);
    // 100 ms settle; the prompt wait takes the echoed CR and '>' in two 1 ms rounds; one 100 ms
    // step of the silence wait; four characters of 5 ms each with an instant echo.
    EXPECT_EQ(port.NowMs(), 100u + 2u + 100u + 4u * 5u);
}

TEST_F(PromptDialogueTest, ASingleCharacterCommandComparesItsCarriageReturnToo) {
    ScriptPromptingInstrument(port);
    // The carriage return of the command is echoed as a line feed: the echo of the one real
    // character is right, but the line is not.
    int returns = 0;
    port.SetEchoFilter([&returns](uint8_t b) { return (b == '\r' && ++returns > 1) ? '\n' : b; });
    EXPECT_EQ(dialogue.SendCommand("X", '>', true, nullptr), 0);
    EXPECT_EQ(test::CountOf(port.Written(), "X\r"), 10);
}

TEST_F(PromptDialogueTest, ADumbLineFailsAfterTenAttemptsWithoutAMessage) {
    port.OnWrite("\r", ">", 0, true);  // a prompt, but no echo
    EXPECT_EQ(dialogue.SendCommand("Ver", '>', true, nullptr), 0);
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(test::CountOf(port.Written(), "Ver\r"), 10);
    // The only byte that comes back in an attempt is the prompt after the CR, so the echo text
    // is empty: each attempt logs the line, the bare prompt and the mark.
    std::string expected;
    for (int i = 0; i < 10; ++i) expected += "Ver\r>   <------ Bad Transmission\r";
    EXPECT_EQ(LogText(), expected);
}

TEST_F(PromptDialogueTest, ABadEchoIsSentAgainUntilItComesBackRight) {
    ScriptPromptingInstrument(port);
    int es = 0;
    port.SetEchoFilter([&es](uint8_t b) { return (b == 'e' && ++es <= 9) ? 'E' : b; });
    EXPECT_EQ(dialogue.SendCommand("Ver", '>', true, nullptr), 1);
    EXPECT_EQ(test::CountOf(port.Written(), "Ver\r"), 10);
    EXPECT_EQ(test::CountOf(LogText(), "   <------ Bad Transmission\r"), 9);
    EXPECT_EQ(test::CountOf(LogText(), "Ver\r>VEr\r"), 9);
    EXPECT_EQ(LogText().substr(LogText().size() - 9), "Ver\r>Ver\r");
}

TEST_F(PromptDialogueTest, ATransmitBufferThatCannotBeClearedIsReported) {
    ScriptPromptingInstrument(port);
    port.FailClearTx(kSerialIoError);
    EXPECT_EQ(dialogue.SendCommand("Ver", '>', true, nullptr), 0);
    ASSERT_EQ(prompt.messages.size(), 1u);
    EXPECT_EQ(prompt.messages[0], "FAIL TO CLEAR TRANSMIT BUFFER");
    EXPECT_EQ(port.Written(), "");
}

TEST_F(PromptDialogueTest, ALineThatKeepsSendingIsReportedNotWaitedFor) {
    ScriptPromptingInstrument(port);
    port.SetReadCostUs(20);
    port.Flood(0, 10, 10000000, '$');
    EXPECT_EQ(dialogue.SendCommand("Ver", '>', true, nullptr), 0);
    ASSERT_EQ(prompt.messages.size(), 1u);
    EXPECT_EQ(prompt.messages[0], "FAIL TO CLEAR RECEIVE BUFFER");
    EXPECT_EQ(port.Written(), "");
}

TEST_F(PromptDialogueTest, NoPromptWithinItsRoundsIsReportedAndNoCommandGoesOut) {
    EXPECT_EQ(dialogue.SendCommand("Ver", '>', true, nullptr), 0);
    ASSERT_EQ(prompt.messages.size(), 1u);
    EXPECT_EQ(prompt.messages[0], "FAIL TO LOCATE PROMPT");
    EXPECT_EQ(port.Written(), "\r");
    EXPECT_EQ(port.NowMs(), 100u + 2500u);
}

TEST_F(PromptDialogueTest, ALineBusyDuringTheSilenceWaitIsReported) {
    ScriptPromptingInstrument(port);
    port.SetReadCostUs(20);
    port.Flood(150, 10, 10000000, '$');  // starts after the prompt came
    EXPECT_EQ(dialogue.SendCommand("Ver", '>', true, nullptr), 0);
    ASSERT_EQ(prompt.messages.size(), 1u);
    EXPECT_EQ(prompt.messages[0], "FAIL TO CLEAR RECEIVE BUFFER 2");
    EXPECT_EQ(port.Written(), "\r");
}

TEST_F(PromptDialogueTest, ATrickleHoldsTheCommandUntilTheLineIsQuiet) {
    ScriptPromptingInstrument(port);
    port.Flood(150, 50000, 40, '.');  // a byte every 50 ms from 150 ms to 2100 ms
    EXPECT_EQ(dialogue.SendCommand("Ver", '>', true, nullptr), 1);
    const size_t first = port.Written().find("Ver");
    ASSERT_NE(first, std::string::npos);
    EXPECT_GT(port.WriteTimesMs()[first], 2100u);
}

TEST_F(PromptDialogueTest, ACommandTooLongForTheLineBufferIsRefused) {
    ScriptPromptingInstrument(port);
    EXPECT_EQ(dialogue.SendCommand(std::string(99, 'a'), '>', true, nullptr), 0);
    EXPECT_EQ(port.Written(), "");
    EXPECT_EQ(dialogue.SendCommand(std::string(98, 'a'), '>', true, nullptr), 1);
}

// --- waiting for an acknowledgement

class WaitOkTest : public PromptDialogueTest {
protected:
    // Virtual time of SendCommand alone on an identical instrument.
    uint64_t SendCommandTime(const std::string& command) {
        ScriptedPort twin;
        ScriptPromptingInstrument(twin);
        RecordingPrompt quiet;
        PromptDialogue d(twin, quiet, "");
        d.SendCommand(command, '>', true, nullptr);
        return twin.NowMs();
    }
};

TEST_F(WaitOkTest, ALimitOfThreeSecondsGivesThreeReadsAndOneMore) {
    ScriptPromptingInstrument(port);
    EXPECT_EQ(dialogue.SendCommandWaitOk("Save setup", 3000, nullptr), 0);
    EXPECT_EQ(port.NowMs() - SendCommandTime("Save setup"), 4u * 1000u);
}

TEST_F(WaitOkTest, RoundsAreTheLimitInWholeSecondsRoundedAndAtLeastOne) {
    struct Case {
        uint32_t limit;
        uint64_t reads;
    };
    for (Case c : {Case{200, 2}, Case{1499, 2}, Case{1500, 3}, Case{0, 2}}) {
        ScriptedPort p;
        ScriptPromptingInstrument(p);
        PromptDialogue d(p, prompt, "");
        EXPECT_EQ(d.SendCommandWaitOk("def", c.limit, nullptr), 0);
        EXPECT_EQ(p.NowMs() - SendCommandTime("def"), c.reads * 1000u) << "limit " << c.limit;
    }
}

TEST_F(WaitOkTest, AnOkSplitOverTwoReadsCounts) {
    // 'O' comes with the echo; 'K' only half a second after the first read has ended.
    port.SetEcho(true);
    port.OnWrite("Load USER\r", "\r\nO", 0);
    port.OnWrite("\r", ">", 0, true);
    const uint64_t kAt = SendCommandTime("Load USER") + 1500;
    port.ArriveAt(static_cast<uint32_t>(kAt), "K\r\n");
    EXPECT_EQ(dialogue.SendCommandWaitOk("Load USER", 3000, nullptr), 1);
    EXPECT_EQ(port.NowMs(), kAt);
}

TEST_F(WaitOkTest, DefaultAlsoCountsAsAnAcknowledgement) {
    port.OnWrite("def\r", "\r\nDefault settings loaded\r\n>", 0);
    ScriptPromptingInstrument(port);
    EXPECT_EQ(dialogue.SendCommandWaitOk("def", 3000, nullptr), 1);
}

}  // namespace
}  // namespace rm
