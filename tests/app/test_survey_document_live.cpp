// The live document against the simulated instrument on an in-process line with virtual time:
// collection and recording driven through the document, every profile processed as it arrives
// by the chain that processes a file, the bank profiles, lost frames and a restart of the
// numbering, a lost profile on the GPS track, the edge questions of the recording, pause and
// resume, a setting changed while live, the status texts and the close questions.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>

#include "app/settings_path.h"
#include "data/gps_velocity.h"
#include "document_test_support.h"
#include "link/prompt_dialogue.h"
#include "link/user_setup_retrieval.h"
#include "simulated_instrument_port.h"

namespace rm {
namespace {

using doctest::SimulatedGpsPort;
using doctest::SimulatedInstrumentFactory;
using doctest::SimulatedInstrumentPort;
using doctest::TestApp;

enum class Gps { None, Talking, Silent };

class LiveDocument : public ::testing::Test {
protected:
    // Reads the instrument's setup as the Collect command does and starts the collection.
    void Start(const sim::FrameFaults& faults = {}, Gps gps = Gps::None) {
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
        if (gps != Gps::None) {
            gpsPort = std::make_unique<SimulatedGpsPort>(factory->Line(), gps == Gps::Talking);
            link.GpsOn = true;
            link.GpsSource = kGpsSourceExternal;
            connection.gps = gpsPort.get();
        }
        connection.factory = factory.get();
        connection.instrument = &port;
        connection.link = &link;
        ASSERT_TRUE(doc.StartAcquisition(connection));
        EXPECT_EQ(doc.PlayState(), kStateRunning);
    }
    void Record(FileNaming naming = FileNaming::Plain) {
        DataFileNameRequest request;
        request.directory = t.folder.path();
        request.deploymentName = "LIVE";
        request.naming = naming;
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
    std::unique_ptr<SimulatedGpsPort> gpsPort;
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

TEST_F(LiveDocument, ALostProfileWithGpsStandsWhereTheStoredPositionPutsIt) {
    sim::FrameFaults faults;
    faults.badChecksumEvery = 4;  // profile 4 is lost, and the GPS still gave its fix
    Start(faults, Gps::Talking);
    Record();
    RunUntilProfile(4);
    const SlotResults& before = *doc.ResultsOf(3);
    const SlotResults& lost = *doc.ResultsOf(4);
    ASSERT_FALSE(lost.readOk);
    ASSERT_EQ(before.gpsStatus, kGpsGood);
    // The boat moves 1e-5 degree a second north and east from 45 N 7 E: with the earth radius
    // 6378137 - 45 x 237.611 m that is 1.11134 m/s north and 0.78583 m/s east. The lost point
    // moved on from profile 3's end fix by the time between that fix and the stored one.
    const GpsFix& stored = doc.Acquisition()->LastPosition();
    const double seconds = NmeaTimeToSeconds(stored.Time) - NmeaTimeToSeconds(before.gps.endTime);
    ASSERT_GT(seconds, 0.5);
    EXPECT_NEAR(lost.gpsTrackPoint.North - before.gpsTrackPoint.North, 1.11134 * seconds, 2e-4 * seconds);
    EXPECT_NEAR(lost.gpsTrackPoint.East - before.gpsTrackPoint.East, 0.78583 * seconds, 2e-4 * seconds);
    EXPECT_NEAR(lost.gpsTrackPoint.Distance - before.gpsTrackPoint.Distance, 1.36137 * seconds, 3e-4 * seconds);
    EXPECT_EQ(lost.gpsStatus, kGpsBad);
}

TEST_F(LiveDocument, ALostFirstProfileHasNoTrackOriginAndStaysAtTheStart) {
    sim::FrameFaults faults;
    faults.loseFrame = 1;  // the GPS gave a fix, but no profile has set the track's origin yet
    Start(faults, Gps::Talking);
    Record();
    RunUntilProfile(2);
    ASSERT_FALSE(doc.ResultsOf(1)->readOk);
    ASSERT_GE(doc.Acquisition()->LastPosition().Time, 0.0);
    const TrackPoint& point = doc.ResultsOf(1)->gpsTrackPoint;
    EXPECT_EQ(point.East, 0.0);
    EXPECT_EQ(point.North, 0.0);
    EXPECT_EQ(point.Distance, 0.0);
}

// The edge questions of a recording: one row a script of answers for the start and the end.
struct EdgeCase {
    const char* name;
    int askForEdgeDistances;
    std::vector<std::optional<EdgeDialogValues>> answers;
    std::vector<int> shownSides;  // the bank shown at each question, in order
    std::vector<std::string> messages;
    std::vector<std::pair<const char*, double>> keys;  // Discharge keys after the recording
    std::optional<float> leftDischarge;  // when the answers give it by hand
};

void PrintTo(const EdgeCase& row, std::ostream* out) { *out << row.name; }

class ScriptedEdges : public EdgeQuestion {
public:
    explicit ScriptedEdges(std::vector<std::optional<EdgeDialogValues>> answers) : answers_(std::move(answers)) {}
    std::optional<EdgeDialogValues> AskEdge(const EdgeDialogValues& question) override {
        shown.push_back(question);
        if (next_ >= answers_.size()) return std::nullopt;
        return answers_[next_++];
    }
    std::vector<EdgeDialogValues> shown;

private:
    std::vector<std::optional<EdgeDialogValues>> answers_;
    size_t next_ = 0;
};

EdgeDialogValues Edge(int side, int method, double field, double distance) {
    EdgeDialogValues v;
    v.side = side;
    v.method = method;
    v.fieldValue = field;
    v.measuredDistance = distance;
    return v;
}

const char* const kProfilesMessage =
    "Number of profiles used to calculate bank discharge must be greater than 0 and less than 1";

const EdgeCase kEdgeCases[] = {
    {"StartRightEndLeftByUserEstimate", 1,
     {Edge(1, 1, 2, 12.5), Edge(0, 0, 3.25, 7.0)},
     {0, 0},  // the start shows the start bank in force (left), the end the other bank of the answer
     {},
     {{"MeasuredStartBankSide", 1}, {"CorrectedStartBankSide", 1}, {"RightBankMethod", 1}, {"RightNumProfiles", 2},
      {"MeasuredRightDistance", 12.5}, {"CorrectedRightDistance", 12.5}, {"LeftBankMethod", 0},
      {"LeftUserEstimate", 3.25}, {"MeasuredLeftDistance", 7.0}, {"CorrectedLeftDistance", 7.0},
      {"LeftProfile", 8}, {"RightProfile", 1}},
     3.25f},  // a user estimate keeps its sign when the start bank is the right one
    {"FailingFieldIsAskedAgainAndCancelStoresNothing", 1,
     {Edge(0, 2, 0, 5.0), Edge(0, 2, 3, 5.0), std::nullopt},
     {0, 0, 1},
     {kProfilesMessage},
     {{"CorrectedStartBankSide", 0}, {"LeftNumProfiles", 3}, {"CorrectedLeftDistance", 5.0},
      {"CorrectedRightDistance", 0.0}, {"LeftProfile", 1}, {"RightProfile", 8}}},
    {"ThreeFailuresCountAsCancel", 1,
     {Edge(1, 1, 0.5, 5.0), Edge(1, 1, 0.5, 5.0), Edge(1, 1, 0.5, 5.0), std::nullopt},
     {0, 1, 1, 1},
     {kProfilesMessage, kProfilesMessage, kProfilesMessage},
     {{"CorrectedStartBankSide", 0}, {"RightBankMethod", 2}, {"CorrectedRightDistance", 0.0}}},
    {"NotAskedWhenTheSettingIsOff", 0, {Edge(1, 1, 2, 12.5)}, {}, {}, {{"CorrectedStartBankSide", 0}}},
};

class LiveEdgeQuestions : public LiveDocument, public ::testing::WithParamInterface<EdgeCase> {};

TEST_P(LiveEdgeQuestions, AnswersAreCheckedAndStoredAsTheDialogDoes) {
    const EdgeCase& c = GetParam();
    t.app.General().SetValue("AskForEdgeDistances", Variant(int32_t{c.askForEdgeDistances}));
    ScriptedEdges edges(c.answers);
    doc.SetEdgeQuestion(&edges);
    Start();
    Record();
    RunUntilProfile(8);
    doc.StopRecording();
    std::vector<int> sides;
    for (const EdgeDialogValues& shown : edges.shown) sides.push_back(shown.side);
    EXPECT_EQ(sides, c.shownSides);
    if (!edges.shown.empty()) {
        EXPECT_TRUE(edges.shown.front().atStart);
        EXPECT_FALSE(edges.shown.back().atStart);
    }
    EXPECT_EQ(t.prompt.messages, c.messages);
    const NodeRef discharge = DischargeNode(doc.Root());
    for (const auto& [key, value] : c.keys) EXPECT_EQ(discharge.GetTyped<double>(key, -1.0), value) << key;
    if (c.leftDischarge) {
        EXPECT_EQ(doc.Measurement().LeftDischarge, *c.leftDischarge);
    }
}

INSTANTIATE_TEST_SUITE_P(Recording, LiveEdgeQuestions, ::testing::ValuesIn(kEdgeCases),
                         [](const ::testing::TestParamInfo<EdgeCase>& row) { return row.param.name; });

TEST_F(LiveDocument, PauseEndsTheRecordingAndResumeRecordsANewFile) {
    Start();
    Record(FileNaming::Numbered);
    RunUntilProfile(5);
    int ticks = 0;
    RunUntil([&] { return ticks++ == 2; });  // half a second on: the count-down is under way
    ASSERT_LT(doc.Acquisition()->TickCounter(), 4);
    const std::string first = doc.Acquisition()->DataPath();
    doc.Pause();
    EXPECT_EQ(doc.PlayState(), kStatePaused);
    EXPECT_EQ(doc.Acquisition()->RunState(), kRunPaused);
    EXPECT_EQ(doc.StatusText(), " Playback paused");
    EXPECT_FALSE(doc.Transport().TimerRunning());
    RunUntil([] { return false; });  // ticks while paused take nothing
    EXPECT_EQ(doc.Acquisition()->ProfileCount(), 5);
    EXPECT_EQ(doc.Acquisition()->ProfilesWritten(), 5);

    doc.Pause();  // resume
    EXPECT_EQ(doc.PlayState(), kStateRecording);
    EXPECT_TRUE(doc.Transport().TimerRunning());
    EXPECT_EQ(doc.Transport().TimerPeriodMs(), 1000);
    EXPECT_EQ(doc.Acquisition()->TickCounter(), 4);  // a 1-s interval: four quarter seconds
    EXPECT_EQ(doc.Acquisition()->TickReload(), 4);
    const std::string second = doc.Acquisition()->DataPath();
    EXPECT_NE(second, first);
    RunUntilProfile(3);
    doc.StopRecording();
    EXPECT_EQ(doc.Acquisition()->ProfilesWritten(), 3);

    // The paused file was ended whole, with its .cfg; nothing was added to it after the pause.
    CSurveyKVRDoc file(t.app, t.prompt);
    ASSERT_EQ(file.OpenDocument(first), 1);
    EXPECT_EQ(file.FileProfileCount(), 5);
    EXPECT_TRUE(std::filesystem::exists(first.substr(0, first.size() - 4) + ".cfg"));
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
