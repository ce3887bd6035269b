// The live document: start and stop of collection and recording, the acquisition tick, and the
// processing of every profile as it arrives by the same pass as playback (TakeProfile with the
// live source), with the discharge tables refreshed after each one.

#include <algorithm>
#include <cmath>

#include "app/live_profile_source.h"
#include "app/survey_document.h"
#include "data/gps_velocity.h"
#include "link/prepare_collection.h"
#include "link/prompt_dialogue.h"
#include "processing/measurement_start.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {
constexpr int kPhaseLiveMeasurement = 2;
constexpr uint8_t kEchoBad = 3;
// A position of this size or more is no position (the sentinel 32767.0 among them).
constexpr double kImpossiblePosition = 15000.0;

bool UsablePosition(double latitude, double longitude) {
    return std::fabs(latitude) < kImpossiblePosition && std::fabs(longitude) < kImpossiblePosition;
}
}  // namespace

std::string CSurveyKVRDoc::StatusText() const {
    if (Mode() == kModeLive && (connection_.instrument == nullptr || !connection_.instrument->Port ||
                                !connection_.instrument->Port->IsOpen()))
        return "";
    return transport_.Status();
}

std::string CSurveyKVRDoc::CountDownText() const {
    if (Mode() != kModeLive) return "--";
    return live_ ? live_->CountDownText() : "";
}

void CSurveyKVRDoc::SyncLiveState() {
    const int state = live_ ? live_->RunState() : kRunStopped;
    transport_.SetState(state);
    if (state == kRunStopped) transport_.KillTimer();
}

LiveDeviceSettings CSurveyKVRDoc::LiveDevices() const {
    LiveDeviceSettings devices;
    devices.echoOn = connection_.echo != nullptr;
    devices.echo.TransducerDepth = settings_.EchoTransducerDepth;
    devices.echo.Offset = settings_.EchoOffset;
    devices.echo.Scale = settings_.EchoScale;
    devices.echo.CorrectForSpeedOfSound = settings_.CorrectForSpeedOfSound;
    devices.numBadBeams = settings_.NumBadBeams;
    return devices;
}

bool CSurveyKVRDoc::StartAcquisition(const LiveConnection& connection) {
    if (Mode() != kModeLive || PlayState() != kStateStopped) return false;
    if (connection.factory == nullptr || connection.instrument == nullptr || connection.link == nullptr) return false;
    connection_ = connection;
    // The stored tables start empty, and the measurement's range is set again profile by profile.
    if (!AllocateProfiles(options_.profilesHeld)) return false;
    const NodeRef discharge = DischargeNode(root_);
    discharge.SetValue("LeftProfile", Variant(int32_t{0}));
    discharge.SetValue("RightProfile", Variant(int32_t{0}));
    SnapshotSettings();

    live_ = std::make_unique<LiveAcquisition>(data_, *connection.link, prompt_, window_);
    liveSource_ = std::make_unique<LiveProfileSource>(data_, *live_);
    live_->SetProfileHandler([this](int count, const LiveSlot&, bool good) { TakeLiveProfile(count, good); });
    live_->SetRenumberHandler([this] { ResetRunningSums(); });
    transport_.SetState(kStateRunning);
    const int prepared = PrepareCollection(*connection.factory, *connection.instrument, prompt_, data_,
                                           *connection.link, connection.commandLogPath);
    if (prepared < 1) {
        StopAcquisition();
        return false;
    }
    live_->SetInstrumentPort(connection.instrument->Port.get());
    live_->SetGpsPort(connection.gps);
    live_->SetEchoPort(connection.echo);
    live_->SetDevices(LiveDevices());
    if (!live_->BeginCollection()) {
        StopAcquisition();
        return false;
    }
    BeginLiveTables();
    SyncLiveState();
    transport_.StartTimer(kLiveAcquisitionPeriodMs);
    return true;
}

void CSurveyKVRDoc::OnAcquisitionTick() {
    if (!live_) return;
    const bool recording = live_->RunState() == kRunRecording;
    live_->OnAcquisitionTick();
    // A disk failure ends the recording inside the acquisition: the tables end with it.
    if (recording && live_->RunState() != kRunRecording) EndOfRecording();
    SyncLiveState();
}

void CSurveyKVRDoc::BeginLiveTables() {
    ProcessingContext ctx = Context();
    BeginPass(ctx, *liveSource_);
    state_.phase = kPhaseLiveMeasurement;
    lastLiveItem_ = 0;
    windowStart_ = 1;
    windowEnd_ = 0;
    current_ = 0;
}

