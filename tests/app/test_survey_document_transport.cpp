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

TEST_F(Transport, PlayPauseStopAndSpeedSetTheStateTextAndTimer) {
    CSurveyKVRDoc doc(t.app, t.prompt);
    ASSERT_EQ(doc.OpenDocument(path), 1);
    const auto expect = [&](int state, const char* text, bool timer, const char* step) {
        EXPECT_EQ(doc.PlayState(), state) << step;
        EXPECT_EQ(doc.StatusText(), text) << step;
        EXPECT_EQ(doc.Transport().TimerRunning(), timer) << step;
    };
    expect(kStateStopped, " Kvr playback stopped", false, "opened");
    doc.SetSpeed(5);  // a stopped playback starts no timer
    expect(kStateStopped, " Kvr playback stopped", false, "speed");
    EXPECT_EQ(doc.Transport().SpeedPeriodMs(), 500);
    doc.SetSpeed(3);
    doc.Play();
    expect(kStateRunning, " Playing back existing data set", true, "play");
    EXPECT_EQ(doc.Transport().TimerPeriodMs(), 2000);
    doc.Pause();
    expect(kStatePaused, " Playback paused", false, "pause");
    doc.Pause();  // a second press resumes
    expect(kStateRunning, " Playing back existing data set", true, "resume");
    doc.SetSpeed(1);  // a running timer is set again at the new period
    EXPECT_EQ(doc.Transport().TimerPeriodMs(), 8000);
    doc.SetSpeed(99);
    EXPECT_EQ(doc.Transport().Speed(), 7);
    EXPECT_EQ(doc.Transport().TimerPeriodMs(), 125);
    doc.Stop();
    expect(kStateStopped, " Kvr playback stopped", false, "stop");

    // Every speed of the slider has its period (ms), and a running timer takes it at once.
    doc.Play();
    const int periods[] = {8000, 4000, 2000, 1000, 500, 250, 125};
    for (int speed = 1; speed <= 7; ++speed) {
        doc.SetSpeed(speed);
        EXPECT_EQ(doc.Transport().TimerPeriodMs(), periods[speed - 1]) << "speed " << speed;
    }
}

TEST(TransportTicks, AMoveResetsTheCountersToOneInPlaybackAndToTheIntervalInQuarterSecondsLive) {
    // Live, the profile interval counts seconds, or tenths of seconds in pulse-coherent mode
    // without the shallow-water ping; a part of a tick is dropped, as the acquisition drops it.
    const struct {
        int mode;
        int interval;
        bool pulseCoherent;
        uint8_t bottomTrack;
        int ticks;
    } cases[] = {
        {kModePlayback, 10, false, 1, 1}, {kModeLive, 1, false, 1, 4},  {kModeLive, 10, false, 0, 40},
        {kModeLive, 25, true, 1, 10},     {kModeLive, 7, true, 0, 2},   {kModeLive, 3, true, 2, 12},
    };
    for (const auto& c : cases) {
        PlaybackTransport transport(c.mode);
        UserSetup user;
        user.ProfileInterval = static_cast<decltype(user.ProfileInterval)>(c.interval);
        DerivedValues derived;
        derived.pcMode = c.pulseCoherent;
        derived.bottomTrackMode = c.bottomTrack;
        transport.ResetTickCounters(user, derived);
        EXPECT_EQ(transport.TickReload(), c.ticks) << c.interval << (c.pulseCoherent ? " pc" : "");
        EXPECT_EQ(transport.TickCounter(), c.ticks) << c.interval << (c.pulseCoherent ? " pc" : "");
    }
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

TEST_F(Transport, AReadErrorStopsAtTheLastGoodProfilePausedWithTheMessageOfItsPass) {
    const struct {
        int failingGroup;
        const char* message;
    } cases[] = {{16, "Incorrect file format"}, {4, "KVR DataFile: Incorrect file format"}};
    for (const auto& c : cases) {
        t.prompt.messages.clear();
        CSurveyKVRDoc doc(t.app, t.prompt, kModePlayback, WithFailingProfiles({c.failingGroup}, 10));
        ASSERT_EQ(doc.OpenDocument(path), 1);
        if (c.failingGroup > 10) {  // beyond the first window of 10: met while playing
            doc.Play();
            for (int i = 0; i < 20; ++i) doc.PlaybackTick();
        }
        EXPECT_EQ(doc.CurrentProfile(), c.failingGroup);
        EXPECT_EQ(doc.WindowEnd(), c.failingGroup);
        EXPECT_EQ(doc.PlayState(), kStatePaused);
        EXPECT_FALSE(doc.Transport().TimerRunning());
        EXPECT_EQ(t.prompt.messages, std::vector<std::string>{c.message});
        EXPECT_EQ(doc.Measurement().ProfileCount, c.failingGroup);
    }
}

}  // namespace
}  // namespace rm
