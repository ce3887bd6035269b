// Wake-up and identification against scripted instruments: awake, asleep until a break,
// printing compass data, deaf to the break, silent, and of the sibling families.

#include "link/scripted_port.h"
#include "link/wake_up.h"
#include "link_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

using test::SendCommandTime;
using test::TextWindow;
using test::VerReply;

class WakeUpTest : public ::testing::Test {
protected:
    // Asleep: no echo and no answer until a break; `breakBanner` arrives 100 ms after it.
    void ScriptSleepingInstrument(const std::string& breakBanner, const std::string& verReply) {
        port.SetEcho(true);
        port.SetEchoFilter([this](uint8_t b) { return port.Breaks().empty() ? -1 : b; });
        port.OnWrite("Ver\r", verReply, 0, true);
        port.OnWrite("\r", ">", 0, true);
        if (!breakBanner.empty()) port.OnBreak(breakBanner, 100);
    }

    test::ScratchDir dir;
    ScriptedPort port;
    RecordingPrompt prompt;
    PromptDialogue dialogue{port, prompt, dir.File("LogFile")};
};

TEST_F(WakeUpTest, AnInstrumentAtItsPromptCostsOneCommandAndTwoShortReads) {
    // The marker byte the line gives before the answer is skipped.
    test::ScriptAwakeInstrument(port, "\xE8KVR 2 Ripple\r\n>");
    std::string answer;
    EXPECT_EQ(WakeInstrument(dialogue, 0, nullptr, nullptr, &answer), kWakeKvr);
    EXPECT_EQ(answer, "KVR 2 Ripple\r\n");
    EXPECT_EQ(port.Written(), " \rVer\r");
    EXPECT_TRUE(port.Breaks().empty());
    EXPECT_LT(port.NowMs(), 1000u);
    // A non-zero address sends the selection first.
    EXPECT_EQ(WakeInstrument(dialogue, 3, nullptr, nullptr), kWakeKvr);
    EXPECT_EQ(port.Written().substr(6, 5), "\xF0\xF0\xE0\xF3 ");
}

TEST_F(WakeUpTest, ASleepingInstrumentWakesOnTheBreakAndItsBannerScrollsIn) {
    const std::string banner = "\r\nKVR wake up\r\n>";
    ScriptSleepingInstrument(banner, VerReply("KVR 2"));
    TextWindow window;
    EXPECT_EQ(WakeInstrument(dialogue, 0, &window, nullptr), kWakeKvr);
    EXPECT_EQ(port.Breaks(), std::vector<uint32_t>{200});
    EXPECT_EQ(window.text, banner);
    EXPECT_EQ(port.Written().find('+'), std::string::npos);
}

TEST_F(WakeUpTest, ARenewedWakeUpBreaksFirstEvenWhenTheInstrumentWouldAnswer) {
    ScriptSleepingInstrument("", VerReply("KVR 2"));
    port.OnWrite(" ", ">", 0, true);  // once awake it answers the blank
    EXPECT_EQ(RenewedWakeUp(dialogue, nullptr), kWakeKvr);
    EXPECT_EQ(port.Breaks(), std::vector<uint32_t>{200});  // the blank then found the prompt
    EXPECT_EQ(port.Written(), " \rVer\r");
}

TEST_F(WakeUpTest, ACompassPrintoutGetsTheLongWaitAndNoEscape) {
    ScriptSleepingInstrument("Compass H 123.4 P 1.2 R 0.3\r\n", VerReply("KVR 2"));
    port.OnBreak(">", 8000);  // long after the 2000 rounds of the banner wait
    EXPECT_EQ(WakeInstrument(dialogue, 0, nullptr, nullptr), kWakeKvr);
    EXPECT_EQ(port.Written().find('+'), std::string::npos);
}

TEST_F(WakeUpTest, ACompassPrintoutWithoutAPromptFailsWithoutTheEscape) {
    ScriptSleepingInstrument("Compass H 123.4 P 1.2 R 0.3\r\n", VerReply("KVR 2"));
    EXPECT_EQ(WakeInstrument(dialogue, 0, nullptr, nullptr), kWakeNoPrompt);
    EXPECT_EQ(port.Written(), " ");
}

