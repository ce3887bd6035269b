// The finding dialog's search: its three lines, the port it opens, and the order in which a
// search over several candidate ports goes.

#include "link/instrument_finder.h"
#include "link/scripted_port.h"
#include "link/wake_up.h"
#include "link_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

using test::VerReply;

class FinderTest : public ::testing::Test {
protected:
    // Provides an awake instrument answering `answer` at `path`.
    void ProvideInstrument(const std::string& path, const std::string& answer) {
        auto port = factory.MakePort(path);
        test::ScriptAwakeInstrument(*port, VerReply(answer));
        factory.Provide(path, std::move(port));
    }

    test::ScratchDir dir;
    ScriptedPortFactory factory;
    SerialPortRecord record;
    RecordingPrompt prompt;
    FindingLines lines;
    std::string log = dir.File("LogFile");
};

TEST_F(FinderTest, AKvrIsFoundAndTheDialogCloses) {
    ProvideInstrument("/dev/ttyUSB0", "KVR 2");
    record.PortIndex = 0;
    record.BaudRate = 19200;
    FindOutcome o = FindInstrument(factory, record, prompt, lines, log);
    EXPECT_TRUE(o.success);
    EXPECT_EQ(o.wakeResult, kWakeKvr);
    EXPECT_EQ(std::vector<std::string>(lines.lines.begin(), lines.lines.end()),
              (std::vector<std::string>{"Finding KVR on /dev/ttyUSB0",
                                        "Opening /dev/ttyUSB0\nCommunications Parameters set", "KVR in standby mode"}));
    ASSERT_NE(record.Port, nullptr);
    EXPECT_TRUE(record.Port->IsOpen());
    ASSERT_EQ(factory.Opens().size(), 1u);
    EXPECT_EQ(test::OpenText(factory.Opens()[0]), "/dev/ttyUSB0 19200 N 8 1 8192 8192");
    EXPECT_TRUE(prompt.messages.empty());
}

TEST_F(FinderTest, AMissingPortEndsTheSearchOnTheSecondLine) {
    record.PortIndex = 3;
    FindOutcome o = FindInstrument(factory, record, prompt, lines, log);
    EXPECT_EQ(o.openResult, 0);
    EXPECT_FALSE(o.woken);
    EXPECT_FALSE(o.success);
    EXPECT_EQ(lines.history, (std::vector<std::string>{"Finding KVR on /dev/ttyUSB3",
                                                       "Cannot locate KVR on /dev/ttyUSB3"}));
    EXPECT_EQ(record.Port, nullptr);
}

TEST_F(FinderTest, ASiblingFamilyStaysOnScreenWithItsMessageAndOtherResultsLeaveTheThirdLine) {
    ProvideInstrument("/dev/ttyUSB0", "TLM 3");
    ProvideInstrument("/dev/ttyUSB1", "FlowMeter");
    record.PortIndex = 0;
    FindOutcome o = FindInstrument(factory, record, prompt, lines, log);
    EXPECT_FALSE(o.success);
    EXPECT_EQ(o.wakeResult, kWakeSkiffjack);
    EXPECT_EQ(lines.lines[2], WakeResultText(kWakeSkiffjack));
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"INSTRUMENT_IS_SKIFFJACK"});

    record.PortIndex = 1;
    lines.lines[2] = "before";
    o = FindInstrument(factory, record, prompt, lines, log);
    EXPECT_EQ(o.wakeResult, kWakeFlow);
    EXPECT_FALSE(o.success);
    EXPECT_EQ(lines.lines[2], "before");
    EXPECT_NE(record.Port, nullptr);  // the port stays open in every outcome of the wake-up
}

TEST_F(FinderTest, CandidatesAreTriedInOrderUntilOneAnswers) {
    factory.SetOpenStatus("/dev/b", kSerialOk);  // opens, but nothing answers
    ProvideInstrument("/dev/c", "KVR 2");
    ProvideInstrument("/dev/d", "KVR 2");
    record.PortPath = "/dev/orig";
    record.BaudRate = 9600;
    std::vector<PortCandidate> candidates = {
        {"/dev/a", 9600}, {"/dev/b", 9600}, {"/dev/c", 115200}, {"/dev/d", 9600}};
    FindOutcome o = FindInstrumentOnPorts(factory, record, candidates, prompt, lines, log);
    EXPECT_TRUE(o.success);
    EXPECT_EQ(lines.history,
              (std::vector<std::string>{"Finding KVR on /dev/a", "Cannot locate KVR on /dev/a",
                                        "Finding KVR on /dev/b",
                                        "Opening /dev/b\nCommunications Parameters set",
                                        "Finding KVR on /dev/c",
                                        "Opening /dev/c\nCommunications Parameters set",
                                        "KVR in standby mode"}));
    ASSERT_EQ(factory.Opens().size(), 3u);
    EXPECT_EQ(factory.Opens()[2].baud, 115200);
    EXPECT_EQ(record.PortPath, "/dev/c");
    EXPECT_EQ(record.BaudRate, 115200);
    EXPECT_NE(record.Port, nullptr);
    EXPECT_TRUE(prompt.messages.empty());  // the silent port on the way is not reported
}

TEST_F(FinderTest, ASiblingFamilyEndsTheSearchWithItsMessage) {
    ProvideInstrument("/dev/a", "ZSN 1");
    ProvideInstrument("/dev/b", "KVR 2");
    record.BaudRate = 9600;
    FindOutcome o = FindInstrumentOnPorts(factory, record, {{"/dev/a", 9600}, {"/dev/b", 9600}},
                                          prompt, lines, log);
    EXPECT_FALSE(o.success);
    EXPECT_EQ(o.wakeResult, kWakeZsn);
    EXPECT_EQ(factory.Opens().size(), 1u);
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"INSTRUMENT_IS_ZSN"});
}

TEST_F(FinderTest, ASearchThatFindsNothingRestoresTheRecord) {
    record.PortPath = "/dev/orig";
    record.BaudRate = 4800;
    FindOutcome o = FindInstrumentOnPorts(factory, record, {{"/dev/a", 9600}, {"/dev/b", 19200}},
                                          prompt, lines, log);
    EXPECT_FALSE(o.success);
    EXPECT_EQ(record.PortPath, "/dev/orig");
    EXPECT_EQ(record.BaudRate, 4800);
    EXPECT_EQ(record.Port, nullptr);
}

}  // namespace
}  // namespace rm
