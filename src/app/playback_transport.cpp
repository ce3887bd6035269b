#include "app/playback_transport.h"

#include <algorithm>

namespace rm {

namespace {
constexpr int kShallowWaterPingMode = 2;
}

int PlaybackPeriodMs(int speedIndex) {
    static const int kPeriods[] = {8000, 4000, 2000, 1000, 500, 250, 125};
    const int index = std::clamp(speedIndex, kSlowestSpeed, kFastestSpeed);
    return kPeriods[index - 1];
}

std::string StatusText(int mode, int state) {
    const bool playback = mode == kModePlayback;
    switch (state) {
        case kStateStopped: return playback ? " Kvr playback stopped" : " Kvr on standby";
        case kStateRunning: return playback ? " Playing back existing data set" : " Kvr ready to record data";
        case kStateRecording: return " Recording data to file";
        case kStatePaused: return " Playback paused";
        default: return "";
    }
}

void PlaybackTransport::StartTimer(int periodMs) {
    timerRunning_ = true;
    timerPeriodMs_ = periodMs;
}

void PlaybackTransport::SetSpeed(int speedIndex) {
    speed_ = std::clamp(speedIndex, kSlowestSpeed, kFastestSpeed);
    if (timerRunning_ && mode_ == kModePlayback) {
        KillTimer();
        StartTimer(SpeedPeriodMs());
    }
}

void PlaybackTransport::ResetTickCounters(const UserSetup& user, const DerivedValues& derived) {
    if (mode_ == kModePlayback) {
        tickCounter_ = tickReload_ = 1;
        return;
    }
    const bool tenths = derived.pcMode && derived.bottomTrackMode != kShallowWaterPingMode;
    // Truncated, as the acquisition's own counters are.
    const double ticks = user.ProfileInterval * (tenths ? 0.4 : 4.0);
    tickCounter_ = tickReload_ = static_cast<int>(ticks);
}

}  // namespace rm