void CSurveyKVRDoc::ResetRunningSums() {
    // The instrument restarted its numbering: the course sums, the track origin and its running
    // values start again.
    DischargeRunningSums& sums = state_.dischargeSums;
    sums.bottomEast = sums.bottomNorth = 0.0;
    sums.bottomCount = 0;
    sums.gpsEast = sums.gpsNorth = 0.0;
    sums.gpsCount = 0;
    state_.bottomTrackOrigin = TrackPoint{};
    state_.gpsTrackOrigin = TrackPoint{};
    state_.gpsOriginLatitude = state_.gpsOriginLongitude = MissingValue;
    state_.gpsTrackLength = state_.gpsMadeGood = 0.0;
    state_.bottomTrackLength = state_.bottomMadeGood = 0.0;
}

void CSurveyKVRDoc::SetFarBankProfile(int profileCount) {
    // The last profile taken stands as the far bank's profile, the first one as the near bank's.
    const bool startsLeft = settings_.CorrectedStartBankSide == 0 || settings_.CorrectedStartBankSide == -1;
    const NodeRef discharge = DischargeNode(root_);
    int& farBank = startsLeft ? settings_.RightProfile : settings_.LeftProfile;
    int& nearBank = startsLeft ? settings_.LeftProfile : settings_.RightProfile;
    farBank = profileCount;
    if (profileCount == 1) nearBank = 1;
    discharge.SetValue("LeftProfile", Variant(int32_t{settings_.LeftProfile}));
    discharge.SetValue("RightProfile", Variant(int32_t{settings_.RightProfile}));
}

void CSurveyKVRDoc::TakeLiveItem(int item, bool good) {
    ProcessingContext ctx = Context();
    liveSource_->SetArrived(item, good);
    TakeProfile(ctx, *liveSource_, item);
    if (good) return;
    if (connection_.link->GpsOn) PlaceLostGpsPoint(item);
    if (item < 2) return;
    // A lost profile keeps the echo sounder's last depth, marked bad.
    const int slot = ctx.SlotOfProfile(item);
    SlotResults& results = slots_[static_cast<size_t>(slot)];
    if (live_->Slot(item).echoFlag == kSlotEmpty) return;
    results.echoStatus = kEchoBad;
    results.echoDepth = slots_[static_cast<size_t>(ctx.SlotOfProfile(item - 1))].echoDepth;
}

void CSurveyKVRDoc::PlaceLostGpsPoint(int item) {
    // A lost profile stands on the GPS track where the stored position puts it, measured from
    // the track's origin as the good profiles are. Without a usable stored position or origin
    // it holds the previous profile's point (the track's start for the first).
    ProcessingContext ctx = Context();
    SlotResults& results = slots_[static_cast<size_t>(ctx.SlotOfProfile(item))];
    const SlotResults* previous = item > 1 ? &slots_[static_cast<size_t>(ctx.SlotOfProfile(item - 1))] : nullptr;
    results.gpsTrackPoint = previous != nullptr ? previous->gpsTrackPoint : TrackPoint{};
    results.gpsStatus = kGpsBad;
    const GpsFix& stored = live_->LastPosition();
    const double originLatitude = state_.gpsOriginLatitude, originLongitude = state_.gpsOriginLongitude;
    if (stored.Time < 0.0 || !UsablePosition(stored.Latitude, stored.Longitude) ||
        !UsablePosition(originLatitude, originLongitude))
        return;
    GpsTrackPoint before;
    if (previous != nullptr) before = {previous->gpsTrackPoint.East, previous->gpsTrackPoint.North,
                                       previous->gpsTrackPoint.Distance};
    const GpsTrackPoint point = LostProfileTrackPoint(originLatitude, originLongitude, stored.Latitude,
                                                      stored.Longitude, previous != nullptr ? &before : nullptr);
    results.gpsTrackPoint = TrackPoint{point.East, point.North, point.Distance};
}

void CSurveyKVRDoc::TakeLiveProfile(int profileCount, bool good) {
    // A failed read that counted no new profile marks the profile already taken in; its share
    // of the tables stays as it was.
    if (profileCount < 1 || (profileCount == lastLiveItem_ && !good)) return;
    if (live_->RunState() == kRunRecording) SetFarBankProfile(profileCount);
    if (profileCount == 1 || profileCount <= lastLiveItem_ || profileCount - lastLiveItem_ > window_) {
        // The first profile (of the collection, of the recording, or after a restart of the
        // numbering) starts the tables of the track and the sums; so does a gap longer than the
        // ring, over which no track can be held.
        BeginLiveTables();
        lastLiveItem_ = profileCount - 1;
        firstProfileHeader_ = good ? live_->Record(profileCount).header : ProfileHeader{};
    }
    // Numbers the instrument skipped are lost profiles: the track holds over them.
    for (int item = lastLiveItem_ + 1; item < profileCount; ++item) TakeLiveItem(item, false);
    TakeLiveItem(profileCount, good);
    lastLiveItem_ = profileCount;
    windowEnd_ = profileCount;
    windowStart_ = std::max(1, profileCount - window_ + 1);
    current_ = profileCount;
    ProcessingContext ctx = Context();
    FinishPass(ctx);
    if (liveObserver_) liveObserver_(profileCount, good);
}