TEST_F(WakeUpTest, AnInstrumentDeafToTheBreakAnswersTheEscape) {
    port.SetEcho(true);
    port.SetEchoFilter(
        [this](uint8_t b) { return port.Written().find("++++++++++") == std::string::npos ? -1 : b; });
    port.OnWrite("Ver\r", VerReply("KVR 2"), 0, true);
    port.OnWrite("\r", ">", 0, true);
    EXPECT_EQ(WakeInstrument(dialogue, 0, nullptr, nullptr), kWakeKvr);
    EXPECT_EQ(port.Written(), " ++++++++++\r\rVer\r");
    EXPECT_EQ(port.Breaks().size(), 1u);
}

TEST_F(WakeUpTest, ASilentLineGivesUpAfterEveryMeansWithinEightSeconds) {
    EXPECT_EQ(WakeAndReport(dialogue, nullptr), kWakeNoPrompt);
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"FAIL_TO_WAKE_UP_INSTRUMENT3"});
    // Rounds and sleeps that run in full on a silent line: 1500 + 200 + 1000 + 500 + 3000 ms,
    // then the 500 ms after the report; the drains and writes take no time here.
    EXPECT_EQ(port.NowMs(), 6200u + 500u);
    EXPECT_EQ(port.Written(), " ++++++++++\r");
}

TEST_F(WakeUpTest, AnSdi12BannerEndsTheWakeUpEvenWithAPrompt) {
    ScriptSleepingInstrument("SDI-12 sensor\r\n>", VerReply("KVR 2"));
    EXPECT_EQ(WakeAndReport(dialogue, nullptr), kWakeSdi12);
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(port.Written().find("Ver"), std::string::npos);
}

TEST_F(WakeUpTest, ALineThatCannotBeDrainedOrABreakThatCannotBeSentIsReported) {
    port.SetReadCostUs(20);
    port.Flood(0, 10, 100000000, 'x');
    EXPECT_EQ(WakeAndReport(dialogue, nullptr), kWakeCannotDrain);
    ScriptedPort noBreak;
    noBreak.FailBreak(kSerialIoError);
    PromptDialogue second(noBreak, prompt, "");
    EXPECT_EQ(WakeAndReport(second, nullptr), kWakeBreakFailed);
    EXPECT_EQ(prompt.messages,
              (std::vector<std::string>{"FAIL_TO_WAKE_UP_INSTRUMENT1", "FAIL_TO_WAKE_UP_INSTRUMENT2"}));
}

TEST_F(WakeUpTest, AVerThatCannotBeSentIsReported) {
    test::ScriptAwakeInstrument(port, VerReply("KVR 2"));
    port.SetEchoFilter([](uint8_t b) { return b == 'V' ? 'v' : b; });
    EXPECT_EQ(WakeAndReport(dialogue, nullptr), kWakeVerNotSent);
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"FAIL_TO_WAKE_UP_INSTRUMENT4"});
}

TEST_F(WakeUpTest, OnlyTheAnswerLineIsSearchedNeverTheBanner) {
    ScriptSleepingInstrument("KVR ZSN banner\r\n>", VerReply("Hello"));
    EXPECT_EQ(WakeAndReport(dialogue, nullptr), kWakeUnknownSystem);
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"FAIL_TO_WAKE_UP_INSTRUMENT5"});
}

TEST_F(WakeUpTest, ASkiffjackWithASilentSystemTypeCostsTheCommandAndTwoReads) {
    test::ScriptAwakeInstrument(port, VerReply("TLM 1"));
    EXPECT_EQ(WakeInstrument(dialogue, 0, nullptr, nullptr), kWakeSkiffjack);
    ScriptedPort kvr;
    test::ScriptAwakeInstrument(kvr, VerReply("KVR 1"));
    PromptDialogue kvrDialogue(kvr, prompt, "");
    WakeInstrument(kvrDialogue, 0, nullptr, nullptr);
    // Both end with the 300 ms read of the rest; the Skiffjack adds "systemtype" and its 500 ms
    // read, in which only the prompt comes.
    EXPECT_EQ(port.NowMs() - kvr.NowMs(), SendCommandTime("systemtype") + 500u);
}

