// LiveAcquisition: the tick, the handling of one profile, and the start and stop of recording
// and of collection.

#include "link/live_acquisition.h"

#include <cstdio>

#include "link/prepare_collection.h"
#include "link/prompt_dialogue.h"
#include "link/wake_up.h"

namespace rm {

LiveAcquisition::LiveAcquisition(CKvrData& kvr, InstrumentLinkState& link, UserPrompt& prompt, int ringSize)
    : kvr_(kvr),
      link_(link),
      prompt_(prompt),
      gps_(MakeGpsPortReader()),
      echo_(MakeEchoPortReader(EchoSounderSettings{})),
      ring_(static_cast<size_t>(ringSize < 1 ? 1 : ringSize)) {
    kvr_.SetCacheCapacity(RingSize());
}

void LiveAcquisition::SetDevices(const LiveDeviceSettings& devices) {
    devices_ = devices;
    echo_ = MakeEchoPortReader(devices.echo);
}

size_t LiveAcquisition::SlotIndex(int profileCount) const {
    const int size = static_cast<int>(ring_.size());
    return static_cast<size_t>((((profileCount - 1) % size) + size) % size);
}

double LiveAcquisition::IntervalSeconds() const {
    const double interval = kvr_.user.ProfileInterval;
    // In pulse-coherent mode (but not with the shallow-water ping of Bottom Track 2) the
    // interval is kept in tenths of seconds.
    if (link_.PCMode != 0 && link_.BottomTrackMode != 2) return interval * 0.1;
    return interval;
}

std::string LiveAcquisition::CountDownText() const {
    char text[32];
    const int seconds =
        tickReload_ > 0 ? static_cast<int>(static_cast<double>(tickCounter_ - 1) / tickReload_ * IntervalSeconds() + 1)
                        : static_cast<int>(IntervalSeconds());
    std::snprintf(text, sizeof text, "%4d", seconds);
    return text;
}

bool LiveAcquisition::BeginCollection() {
    UserSetup running = kvr_.user;
    ApplyOperationLimits(kvr_.conf, kvr_.oper, running);
    frameLayout_ = MakeProfileLayout(kvr_.conf, running, InternalGps() ? GpsForm::Long48 : GpsForm::None, 2);
    if (static_cast<int>(frameLayout_.RecordSize()) != link_.Sizes.ProfileSize || link_.Sizes.ProfileSize <= 82) {
        prompt_.Message(kAcquisitionErrorText);
        return false;
    }
    for (int i = 0; i < RingSize(); ++i) {
        ring_[static_cast<size_t>(i)] = LiveSlot{};
        ProfileRecord& record = kvr_.Slot(i);
        record = ProfileRecord{};
        record.Resize(frameLayout_.cells, frameLayout_.beams);
    }
    frame_.assign(static_cast<size_t>(link_.Sizes.ProfileSize), 0);
    runState_ = kRunReady;
    profileCount_ = 0;
    profileNumberOffset_ = 0;
    overdueTicks_ = 0;
    lastFix_ = GpsFix{};
    firstPosition_ = GpsFix{};
    ResetTickCounters();
    return true;
}

void LiveAcquisition::ResetTickCounters() {
    tickReload_ = static_cast<int>(IntervalSeconds() * 4.0);
    tickCounter_ = tickReload_;
}

void LiveAcquisition::OnAcquisitionTick() {
    if ((runState_ != kRunReady && runState_ != kRunRecording) || instrument_ == nullptr) return;
    if (--tickCounter_ < 0) {
        ++overdueTicks_;
        tickCounter_ = 0;
    }
    if (ExternalGps()) {
        if (profileCount_ < 1 && firstPosition_.Time < 0.0) {
            PollGpsPort(gps_, gpsPort_);
            GpsFix fix;
            if (TakeNewestFix(gps_.Sentences(), fix) == 1 && fix.Time > 0.0) firstPosition_ = fix;
        }
        if (tickCounter_ > 1) PollGpsPort(gps_, gpsPort_);
    }
    // Neither device is polled in the last two ticks before a profile is due.
    if (tickCounter_ > 1 && devices_.echoOn) PollEchoPort(echo_, echoPort_);

    if (instrument_->RxCount() >= 1) {
        tickCounter_ = tickReload_;
        ProcessNextProfile(true);
        overdueTicks_ = 0;
    } else if (overdueTicks_ >= kLostProfileTicks) {
        // Lost 2.75 s after it was due; the next one is expected 2 s early.
        tickCounter_ = tickReload_ - kLostProfileEarlyTicks;
        ProcessNextProfile(false);
        overdueTicks_ = 0;
    }
}

void LiveAcquisition::MarkLostSlot() {
    LiveSlot& slot = Current();
    slot.quality = kSlotLost;
    if (link_.GpsOn) slot.gpsFlag = kSlotLost;
    if (devices_.echoOn) {
        slot.echoFlag = kSlotLost;
        slot.echoDepth = profileCount_ > 1 ? ring_[SlotIndex(profileCount_ - 1)].echoDepth : kPositionSentinel;
    }
}

void LiveAcquisition::ProcessNextProfile(bool withData) {
    int result = kFrameNothing;
    if (!withData) {
        ++profileCount_;
        FillBadProfile();
        MarkLostSlot();
    } else {
        result = ReadLiveProfile();
    }
    if (result == kFrameWave) return;  // a wave burst is not a profile
    if (result != kFrameProfile || profileCount_ < 1) {
        if (profileCount_ > 0) {
            MarkLostSlot();
            if (handler_) handler_(profileCount_, Current(), false);
        }
        return;
    }
    Current().quality = kSlotGood;
    if (handler_) handler_(profileCount_, Current(), true);
}

bool LiveAcquisition::ToggleRecord(const DataFileNameRequest& request, const PmkSettings& pmk) {
    if (runState_ == kRunRecording) {
        StopRecording();
        return true;
    }
    if (runState_ != kRunReady) return false;
    const std::string path = ChooseDataFilePath(request, prompt_);
    if (path.empty()) return false;  // the person cancelled
    const bool created = kvr_.CreateDataFile(path) && kvr_.WriteHeader();
    const bool closed = kvr_.CloseFile();
    if (!created || !closed) {
        prompt_.Message(kUnableToRecordText + path);
        return false;
    }
    if (!pmk_.CreatePmk(path, pmk, prompt_)) {
        StopAcquisition(nullptr);
        return false;
    }
    dataPath_ = path;
    runState_ = kRunRecording;
    profileCount_ = 0;
    profileNumberOffset_ = lastProfileNumber_;
    profilesWritten_ = 0;
    gps_.SetRecordingDataFile(path);
    echo_.SetRecordingDataFile(path);
    // The last GPS position becomes the first position of the track.
    if (lastFix_.Time >= 0.0) firstPosition_ = lastFix_;
    return true;
}

void LiveAcquisition::StopRecording() {
    if (runState_ != kRunRecording) return;
    runState_ = kRunReady;
    pmk_.Close();
    gps_.SetRecordingDataFile("");
    echo_.SetRecordingDataFile("");
}

bool LiveAcquisition::Pause() {
    if (runState_ != kRunReady) return false;
    runState_ = kRunPaused;
    return true;
}

bool LiveAcquisition::Resume() {
    if (runState_ != kRunPaused) return false;
    runState_ = kRunReady;
    overdueTicks_ = 0;
    ResetTickCounters();
    return true;
}

void LiveAcquisition::StopAcquisition(PromptDialogue* dialogue) {
    StopRecording();
    runState_ = kRunStopped;
    LiveSlot& slot = Current();
    slot.quality = kSlotEmpty;
    slot.gpsFlag = kSlotEmpty;
    slot.echoFlag = kSlotEmpty;
    // Waking the instrument takes it out of collecting.
    if (dialogue != nullptr) WakeAndReport(*dialogue, nullptr);
    ResetTickCounters();
}

}  // namespace rm
