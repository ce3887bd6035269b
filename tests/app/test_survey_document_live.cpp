// The live document against the simulated instrument on an in-process line with virtual time:
// collection and recording driven through the document, every profile processed as it arrives
// by the chain that processes a file, the bank profiles, lost frames and a restart of the
// numbering, a setting changed while live, the status texts and the close questions.

#include <gtest/gtest.h>

#include <memory>

#include "app/settings_path.h"
#include "document_test_support.h"
#include "link/prompt_dialogue.h"
#include "link/user_setup_retrieval.h"
#include "simulated_instrument_port.h"

namespace rm {
namespace {

using doctest::SimulatedInstrumentFactory;
using doctest::SimulatedInstrumentPort;
using doctest::TestApp;

class LiveDocument : public ::testing::Test {
protected:
    // Reads the instrument's setup as the Collect command does and starts the collection.
    void Start(const sim::FrameFaults& faults = {}) {
        sim::InstrumentBehaviour behaviour;
        behaviour.faults = faults;
        instrument = std::make_unique<sim::SimulatedInstrument>(sim::RiverScenario{}, behaviour);
        factory = std::make_unique<SimulatedInstrumentFactory>(*instrument);
        port.PortPath = "simulated";
        ASSERT_EQ(ReopenPortRecord(*factory, port), 1);
        {
            PromptDialogue dialogue(*port.Port, t.prompt, "");
            ASSERT_EQ(RetrieveUserSetup(dialogue, doc.Data(), link), kRetrievalDone);
        }
        connection.factory = factory.get();
        connection.instrument = &port;
        connection.link = &link;
        ASSERT_TRUE(doc.StartAcquisition(connection));
        EXPECT_EQ(doc.PlayState(), kStateRunning);
    }
    void Record() {
        DataFileNameRequest request;
        request.directory = t.folder.path();
        request.deploymentName = "LIVE";
        ASSERT_TRUE(doc.ToggleRecord(request));
    }
    // Runs 250 ms ticks until `done` (at most a minute of them).
    template <typename Done>
    void RunUntil(Done done) {
        for (int tick = 0; tick < 240 && !done(); ++tick) {
            doc.OnAcquisitionTick();
            static_cast<SimulatedInstrumentPort&>(*port.Port).AdvanceMs(250);
        }
    }
    void RunUntilProfile(int count) {
        RunUntil([&] { return doc.Acquisition()->ProfileCount() >= count; });
        ASSERT_EQ(doc.Acquisition()->ProfileCount(), count);
    }
    int32_t DischargeKey(const char* key) const {
        return DischargeNode(doc.Root()).GetTyped<int32_t>(key, -1);
    }