// --- identification from the answer line

struct Identification {
    const char* answer;
    const char* systemType;  // answer to "systemtype", or nullptr for none
    int result;
    const char* message;     // shown by WakeAndReport, or "" for none
};

void PrintTo(const Identification& c, std::ostream* os) { *os << '"' << c.answer << '"'; }

class IdentificationTest : public WakeUpTest, public ::testing::WithParamInterface<Identification> {};

TEST_P(IdentificationTest, ResultAndReport) {
    const Identification& c = GetParam();
    if (c.systemType) port.OnWrite("systemtype\r", VerReply(c.systemType));
    test::ScriptAwakeInstrument(port, VerReply(c.answer));
    EXPECT_EQ(WakeAndReport(dialogue, nullptr), c.result);
    if (*c.message) {
        EXPECT_EQ(prompt.messages, std::vector<std::string>{c.message});
    } else {
        EXPECT_TRUE(prompt.messages.empty());
    }
    EXPECT_EQ(WakeResultIsKvr(c.result), c.result == 2 || c.result == 8);
}

INSTANTIATE_TEST_SUITE_P(
    Answers, IdentificationTest,
    ::testing::Values(Identification{"KVR 2 Ripple", nullptr, 2, ""},
                      Identification{"WQD 1", nullptr, 8, ""},
                      Identification{"ZSN6600 v3", nullptr, 10, ""},
                      Identification{"ZSN 2", nullptr, 3, "INSTRUMENT_IS_ZSN"},
                      Identification{"KVR with ZSN parts", nullptr, 2, ""},
                      Identification{"TLM 5", "Skiffjack 600", 4, "INSTRUMENT_IS_SKIFFJACK"},
                      Identification{"TLM 5", "ZSN", 6, ""},
                      Identification{"FlowMeter", nullptr, 5, ""},
                      Identification{"VNQ 9", nullptr, 7, ""},
                      Identification{"Hello", nullptr, -6, "FAIL_TO_WAKE_UP_INSTRUMENT5"},
                      Identification{"", nullptr, -6, "FAIL_TO_WAKE_UP_INSTRUMENT5"}));

TEST(WakeResultText, EveryResultHasItsWords) {
    EXPECT_EQ(WakeResultText(0), "Failed to Wake Up Instrument");
    EXPECT_EQ(WakeResultText(2), "KVR in standby mode");
    EXPECT_EQ(WakeResultText(3),
              "ZSN is conected to port\nPlease connect an KVR to this port for correct program operation");
    EXPECT_EQ(WakeResultText(4),
              "Skiffjack is conected to port\nPlease connect an KVR to this port for correct program "
              "operation");
    EXPECT_EQ(WakeResultText(8), "Hullstar in standby mode");
    for (int other : {-6, -5, -4, -3, -2, -1, 1, 5, 6, 7, 9, 10, 11}) {
        EXPECT_EQ(WakeResultText(other), "No Response from Instrument") << other;
    }
}

// --- the short version question

TEST_F(WakeUpTest, TheVersionQuestionKeepsTheFifthCharacterOfAKvrAnswerOnly) {
    test::ScriptAwakeInstrument(port, "\xE8KVR 7 Ripple\r\n>");
    uint8_t version = 0;
    EXPECT_EQ(ReadInstrumentVersion(dialogue, version), 1);
    EXPECT_EQ(version, static_cast<uint8_t>('7'));
    EXPECT_TRUE(prompt.messages.empty());

    ScriptedPort zsn, silent;
    test::ScriptAwakeInstrument(zsn, VerReply("ZSN 7"));
    for (ScriptedPort* line : {&zsn, &silent}) {
        PromptDialogue d(*line, prompt, "");
        version = 45;
        EXPECT_EQ(ReadInstrumentVersion(d, version), 0);
        EXPECT_EQ(version, 45);
    }
    // The silent line fails without a message of its own, after the dialogue's.
    EXPECT_EQ(prompt.messages, (std::vector<std::string>{"Error communicating with System", "FAIL TO LOCATE PROMPT"}));
}

}  // namespace
}  // namespace rm
