#pragma once
// LiveAcquisition: the live side of a document once the instrument is collecting. A timer of
// 250 ms calls OnAcquisitionTick; the tick polls the GPS and echo sounder ports between
// profiles, and when bytes wait on the instrument's port it reads one frame (found by its
// sync byte, type and size, checked by its checksum), fills the ring slot of the profile, adds
// the newest GPS fix and echo depth and, while recording, appends the record to the .kvr and
// the profile's sentences to the .pmk. A profile that does not come within 2.75 s of its due
// time is counted as lost. Recording starts and stops with ToggleRecord; the instrument goes
// on sending until StopAcquisition.
//
// The ring is the raw-profile ring of the CKvrData it is given (the one the processing reads):
// profile n goes into CKvrData::Slot((n - 1) modulo the ring size); beside it a ring of flags
// says what the slot holds. The bad-beam rule ("NumBadBeams") holds a bad bottom-track ensemble
// on the raw record as the frame is read, before it is stored or written.
//
// The processing of a profile is not done here: the owner hands in a ProfileHandler that is
// called for every profile taken (good or lost), and a RenumberHandler for a restart of the
// instrument's numbering, since the running sums are the owner's.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "data/data_file_name.h"
#include "data/kvr_data.h"
#include "data/nmea_echo_depth.h"
#include "data/nmea_gps_fix.h"
#include "data/node_tree.h"
#include "data/pmk_file.h"
#include "data/profile_codec.h"
#include "data/user_prompt.h"
#include "link/link_state.h"
#include "link/nmea_port_reader.h"
#include "link/serial_port.h"

namespace rm {

class PromptDialogue;

// RunState values.
constexpr int kRunStopped = 0;
constexpr int kRunReady = 1;  // frames coming in, nothing written
constexpr int kRunRecording = 2;
constexpr int kRunPaused = 3;

// ReadFrame results.
constexpr int kFrameNothing = 0;
constexpr int kFrameProfile = 1;
constexpr int kFrameWave = 2;
constexpr int kFrameUnknown = -1;

// The three bytes that begin every frame.
constexpr uint8_t kFrameSync = 0xA5;
constexpr uint8_t kProfileFrameType = 0x10;
constexpr uint8_t kWaveFrameType = 0x20;
constexpr uint8_t kFrameHeaderSizeByte = 0x50;
// Header size written into a record that carries the GPS block of an external receiver.
constexpr uint16_t kHeaderSizeWithGps = 0x80;

constexpr uint32_t kAcquisitionTickMs = 250;
// Ticks past the due time after which a profile counts as lost, and how much earlier than a
// full interval the next one is expected after that.
constexpr int kLostProfileTicks = 11;
constexpr int kLostProfileEarlyTicks = 8;

// Slot quality and device flags.
constexpr int kSlotEmpty = 0;
constexpr int kSlotGood = 2;
constexpr int kSlotLost = 3;

// A position value that marks "no position".
constexpr double kPositionSentinel = 32767.0;

constexpr const char* kUnableToRecordText = "Error - Unable to record to data file ";
constexpr const char* kCanNotWriteOutputText = "Can not write output file";

// What the ring slot of a profile holds besides its record: its quality and what the GPS and
// echo sounder added.
struct LiveSlot {
    int quality = kSlotEmpty;
    int gpsFlag = kSlotEmpty;
    int echoFlag = kSlotEmpty;
    double echoDepth = kPositionSentinel;  // metres; 32767.0 without a depth
};

// What the document knows about its devices besides the instrument's link state.
struct LiveDeviceSettings {
    bool echoOn = false;
    EchoSounderSettings echo;
    // "NumBadBeams": bottom-track beams that may be bad before the ensemble is held.
    int numBadBeams = 0;
};

class LiveAcquisition {
public:
    // Called for every profile taken: its ProfileCount, the flags of its slot (the record is
    // Record(profileCount)), and whether it is good.
    using ProfileHandler = std::function<void(int profileCount, const LiveSlot& slot, bool good)>;
    // Called when a frame numbered 1 comes while profiles were counted: the instrument restarted.
    using RenumberHandler = std::function<void()>;

    // Sets the ring size of `kvr` (its cache capacity) to `ringSize`.
    LiveAcquisition(CKvrData& kvr, InstrumentLinkState& link, UserPrompt& prompt, int ringSize = 3000);

    void SetInstrumentPort(SerialPort* port) { instrument_ = port; }
    void SetGpsPort(SerialPort* port) { gpsPort_ = port; }
    void SetEchoPort(SerialPort* port) { echoPort_ = port; }
    void SetDevices(const LiveDeviceSettings& devices);
    // A change of "NumBadBeams" while frames come in.
    void SetNumBadBeams(int numBadBeams) { devices_.numBadBeams = numBadBeams; }
    void SetProfileHandler(ProfileHandler handler) { handler_ = std::move(handler); }
    void SetRenumberHandler(RenumberHandler handler) { renumbered_ = std::move(handler); }

    // After a good PrepareCollection: sizes the ring for the setup, RunState 1, counters at a
    // full interval. False (with a message) when the setup's frame size is not what the
    // records describe, so frames could not be decoded.
    bool BeginCollection();