bool CSurveyKVRDoc::ToggleRecord(const DataFileNameRequest& request) {
    if (!live_) return false;
    if (live_->RunState() == kRunRecording) {
        StopRecording();
        return true;
    }
    const InstrumentLinkState& link = *connection_.link;
    PmkSettings pmk;
    pmk.gpsPresent = link.GpsOn && link.GpsSource == kGpsSourceExternal ? 1 : 0;
    pmk.echoSounderPresent = connection_.echo != nullptr ? 1 : 0;
    const bool started = live_->ToggleRecord(request, pmk);
    if (!started) {
        // A refused side file stops the collection: the instrument is woken as for Stop.
        if (live_->RunState() == kRunStopped) StopAcquisition();
        SyncLiveState();
        return false;
    }
    recordRequest_ = request;
    SplitPath(live_->DataPath());
    MeasurementSource source;
    source.fileName = path_;
    source.discharge = DischargeNode(root_);
    source.trackReference = values_.display.trackReference;
    source.velocityReference = values_.display.velocityReference;
    source.magneticDeclination = data_.derived.magneticDeclination;
    source.transducerDepth = data_.user.SensorDepth * 0.01;
    StartMeasurement(discharge_, source, false, data_);
    AskEdge(true);
    SnapshotSettings();
    BeginLiveTables();
    SyncLiveState();
    return true;
}

void CSurveyKVRDoc::EndOfRecording() {
    AskEdge(false);
    SnapshotSettings();
    ProcessingContext ctx = Context();
    UpdateEdgesAtEnd(ctx, false);
    FinishPass(ctx);
    // The .cfg belongs to the data file, whose records are the profiles written: lost profiles
    // are counted live but not written, so the bank profiles are counted again in records.
    const int written = live_->ProfilesWritten();
    if (written > 0) {
        const bool startsLeft = settings_.CorrectedStartBankSide != 1;
        const NodeRef discharge = DischargeNode(root_);
        discharge.SetValue("LeftProfile", Variant(int32_t{startsLeft ? 1 : written}));
        discharge.SetValue("RightProfile", Variant(int32_t{startsLeft ? written : 1}));
    }
    SaveSideFile();
}

void CSurveyKVRDoc::StopRecording() {
    if (!live_ || live_->RunState() != kRunRecording) return;
    live_->StopRecording();
    EndOfRecording();
    SyncLiveState();
}

void CSurveyKVRDoc::PauseLive() {
    if (!live_) return;
    StopRecording();
    if (!live_->Pause()) return;
    SyncLiveState();
    transport_.KillTimer();
}

void CSurveyKVRDoc::ResumeLive() {
    if (!live_ || !live_->Resume()) return;
    SyncLiveState();
    transport_.StartTimer(kLiveProfileTimerPeriodMs);
    // Without an earlier recording there is no file to follow on from: collection goes on.
    if (recordRequest_) ToggleRecord(*recordRequest_);
}

void CSurveyKVRDoc::StopAcquisition() {
    if (!live_ || (live_->RunState() == kRunStopped && PlayState() == kStateStopped)) {
        // Nothing is collecting: the instrument was already woken.
        transport_.SetState(kStateStopped);
        transport_.KillTimer();
        return;
    }
    StopRecording();
    SerialPort* port = connection_.instrument != nullptr ? connection_.instrument->Port.get() : nullptr;
    if (port != nullptr && port->IsOpen()) {
        PromptDialogue dialogue(*port, prompt_, connection_.commandLogPath);
        live_->StopAcquisition(&dialogue);
    } else {
        live_->StopAcquisition(nullptr);
    }
    SyncLiveState();
}

bool CSurveyKVRDoc::LiveCollecting() const {
    const int state = PlayState();
    return Mode() == kModeLive && (state == kStateRunning || state == kStateRecording || state == kStatePaused);
}

bool CSurveyKVRDoc::CanExitApplication() {
    if (!LiveCollecting()) return true;
    if (!prompt_.AskYesNo(kCollectionInProgressQuestion)) return false;
    StopAcquisition();
    return true;
}

}  // namespace rm
