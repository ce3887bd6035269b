#pragma once
// The transport of a document: its mode, its play state, the playback speed with the period of
// the playback timer, and the two tick counters that pace a move. Pure state: the document acts
// on it and the view (or a test, or a loop) drives the timer by calling the document's ticks.

#include <cstdint>
#include <string>

#include "data/instrument_records.h"

namespace rm {

enum DocumentMode : int { kModeLive = 0, kModePlayback = 1 };
enum PlayStateCode : int { kStateStopped = 0, kStateRunning = 1, kStateRecording = 2, kStatePaused = 3 };

constexpr int kLiveTimerId = 1106;      // live acquisition, every 250 ms
constexpr int kPlaybackTimerId = 1107;  // playback at the speed's period; 1000 ms in live operation
constexpr int kLiveAcquisitionPeriodMs = 250;
constexpr int kLiveProfileTimerPeriodMs = 1000;
constexpr int kSlowestSpeed = 1, kFastestSpeed = 7, kStartSpeed = 3;

// The period of the playback timer for speed index 1 (8000 ms) to 7 (125 ms); indexes outside
// are taken as the nearest end.
int PlaybackPeriodMs(int speedIndex);

// The status pane's text for a mode and a play state ("" for an unknown state).
std::string StatusText(int mode, int state);

// Captions of the number dialogs of Rewind and Forward.
constexpr const char* kRewindCaption = "Rewind to Profile:";
constexpr const char* kForwardCaption = "Fast Forward to Profile:";
constexpr const char* kLockMeasurementTip = "Lock Measurement (Additional processing will not be saved)";

class PlaybackTransport {
public:
    explicit PlaybackTransport(int mode = kModePlayback) : mode_(mode) {}

    int Mode() const { return mode_; }
    int State() const { return state_; }
    void SetState(int state) { state_ = state; }
    int Speed() const { return speed_; }

    bool TimerRunning() const { return timerRunning_; }
    int TimerPeriodMs() const { return timerPeriodMs_; }
    void StartTimer(int periodMs);
    void KillTimer() { timerRunning_ = false; }

    // Sets the speed index (limited to 1..7); a running playback timer is killed and set again
    // with the new period.
    void SetSpeed(int speedIndex);
    // The period of the timer at the current speed.
    int SpeedPeriodMs() const { return PlaybackPeriodMs(speed_); }

    // Before every move: 1 and 1 in playback; in live mode the profile interval x 4, or x 0.4
    // when the interval counts tenths of seconds (pulse-coherent without the shallow-water ping).
    void ResetTickCounters(const UserSetup& user, const DerivedValues& derived);
    int TickCounter() const { return tickCounter_; }
    int TickReload() const { return tickReload_; }

    std::string Status() const { return StatusText(mode_, state_); }

private:
    int mode_;
    int state_ = kStateStopped;
    int speed_ = kStartSpeed;
    bool timerRunning_ = false;
    int timerPeriodMs_ = 0;
    int tickCounter_ = 0;
    int tickReload_ = 0;
};

}  // namespace rm
