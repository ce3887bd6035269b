// The prompt dialogue: what goes on the line, the echo comparison with its ten attempts, the
// waits and their messages, "LogFile", and the acknowledgement wait.

#include "link/prompt_dialogue.h"
#include "link/scripted_port.h"
#include "link_test_support.h"

#include <gtest/gtest.h>

#include <functional>

namespace rm {
namespace {

using test::ScriptPromptingInstrument;
using test::SendCommandTime;

class PromptDialogueTest : public ::testing::Test {
protected:
    std::string LogText() const { return test::ReadWholeFile(logPath); }

    test::ScratchDir dir;
    std::string logPath = dir.File("LogFile");
    ScriptedPort port;
    RecordingPrompt prompt;
    PromptDialogue dialogue{port, prompt, logPath};
};

TEST_F(PromptDialogueTest, AnEmptyLineForThePromptThenTheCommandWithItsCarriageReturnInItsLeastTime) {
    ScriptPromptingInstrument(port);
    EXPECT_EQ(dialogue.SendCommand("Ver", '>', true, nullptr), 1);
    EXPECT_EQ(port.Written(), "\rVer\r");
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(LogText(), "Ver\r>Ver\r");
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

// Each way the dialogue cannot start or go on: its one message, and what had gone out by then.
TEST(PromptDialogueFailure, EachHasItsMessageAndSendsNoCommand) {
    struct Case {
        const char* message;
        std::function<void(ScriptedPort&)> script;
        const char* written;
    } cases[] = {
        {"FAIL TO CLEAR TRANSMIT BUFFER",
         [](ScriptedPort& p) {
             ScriptPromptingInstrument(p);
             p.FailClearTx(kSerialIoError);
         },
         ""},
        {"FAIL TO CLEAR RECEIVE BUFFER",
         [](ScriptedPort& p) {
             ScriptPromptingInstrument(p);
             p.SetReadCostUs(20);
             p.Flood(0, 10, 10000000, '$');
         },
         ""},
        {"FAIL TO LOCATE PROMPT", [](ScriptedPort&) {}, "\r"},
        {"FAIL TO CLEAR RECEIVE BUFFER 2",  // the flood starts after the prompt came
         [](ScriptedPort& p) {
             ScriptPromptingInstrument(p);
             p.SetReadCostUs(20);
             p.Flood(150, 10, 10000000, '$');
         },
         "\r"},
    };
    for (const Case& c : cases) {
        ScriptedPort port;
        c.script(port);
        RecordingPrompt prompt;
        PromptDialogue dialogue(port, prompt, "");
        EXPECT_EQ(dialogue.SendCommand("Ver", '>', true, nullptr), 0) << c.message;
        EXPECT_EQ(prompt.messages, std::vector<std::string>{c.message});
        EXPECT_EQ(port.Written(), c.written) << c.message;
        // No prompt: the 100 ms settle and 2500 rounds of at least 1 ms.
        if (std::string(c.message) == "FAIL TO LOCATE PROMPT") {
            EXPECT_EQ(port.NowMs(), 100u + 2500u);
        }
    }
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

using WaitOkTest = PromptDialogueTest;

// Rounds are the limit in whole seconds, rounded, at least one; one more read after the last.
TEST_F(WaitOkTest, WithoutAnAcknowledgementTheReadsAreTheRoundsAndOneMore) {
    struct Case {
        uint32_t limit;
        uint64_t reads;
    };
    for (Case c : {Case{3000, 4}, Case{200, 2}, Case{1499, 2}, Case{1500, 3}, Case{0, 2}}) {
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
