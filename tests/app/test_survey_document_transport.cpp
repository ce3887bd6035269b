// The transport of a playback document: play, pause, stop and the moves with their status texts
// and timer, the playback tick, what a move reads from the file, and a read error in mid-file.

#include <gtest/gtest.h>

#include "document_test_support.h"

namespace rm {
namespace {

using doctest::RecordRiver;
using doctest::TestApp;
using doctest::WithFailingProfiles;
using doctest::WithWindow;

class Transport : public ::testing::Test {
protected:
    void SetUp() override { RecordRiver(path, 30); }

    TestApp t;
    std::string path = t.folder.File("PLAY.kvr");
};

TEST_F(Transport, PlayPauseAndStopMoveThroughTheStatesWithTheirTexts) {
    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    EXPECT_EQ(doc.StatusText(), " Kvr playback stopped");
    EXPECT_FALSE(doc.Transport().TimerRunning());

    doc.Play();
    EXPECT_EQ(doc.PlayState(), kStateRunning);
    EXPECT_EQ(doc.StatusText(), " Playing back existing data set");
    EXPECT_TRUE(doc.Transport().TimerRunning());
    EXPECT_EQ(doc.Transport().TimerPeriodMs(), 2000);  // speed 3 at start

    doc.Pause();
    EXPECT_EQ(doc.StatusText(), " Playback paused");
    EXPECT_FALSE(doc.Transport().TimerRunning());
    doc.Pause();  // a second press resumes
    EXPECT_EQ(doc.PlayState(), kStateRunning);
    EXPECT_TRUE(doc.Transport().TimerRunning());

    doc.Stop();
    EXPECT_EQ(doc.StatusText(), " Kvr playback stopped");
    EXPECT_FALSE(doc.Transport().TimerRunning());
}

TEST_F(Transport, LiveDocumentStatusTexts) {
    CSurveyKVRDoc live(t.app, t.prompt, kModeLive);
    EXPECT_EQ(live.StatusText(), " Kvr on standby");
    live.Play();
    EXPECT_EQ(live.StatusText(), " Kvr ready to record data");
    EXPECT_EQ(live.Transport().TimerPeriodMs(), 1000);
    // Closing while collecting asks; No keeps the document.
    t.prompt.answerYes = false;
    EXPECT_FALSE(live.OnCloseDocument());
    EXPECT_EQ(t.prompt.questions, std::vector<std::string>{"Stop Data Collection?"});
    EXPECT_EQ(live.PlayState(), kStateRunning);
    t.prompt.answerYes = true;
    EXPECT_TRUE(live.OnCloseDocument());
    EXPECT_EQ(live.PlayState(), kStateStopped);
}

TEST_F(Transport, SpeedSetsThePeriodAndRestartsARunningTimer) {
    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    doc.SetSpeed(5);
    EXPECT_FALSE(doc.Transport().TimerRunning());  // a stopped playback starts no timer
    EXPECT_EQ(doc.Transport().SpeedPeriodMs(), 500);
    doc.Play();
    doc.SetSpeed(1);
    EXPECT_TRUE(doc.Transport().TimerRunning());
    EXPECT_EQ(doc.Transport().TimerPeriodMs(), 8000);
    doc.SetSpeed(99);
    EXPECT_EQ(doc.Transport().Speed(), 7);
    EXPECT_EQ(doc.Transport().TimerPeriodMs(), 125);
}

TEST_F(Transport, TicksPlayOnToTheLastProfileAndNoFurther) {
    CSurveyKVRDoc doc(t.app, t.prompt, kModePlayback, WithWindow(10));
    ASSERT_EQ(doc.OpenDocument(path), 1);
    ASSERT_EQ(doc.CurrentProfile(), 10);
    doc.PlaybackTick();  // not running: nothing moves
    EXPECT_EQ(doc.CurrentProfile(), 10);
    doc.Play();
    for (int i = 0; i < 25; ++i) doc.PlaybackTick();
    EXPECT_EQ(doc.CurrentProfile(), 30);
    EXPECT_EQ(doc.WindowStart(), 21);
    EXPECT_EQ(doc.Source().RecordReads(), 30);
    EXPECT_EQ(doc.Measurement().ProfileCount, 30);
}

TEST_F(Transport, StepsAndMovesKeepOrSetTheStateAsTheCommandsSay) {
    CSurveyKVRDoc doc(t.app, t.prompt, kModePlayback, WithWindow(10));
    ASSERT_EQ(doc.OpenDocument(path), 1);
    doc.Play();
    doc.ForwardTo(15);
    EXPECT_EQ(doc.PlayState(), kStateRunning);
    EXPECT_EQ(doc.Transport().TickCounter(), 1);
    EXPECT_EQ(doc.Transport().TickReload(), 1);
    doc.StepForward();
    EXPECT_EQ(doc.PlayState(), kStateStopped);
    EXPECT_EQ(doc.CurrentProfile(), 16);
    doc.StepBackward();
    EXPECT_EQ(doc.CurrentProfile(), 15);
    doc.FullForward();
    EXPECT_EQ(doc.CurrentProfile(), 30);
    doc.FullRewind();
    EXPECT_EQ(doc.CurrentProfile(), 1);
    doc.StepBackward();  // never before the first
    EXPECT_EQ(doc.CurrentProfile(), 1);
}

TEST_F(Transport, RewindInsideTheWindowReadsNothingAndBeforeItRebuildsFromTheStart) {
    CSurveyKVRDoc doc(t.app, t.prompt, kModePlayback, WithWindow(10));
    ASSERT_EQ(doc.OpenDocument(path), 1);
    doc.ForwardTo(25);
    ASSERT_EQ(doc.Source().RecordReads(), 25);
    const float total = doc.Measurement().TotalDischarge;

    doc.RewindTo(18);
    EXPECT_EQ(doc.CurrentProfile(), 18);
    EXPECT_EQ(doc.Source().RecordReads(), 25);
    EXPECT_EQ(doc.Measurement().TotalDischarge, total);

    // Profile 5 left the window: the window is built again from profile 1 up to it.
    doc.RewindTo(5);
    EXPECT_EQ(doc.CurrentProfile(), 5);
    EXPECT_EQ(doc.Source().RecordReads(), 30);
    EXPECT_EQ(doc.WindowStart(), 1);
    EXPECT_EQ(doc.WindowEnd(), 5);
    EXPECT_EQ(doc.Measurement().ProfileCount, 5);
}

TEST_F(Transport, AReadErrorInMidFileStopsAtTheLastGoodProfilePaused) {
    CSurveyKVRDoc doc(t.app, t.prompt, kModePlayback, WithFailingProfiles({16}, 10));
    ASSERT_EQ(doc.OpenDocument(path), 1);
    doc.Play();
    for (int i = 0; i < 20; ++i) doc.PlaybackTick();
    EXPECT_EQ(doc.CurrentProfile(), 16);
    EXPECT_EQ(doc.PlayState(), kStatePaused);
    EXPECT_FALSE(doc.Transport().TimerRunning());
    EXPECT_EQ(t.prompt.messages, std::vector<std::string>{"Incorrect file format"});
    EXPECT_EQ(doc.Measurement().ProfileCount, 16);
}

TEST_F(Transport, AReadErrorInTheFirstWindowHasItsOwnMessage) {
    CSurveyKVRDoc doc(t.app, t.prompt, kModePlayback, WithFailingProfiles({4}, 10));
    ASSERT_EQ(doc.OpenDocument(path), 1);
    EXPECT_EQ(t.prompt.messages, std::vector<std::string>{"KVR DataFile: Incorrect file format"});
    EXPECT_EQ(doc.CurrentProfile(), 4);
    EXPECT_EQ(doc.WindowEnd(), 4);
    EXPECT_EQ(doc.PlayState(), kStatePaused);
}

}  // namespace
}  // namespace rm
