// What the firmware offers (bottom track, waves, pulse-coherent mode), switching the mode with
// defaults and saving, and the ping settings commands.

#include "link/instrument_options.h"
#include "link/ping_settings.h"
#include "transfer_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

class OptionsTest : public test::TransferTest {};

TEST_F(OptionsTest, BottomTrackAnswersSetTheModeAndWavesMayBeCleared) {
    struct Case {
        const char* bt;
        uint8_t byte;
        int mode;
    };
    const Case cases[] = {{"Bottom Track Current: YES", 1, 1},
                          {"Bottom Track Current: SW_PING", 1, 2},
                          {"Bottom Track Current: OFF", 1, 0},
                          {"Unknown command", 0, 0}};
    for (const Case& c : cases) {
        ScriptedPort p;
        RecordingPrompt quiet;
        PromptDialogue d(p, quiet, "");
        p.OnWrite("bt\r", std::string("\r\n") + c.bt + "\r\n>");
        p.OnWrite("enablewaves\r", "\r\nWaves: NO\r\n>");
        test::ScriptAwakeInstrument(p, test::kKvrVerReply);
        UserSetup user;
        InstrumentLinkState s;
        s.WavesEnabled = 3;
        s.Waves.interval = 3;
        ASSERT_EQ(QueryOptions(d, user, s), 1) << c.bt;
        EXPECT_EQ(user.BottomTrack, c.byte) << c.bt;
        EXPECT_EQ(s.BottomTrackMode, c.mode) << c.bt;
        EXPECT_EQ(s.WavesEnabled, 0);
        EXPECT_FALSE(s.Waves.HasBursts());
    }
}

TEST_F(OptionsTest, ThePulseCoherentAnswerTellsAvailabilityAndState) {
    Answer("pm", "\r\nPCMode Current: YES\r\n>");
    Answer("pm", "\r\nERROR: PCMode not licensed\r\n>");
    Ready();
    UserSetup user;
    ASSERT_EQ(ReadPulseCoherentOption(dialogue, user, state), 1);
    EXPECT_TRUE(state.PCModeAvailable);
    EXPECT_EQ(state.PCMode, 1);
    EXPECT_EQ(user.PCMode, 1);
    ASSERT_EQ(ReadPulseCoherentOption(dialogue, user, state), 1);
    EXPECT_FALSE(state.PCModeAvailable);
    EXPECT_EQ(user.PCMode, 1);  // unavailable leaves the mode as it was
}

TEST_F(OptionsTest, AChangedModeWithDefaultsIsSentThenSaved) {
    Answer("pm no", "\r\nPCMode set to NO\r\nOK\r\n>");
    Answer("def", "\r\nDefaults restored\r\nOK\r\n>");
    Answer("savesetup", "\r\nSetup saved to flash\r\nOK\r\n>");
    Ready();
    OptionsChoice choice;
    choice.pcModeChanged = true;
    choice.pcModeOn = false;
    choice.restoreDefaults = true;
    EXPECT_EQ(ApplyInstrumentOptions(dialogue, choice), kOptionsSaved);
    EXPECT_EQ(Commands(), (std::vector<std::string>{"pm no", "def", "savesetup"}));
    EXPECT_EQ(prompt.progressTexts,
              (std::vector<std::string>{"Transmitting KVR Mode", "Default Settings", "Save Settings"}));
    EXPECT_TRUE(prompt.messages.empty());
}

TEST_F(OptionsTest, AStepWithoutOkEndsTheOptionsWithTheErrorAndNothingUnaskedIsSent) {
    Answer("pm yes", "\r\nPCMode refused, sorry\r\n>");
    Ready();
    OptionsChoice choice;
    choice.pcModeChanged = true;
    choice.pcModeOn = true;
    EXPECT_EQ(ApplyInstrumentOptions(dialogue, choice), kOptionsFailed);
    EXPECT_EQ(Commands(), std::vector<std::string>{"pm yes"});
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"Kvr Communication Error"});

    EXPECT_EQ(ApplyInstrumentOptions(dialogue, OptionsChoice{}), kOptionsNothingToSend);
    EXPECT_EQ(Commands().size(), 1u);
}

TEST_F(OptionsTest, PingSettingsGoOutWithTwoDecimalsAndAFailureDoesNotStopTheRest) {
    PingSettings s;
    s.pulseLength = 0.5;
    s.blankingDistance = 0.25;
    s.cellSize = 1.0;
    s.lag = 0.3;
    s.bottomPings = 4;
    const std::vector<std::string> sent = {"cbd set 0.25", "ccs set 1.00", "cpg set 0.30", "cpl set 0.50", "nbp 4"};
    for (const std::string& command : sent) Answer(command, command.rfind("ccs", 0) == 0 ? "\r\nERROR\r\n>" : "\r\nOK\r\n>");
    Answer("Get OPER", test::GetReply(test::OperImage()));
    Ready();
    EXPECT_EQ(TransmitPingSettings(dialogue, s, kvr), 0);
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"Set CCS command failed"});
    std::vector<std::string> expected = {"Ver"};
    expected.insert(expected.end(), sent.begin(), sent.end());
    expected.push_back("Get OPER");
    EXPECT_EQ(Commands(), expected);
    EXPECT_EQ(kvr.oper.size, 64);  // read back
}

}  // namespace
}  // namespace rm
