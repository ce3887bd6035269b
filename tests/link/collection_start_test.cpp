// Binary output, the start command in and out of pulse-coherent mode, and the whole sequence
// behind Collect Data on a scripted port handed out by the factory.

#include "link/collection_start.h"
#include "link/prepare_collection.h"
#include "link/variable_structure.h"
#include "transfer_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

using test::GetReply;

class CollectionStartTest : public test::TransferTest {};

TEST_F(CollectionStartTest, InPulseCoherentModeTheBannerUpToUIsPassedFirst) {
    Answer("OF Binary", "\r\nOK\r\n>", true);
    Answer("Setup", "\r\nPC mode OK U\r\nSetup OK\r\n>");
    Answer("Setup", "\r\nPC mode OK U\r\n>");
    Ready();
    EXPECT_EQ(SetBinaryOutput(dialogue, true), 1);
    // The "OK" of the banner does not count: without a confirmation after the 'U' it fails.
    EXPECT_EQ(SetBinaryOutput(dialogue, true), 0);
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"Failed to start Kvr. Please try again."});
}

TEST_F(CollectionStartTest, BinaryOutputNeverAnsweredFailsWithTheStartMessage) {
    Answer("OF Binary", "");  // echoed, then nothing
    Ready();
    EXPECT_EQ(SetBinaryOutput(dialogue, false), 0);
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"Failed to start Kvr. Please try again."});
}

TEST_F(CollectionStartTest, AnErrorOrSilenceOpensTheStartErrorBoxWithWhatTheInstrumentSent) {
    Answer("Start", "\r\nERROR: ping time exceeds interval\r\n>");
    Answer("Start", "");  // echoed, then nothing
    Ready();
    EXPECT_EQ(StartCollection(dialogue, false), 0);
    EXPECT_EQ(StartCollection(dialogue, false), 0);
    EXPECT_EQ(prompt.titles, std::vector<std::string>(2, "Start Data Collection Error"));
    EXPECT_EQ(prompt.messages, (std::vector<std::string>{
                                   std::string(kStartErrorText) + "\r\nERROR: ping time exceeds interval\r\n>",
                                   "Failed to start Kvr."}));
}

TEST_F(CollectionStartTest, PulseCoherentStartReadsLines) {
    Answer("Start", "\r\nPulse coherent start\r\nOK\r\n");
    Answer("Start", "\r\nERROR averaging\r\n>");
    Ready();
    EXPECT_EQ(StartCollection(dialogue, true), 1);
    EXPECT_EQ(StartCollection(dialogue, true), 0);
    EXPECT_EQ(prompt.messages, std::vector<std::string>{
                                   "Averaging interval is too short.\nIncrease averaging interval or reduce profiling range"});
}

class PrepareCollectionTest : public ::testing::Test {
protected:
    PrepareCollectionTest() {
        record.PortPath = "/dev/ttyUSB1";
        record.PortIndex = 1;
        instrument = factory.MakePort("/dev/ttyUSB1").release();
        factory.Provide("/dev/ttyUSB1", std::unique_ptr<ScriptedPort>(instrument));
    }
    void Answer(const std::string& command, const std::string& reply) {
        instrument->OnWrite(command + "\r", reply);
    }
    // The answers of a Collect Data dialogue up to "Get CONF"; an empty user or start reply
    // leaves that command unanswered.
    void Script(const std::string& conf, const std::string& user, const std::string& start) {
        Answer("OF Binary", "\r\nOK\r\n>");
        Answer("Setup", "\r\nOK\r\n>");
        Answer("Get CONF", GetReply(conf));
        if (!user.empty()) Answer("Get USER", GetReply(user));
        if (!start.empty()) Answer("Start", start);
        test::ScriptAwakeInstrument(*instrument, test::kKvrVerReply);
    }
    int Prepare() { return PrepareCollection(factory, record, prompt, kvr, state, dir.File("LogFile")); }

    test::ScratchDir dir;
    ScriptedPortFactory factory;
    ScriptedPort* instrument;  // owned by the factory, then by the record
    SerialPortRecord record;
    RecordingPrompt prompt;
    CKvrData kvr;
    InstrumentLinkState state;
};

TEST_F(PrepareCollectionTest, TheWholeSequenceStartsTheInstrumentWithTheFrameSizeOfItsSetup) {
    test::ConfSpec conf;
    conf.beams = 3;
    conf.ctd = 1;
    test::UserSpec user;
    user.cells = 10;
    user.bottomTrack = 1;
    Script(test::ConfImage(conf), test::UserImage(user), "\r\nOK\r\n");
    EXPECT_EQ(Prepare(), kPrepareStarted);
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(prompt.progressTexts,
              (std::vector<std::string>{"Finding KVR on COM2", "Waking up KVR", "Initialize Recorder",
                                        "Setup KVR for Data Collection", "Verify KVR Settings",
                                        "Initializing Data Buffer", "Start Data Collection"}));
    // 80 + bottom track 18 + CTD 16 + 10 cells x 3 beams x 4 + 2
    EXPECT_EQ(state.Sizes.ProfileSize, 236);
    EXPECT_EQ(state.BottomTrackMode, 1);
    EXPECT_EQ(kvr.conf.CPUSoftwareVerNum, 170);  // the record's, not the version line's
    ASSERT_TRUE(record.Port);
}

TEST_F(PrepareCollectionTest, AnUpLookingSystemIsRefused) {
    test::ConfSpec conf;
    conf.orientation = 1;
    Script(test::ConfImage(conf), "", "");
    EXPECT_EQ(Prepare(), kPrepareFailed);
    EXPECT_EQ(prompt.messages,
              std::vector<std::string>{"Quorle Ripplemark will only operate with DOWN looking systems"});
    EXPECT_EQ(instrument->Written().find("Get USER"), std::string::npos);
}

TEST_F(PrepareCollectionTest, AnInstrumentThatRefusesBinaryOutputIsNeitherAskedFurtherNorStarted) {
    Answer("OF Binary", "\r\nERROR: Unknown output format\r\n>");
    Answer("Start", "\r\nOK\r\n");
    test::ScriptAwakeInstrument(*instrument, test::kKvrVerReply);
    EXPECT_EQ(Prepare(), kPrepareFailed);
    EXPECT_EQ(prompt.messages,
              (std::vector<std::string>{"Error on Setup Kvr For Data Collection", "Error setting up KVR"}));
    EXPECT_EQ(prompt.progressTexts.back(), "Setup KVR for Data Collection");
    EXPECT_EQ(instrument->Written().find("Get CONF"), std::string::npos);
    EXPECT_EQ(instrument->Written().find("Start"), std::string::npos);
}

TEST_F(PrepareCollectionTest, AFailedStartGivesMinusOne) {
    Script(test::ConfImage({}), test::UserImage({}), "\r\nERROR\r\n>");
    EXPECT_EQ(Prepare(), kPrepareStartFailed);
    ASSERT_FALSE(prompt.messages.empty());
    EXPECT_EQ(prompt.messages.back(), "Error during data acquisition");
}

}  // namespace
}  // namespace rm
