// The transport commands of a document: Play, Pause, Stop, the moves and the playback tick.

#include <algorithm>

#include "app/survey_document.h"

namespace rm {

void CSurveyKVRDoc::PrepareMove() { transport_.ResetTickCounters(data_.user, data_.derived); }

void CSurveyKVRDoc::Play() {
    if (Mode() == kModeLive) {
        if (transport_.State() == kStatePaused) ResumeLive();
        return;
    }
    transport_.SetState(kStateRunning);
    transport_.KillTimer();
    transport_.StartTimer(transport_.SpeedPeriodMs());
    if (rebuildOnPlay_) {
        rebuildOnPlay_ = false;
        ReloadWindow();
    }
}

void CSurveyKVRDoc::Pause() {
    if (Mode() == kModeLive) {
        if (transport_.State() == kStatePaused) {
            ResumeLive();
        } else {
            PauseLive();
        }
        return;
    }
    if (transport_.State() == kStatePaused) {
        Play();
        return;
    }
    transport_.SetState(kStatePaused);
    transport_.KillTimer();
}

void CSurveyKVRDoc::Stop() {
    if (Mode() == kModeLive) {
        // Stop is not offered while recording; otherwise it ends the collection.
        if (transport_.State() != kStateRecording) StopAcquisition();
        return;
    }
    transport_.SetState(kStateStopped);
    transport_.KillTimer();
    if (Mode() == kModePlayback) rebuildOnPlay_ = true;
}

void CSurveyKVRDoc::FullRewind() {
    PrepareMove();
    GotoProfile(1);
}

void CSurveyKVRDoc::RewindTo(int n) {
    PrepareMove();
    GotoProfile(n);
}

void CSurveyKVRDoc::ForwardTo(int n) {
    PrepareMove();
    GotoProfile(n);
}

void CSurveyKVRDoc::FullForward() {
    PrepareMove();
    GotoProfile(itemCount_);
}

void CSurveyKVRDoc::StepForward() {
    PrepareMove();
    transport_.SetState(kStateStopped);
    transport_.KillTimer();
    GotoProfile(current_ + 1);
}

void CSurveyKVRDoc::StepBackward() {
    PrepareMove();
    GotoProfile(current_ - 1);
}

void CSurveyKVRDoc::SetSpeed(int speedIndex) { transport_.SetSpeed(speedIndex); }

void CSurveyKVRDoc::PlaybackTick() {
    if (Mode() != kModePlayback || transport_.State() != kStateRunning) return;
    if (current_ >= itemCount_) return;
    GotoProfile(current_ + 1);
}

}  // namespace rm