    TestApp t;
    CSurveyKVRDoc doc{t.app, t.prompt, kModeLive};
    std::unique_ptr<sim::SimulatedInstrument> instrument;
    std::unique_ptr<SimulatedInstrumentFactory> factory;
    SerialPortRecord port;
    InstrumentLinkState link;
    LiveConnection connection;
};

TEST_F(LiveDocument, ProfilesProcessedAsTheyComeGiveTheNumbersOfTheFinishedFile) {
    EXPECT_EQ(doc.StatusText(), "");  // no port yet
    Start();
    EXPECT_EQ(doc.StatusText(), " Kvr ready to record data");
    EXPECT_TRUE(doc.Transport().TimerRunning());
    EXPECT_EQ(doc.Transport().TimerPeriodMs(), 250);
    EXPECT_EQ(doc.CountDownText(), "   1");  // (4 - 1) / 4 x 1 s + 1, truncated
    EXPECT_EQ(DischargeKey("LeftProfile"), 0);
    EXPECT_EQ(DischargeKey("RightProfile"), 0);
    RunUntilProfile(3);  // profiles before the recording are shown, not kept

    Record();
    EXPECT_EQ(doc.StatusText(), " Recording data to file");
    RunUntilProfile(20);
    // Started from the left bank: the last profile taken is the right bank's.
    EXPECT_EQ(DischargeKey("LeftProfile"), 1);
    EXPECT_EQ(DischargeKey("RightProfile"), 20);
    doc.StopRecording();
    EXPECT_EQ(doc.StatusText(), " Kvr ready to record data");
    const int written = doc.Acquisition()->ProfilesWritten();
    ASSERT_EQ(written, 20);
    doc.StopAcquisition();
    EXPECT_EQ(doc.StatusText(), " Kvr on standby");
    EXPECT_FALSE(doc.Transport().TimerRunning());
    EXPECT_EQ(instrument->CurrentMode(), sim::SimulatedInstrument::Mode::Prompt);

    // The recording read back and processed in full gives the same numbers, bit for bit: one
    // chain, and the same records in the same order.
    CSurveyKVRDoc file(t.app, t.prompt);
    ASSERT_EQ(file.OpenDocument(t.folder.File("LIVE.kvr")), 1);
    ASSERT_TRUE(file.Recompute());
    const CDischargeData& live = doc.Measurement();
    const CDischargeData& played = file.Measurement();
    ASSERT_GT(played.MiddleDischarge, 1.0f);
    EXPECT_EQ(live.ProfileCount, played.ProfileCount);
    EXPECT_EQ(live.MiddleDischarge, played.MiddleDischarge);
    EXPECT_EQ(live.TopDischarge, played.TopDischarge);
    EXPECT_EQ(live.BottomDischarge, played.BottomDischarge);
    EXPECT_EQ(live.TotalDischarge, played.TotalDischarge);
    EXPECT_EQ(live.MadeGood, played.MadeGood);
    for (int item = 1; item <= written; ++item) {
        EXPECT_EQ(doc.ResultsOf(item)->processed.TotalQ, file.ResultsOf(item)->processed.TotalQ) << item;
        EXPECT_EQ(doc.ResultsOf(item)->bottomTrackPoint.East, file.ResultsOf(item)->bottomTrackPoint.East) << item;
    }
}

TEST_F(LiveDocument, ALostFrameHoldsTheTrackAndARestartOfTheNumberingStartsTheTablesAgain) {
    sim::FrameFaults faults;
    faults.loseFrame = 3;
    faults.restartNumberingAt = 6;
    Start(faults);
    Record();
    RunUntilProfile(4);  // frame 3 never came: the count jumped over it
    const SlotResults& lost = *doc.ResultsOf(3);
    EXPECT_FALSE(lost.readOk);
    EXPECT_EQ(lost.processed.TotalQ, 0.0f);
    EXPECT_EQ(lost.bottomTrackPoint.East, doc.ResultsOf(2)->bottomTrackPoint.East);
    EXPECT_TRUE(doc.ResultsOf(4)->readOk);

    // Frame 6 comes numbered 1: the sums and the track start again from it.
    RunUntil([&] { return doc.Acquisition()->Renumberings() > 0; });
    EXPECT_EQ(doc.Acquisition()->ProfileCount(), 1);
    RunUntilProfile(2);
    EXPECT_EQ(doc.Running().count, 2);
    EXPECT_EQ(doc.Running().dischargeSums.bottomCount, 2);
    EXPECT_EQ(doc.Measurement().ProfileCount, 2);
    EXPECT_EQ(DischargeKey("RightProfile"), 2);
}

TEST_F(LiveDocument, ASettingChangedWhileLiveReprocessesTheRingOnly) {
    Start();
    Record();
    RunUntilProfile(10);
    const float total = doc.Measurement().TotalDischarge;
    ASSERT_TRUE(AssignSetting(doc.Root(), "Discharge/ProfileExtrapolation/TopFitType=0").ok);
    doc.SettingsChanged();
    EXPECT_EQ(doc.Settings().TopFitType, 0);
    EXPECT_EQ(doc.Measurement().TotalDischarge, total);  // the sums are not run again
    EXPECT_EQ(doc.Running().count, 10);
    RunUntilProfile(11);  // and the next profile goes on from them
    EXPECT_NE(doc.Measurement().TotalDischarge, total);
}

TEST_F(LiveDocument, ClosingWhileCollectingAsksAndNoKeepsCollecting) {
    EXPECT_TRUE(doc.CanExitApplication());  // nothing runs: no question
    Start();
    Record();
    t.prompt.answerYes = false;
    EXPECT_FALSE(doc.CanExitApplication());
    EXPECT_FALSE(doc.OnCloseDocument());
    EXPECT_EQ(t.prompt.questions,
              (std::vector<std::string>{"Data Collection in Progress.\nStop Data Collection?", "Stop Data Collection?"}));
    EXPECT_EQ(doc.PlayState(), kStateRecording);
    doc.Stop();  // not offered while recording
    EXPECT_EQ(doc.PlayState(), kStateRecording);

    t.prompt.answerYes = true;
    EXPECT_TRUE(doc.CanExitApplication());
    EXPECT_EQ(doc.PlayState(), kStateStopped);
    EXPECT_EQ(instrument->CurrentMode(), sim::SimulatedInstrument::Mode::Prompt);
    EXPECT_TRUE(doc.OnCloseDocument());
}

}  // namespace
}  // namespace rm