    // --- the tick and its steps ---
    void OnAcquisitionTick();
    void ProcessNextProfile(bool withData);
    int ReadLiveProfile();
    int ReadFrame();
    int ReadProfileFrame();
    int ReadWaveFrame();
    void FillBadProfile();

    // --- recording ---
    // In RunState 1: names and creates the data file by the naming rules, creates the .pmk
    // with `pmk` and writes the head; RunState 2. In RunState 2: StopRecording. False when the
    // recording could not start (the person has been told why).
    bool ToggleRecord(const DataFileNameRequest& request, const PmkSettings& pmk);
    void StopRecording();
    // Pause of collection: RunState 3, the tick does nothing (the instrument's frames wait on the
    // port). Only from RunState 1; false otherwise.
    bool Pause();
    // From RunState 3: RunState 1 with the tick counters at a full interval, as at the start.
    bool Resume();
    // RunState 0; with a dialogue the instrument is woken out of collecting.
    void StopAcquisition(PromptDialogue* dialogue);

    // --- state ---
    int RunState() const { return runState_; }
    int ProfileCount() const { return profileCount_; }
    int ProfileNumberOffset() const { return profileNumberOffset_; }
    int LastProfileNumber() const { return lastProfileNumber_; }
    int TickCounter() const { return tickCounter_; }
    int TickReload() const { return tickReload_; }
    int OverdueTicks() const { return overdueTicks_; }
    double IntervalSeconds() const;
    // The count-down text: "%4d" of the seconds left.
    std::string CountDownText() const;
    // Records written to the data file since the recording began.
    int ProfilesWritten() const { return profilesWritten_; }
    int Renumberings() const { return renumberings_; }
    // The wave burst read last (its header zeroed after a failed wave frame).
    const WaveBurst& Wave() const { return wave_; }
    const std::string& DataPath() const { return dataPath_; }
    const std::string& PmkPath() const { return pmk_.Path(); }
    int RingSize() const { return static_cast<int>(ring_.size()); }
    const LiveSlot& Slot(int profileCount) const { return ring_[SlotIndex(profileCount)]; }
    // The record of profile `profileCount` in the CKvrData ring.
    const ProfileRecord& Record(int profileCount) const { return kvr_.Slot(static_cast<int>(SlotIndex(profileCount))); }
    const GpsFix& FirstPosition() const { return firstPosition_; }
    // The stored position: the fix of the last profile (Time below 0 before any, and after a
    // restart of the numbering, when its position is the sentinel).
    const GpsFix& LastPosition() const { return lastFix_; }
    const NmeaPortReader& GpsReader() const { return gps_; }
    const NmeaPortReader& EchoReader() const { return echo_; }

private:
    size_t SlotIndex(int profileCount) const;
    LiveSlot& Current() { return ring_[SlotIndex(profileCount_)]; }
    ProfileRecord& CurrentRecord() { return kvr_.Slot(static_cast<int>(SlotIndex(profileCount_))); }
    void HoldBadBottomTrack();
    bool WaitForBytes(int count, int rounds);
    void Renumber();
    // Takes the number of a checked frame into the count (gaps, restarts); false for a number
    // that no profile can have (0, or beyond the count's range).
    bool TakeProfileNumber(uint32_t number);
    bool ExternalGps() const { return link_.GpsOn && link_.GpsSource == kGpsSourceExternal; }
    bool InternalGps() const { return link_.GpsOn && link_.GpsSource == kGpsSourceInternal; }
    void AddGps(LiveSlot& slot, ProfileRecord& record, const NodeRef& node);
    void AddEchoDepth(LiveSlot& slot, const ProfileRecord& record, const NodeRef& node);
    void WriteProfile(const ProfileRecord& record, const NodeRef& node);
    void WriteWave();
    bool AppendToDataFile(const std::function<bool()>& write);
    void MarkLostSlot();
    void ResetTickCounters();

    CKvrData& kvr_;
    InstrumentLinkState& link_;
    UserPrompt& prompt_;
    SerialPort* instrument_ = nullptr;
    SerialPort* gpsPort_ = nullptr;
    SerialPort* echoPort_ = nullptr;
    LiveDeviceSettings devices_;
    NmeaPortReader gps_;
    NmeaPortReader echo_;
    ProfileHandler handler_;
    RenumberHandler renumbered_;

    ProfileLayout frameLayout_;
    std::vector<LiveSlot> ring_;
    std::vector<uint8_t> frame_;
    WaveBurst wave_;
    std::vector<uint8_t> scrap_;

    int runState_ = kRunStopped;
    int tickCounter_ = 0;
    int tickReload_ = 0;
    int overdueTicks_ = 0;
    int profileCount_ = 0;
    int profileNumberOffset_ = 0;
    int lastProfileNumber_ = 0;
    bool readerBusy_ = false;
    int renumberings_ = 0;

    GpsFix lastFix_;        // the fix of the previous profile
    GpsFix firstPosition_;  // the first position of the track

    std::string dataPath_;
    PmkWriter pmk_;
    int profilesWritten_ = 0;
};

}  // namespace rm
