// The instrument's own GPS receiver: the switch sequence and the declination read through the
// instrument's line, against a scripted instrument that echoes and prompts.

#include <gtest/gtest.h>

#include <string>

#include "link/internal_gps.h"
#include "link/scripted_port.h"
#include "link_test_support.h"

namespace rm {
namespace {

using test::TextWindow;

// An instrument at its prompt: echoes what it gets, answers each carriage return with the
// prompt. Rules given before this one take precedence.
void AddPromptAnswer(ScriptedPort& port) {
    port.SetEcho(true, 1);
    port.OnWrite("\r", ">", 5, true);
}

TEST(SetInternalGps, SwitchesThenSavesWithALineForEachStepUntilOneFails) {
    ScriptedPort port;
    port.OnWrite("GPS yes\r", "\r\nOK\r\n>", 20);
    port.OnWrite("SaveSetup\r", "\r\nSetup saved OK\r\n>", 20);
    port.OnWrite("GPS no\r", "\r\nERROR\r\n>", 20);
    AddPromptAnswer(port);
    RecordingPrompt prompt;
    PromptDialogue dialogue(port, prompt, "");
    TextWindow window;

    EXPECT_EQ(SetInternalGps(dialogue, true, &window), 1);
    EXPECT_EQ(window.text, std::string("Enable Internal GPS............ Success\r\n") +
                               "Save Setup..................... Success\r\n");
    EXPECT_LT(port.Written().find("GPS yes\r"), port.Written().find("SaveSetup\r"));
    EXPECT_TRUE(prompt.messages.empty());

    // The first failed step ends the sequence.
    window.text.clear();
    const size_t before = port.Written().size();
    EXPECT_EQ(SetInternalGps(dialogue, false, &window), 0);
    EXPECT_EQ(window.text, "Enable Internal GPS............ Failed\r\n");
    EXPECT_NE(port.Written().find("GPS no\r", before), std::string::npos);
    EXPECT_EQ(port.Written().find("SaveSetup", before), std::string::npos);
}

TEST(ReadInternalDeclination, WakesAsksForGpsOutputAndReadsTheRmc) {
    ScriptedPort port;
    port.OnWrite(" ", ">", 5);  // awake at once
    port.OnWrite("Ver\r", "\r\nKVR 1000 kHz ver 5.6\r\n>", 20);
    // Half a second after "echo 1" the instrument repeats its receiver's sentences.
    port.OnWrite("echo 1\r",
                 "\r\n>\r\n$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,002.5,E*6A\r\n", 500);
    AddPromptAnswer(port);
    RecordingPrompt prompt;
    PromptDialogue dialogue(port, prompt, "");
    double degrees = 0.0;
    ASSERT_EQ(ReadInternalDeclination(dialogue, kDeclinationLimitMs, degrees), 1);
    EXPECT_DOUBLE_EQ(degrees, 2.5);
    EXPECT_NE(port.Written().find("echo 1\r"), std::string::npos);
}

TEST(ReadInternalDeclination, SilentInstrumentGivesNothingAndSendsNoEcho) {
    ScriptedPort port;
    RecordingPrompt prompt;
    PromptDialogue dialogue(port, prompt, "");
    double degrees = 9.0;
    EXPECT_EQ(ReadInternalDeclination(dialogue, kDeclinationLimitMs, degrees), 0);
    EXPECT_EQ(degrees, 9.0);
    EXPECT_EQ(port.Written().find("echo 1"), std::string::npos);
}

}  // namespace
}  // namespace rm
