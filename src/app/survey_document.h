#pragma once
// CSurveyKVRDoc: the data set that one document window shows — the data file with its side
// files, the window of profiles held in memory with their processing results, the trees, the
// discharge measurement and the transport (play, pause, stop and the moves). One class for a
// playback of a recording and for a live collection; the mode never changes in its life.
//
// The window. Items (the profiles chosen in the load dialog, numbered from 1) are processed in
// order from the first, since the track and the sums run on from profile to profile. The window
// holds the last `WindowSize()` items processed: a move to an item inside it reads nothing; a
// move forward reads and processes the items up to the target; a move back before the window
// rebuilds it by processing again from item 1 (ReloadWindow).
//
// Live operation (mode 0): StartAcquisition prepares the instrument and starts the 250 ms
// acquisition tick; every profile that arrives (or is lost) is taken by the same pass as a
// profile of a file (ProfileSource, ProcessProfile), with the live source of
// live_profile_source.h, and the discharge tables are refreshed at once. ToggleRecord starts and
// ends the recording, with the edge questions of the start and the end of a transect; Pause
// ends it too and stops the tick, and the resume records a new file; StopAcquisition takes the
// instrument out of collecting.
//
// Reading errors while loading or playing: "KVR DataFile: Incorrect file format" during the
// first window, "Incorrect file format" later; the position stays at the last good profile and
// the state becomes paused. The recomputation after a change of settings absorbs them instead
// (the profile keeps the previous track point and gets no discharge).

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/app_settings.h"
#include "app/load_fields.h"
#include "app/playback_transport.h"
#include "data/cfg_file.h"
#include "data/kvr_data.h"
#include "data/pmk_file.h"
#include "data/product.h"
#include "data/system_tree.h"
#include "data/user_prompt.h"
#include "link/live_acquisition.h"
#include "link/port_record.h"
#include "processing/discharge_data.h"
#include "processing/edge_dialogs.h"
#include "processing/processing_context.h"
#include "processing/profile_source.h"
#include "processing/recompute_pass.h"
#include "processing/settings_reader.h"

namespace rm {

constexpr int kDefaultProfilesHeld = 3000;

class LiveProfileSource;

constexpr const char* kStopCollectionQuestion = "Stop Data Collection?";
constexpr const char* kCollectionInProgressQuestion = "Data Collection in Progress.\nStop Data Collection?";

// What a live document talks to. The ports and the link state belong to the caller and must
// outlive the acquisition; GPS and echo sounder ports may be null (device off).
struct LiveConnection {
    SerialPortFactory* factory = nullptr;
    SerialPortRecord* instrument = nullptr;
    InstrumentLinkState* link = nullptr;
    SerialPort* gps = nullptr;
    SerialPort* echo = nullptr;
    std::string commandLogPath;  // empty: no command log
};

// The edge dialog of the start and of the end of a transect, as a question to the person. Shown
// the bank `shown.side` (0 left, 1 right; the person may choose the other one), `shown.atStart`,
// and the method, field value and measured distance in force for that bank, it returns what the
// person entered, or nothing when the person cancelled.
class EdgeQuestion {
public:
    virtual ~EdgeQuestion() = default;
    virtual std::optional<EdgeDialogValues> AskEdge(const EdgeDialogValues& shown) = 0;
};

// How often the edge question is put again after an answer that fails its check; after that the
// answer counts as cancelled.
constexpr int kEdgeQuestionTries = 3;

class CSurveyKVRDoc {
public:
    struct Options {
        int profilesHeld = kDefaultProfilesHeld;  // "Number of Profiles Displayed"
        // Makes the reader of the data file; the default reads through CKvrData.
        std::function<std::unique_ptr<ProfileSource>(CKvrData&)> makeSource;
    };

    CSurveyKVRDoc(AppSettings& app, UserPrompt& prompt, int mode = kModePlayback);
    CSurveyKVRDoc(AppSettings& app, UserPrompt& prompt, int mode, Options options);
    ~CSurveyKVRDoc();
    CSurveyKVRDoc(const CSurveyKVRDoc&) = delete;
    CSurveyKVRDoc& operator=(const CSurveyKVRDoc&) = delete;

    // --- opening and closing ---
    // Opens a recording with its .cfg and .pmk and loads the first window. 1 on success, 0 when
    // the open failed (the person has been told why, the file is closed).
    int OpenDocument(const std::string& path, const LoadFields& load = LoadFields{});
    // Frees the window and closes the data file.
    void CloseDocument();
    // The close of the document's window: false when the person chose to keep collecting.
    // Otherwise writes the .cfg unless the measurement is locked, stores ShowXAxisAs in the
    // application's General and closes.
    bool OnCloseDocument();
    // Closing the application: while live data come in, "Data Collection in Progress.\nStop Data
    // Collection?"; No keeps everything running (false), Yes stops recording and collection.
    bool CanExitApplication();
    bool IsOpen() const { return data_.IsOpen(); }

    // --- the data set ---
    const std::string& Path() const { return path_; }
    const std::string& Folder() const { return folder_; }  // with its trailing separator
    const std::string& Stem() const { return stem_; }      // file name without ".kvr"
    int ProfileCount() const { return itemCount_; }      // items that reach the document
    int FileProfileCount() const { return data_.ProfileCount(); }
    int WindowSize() const { return window_; }
    int WindowStart() const { return windowStart_; }
    int WindowEnd() const { return windowEnd_; }
    int CurrentProfile() const { return current_; }
    double VelocityScale() const { return velocityScale_; }
    double MagneticDeclination() const { return declination_; }

    CKvrData& Data() { return data_; }
    const CKvrData& Data() const { return data_; }
    const NodeRef& Root() const { return root_; }
    const NodeRef& SystemRoot() const { return systemRoot_; }
    const PmkState& Pmk() const { return pmk_; }
    const CfgValues& Values() const { return values_; }
    const ProcessingSettings& Settings() const { return settings_; }
    const CDischargeData& Measurement() const { return *discharge_; }
    std::shared_ptr<CDischargeData> MeasurementRecord() const { return discharge_; }
    const std::vector<SlotResults>& Slots() const { return slots_; }
    const RunningState& Running() const { return state_; }
    // The results of item `item` while it is in the window; null otherwise.
    const SlotResults* ResultsOf(int item) const;
    const ProfileSource& Source() const { return *source_; }
    ProcessingContext Context();
    // The same context for readers that only look (the pictures): use it only through the
    // processing functions that take a const ProcessingContext.
    const ProcessingContext ReadContext() const;

    // --- settings ---
    void SetCoordinateSystem(int system);
    // Bottom track or GPS as velocity reference also sets the track reference when the
    // application links the two (VelocityTrackReference 1).
    void SetVelocityReference(int reference);
    void SetTrackReference(int reference);
    // After any change of a setting: a fresh snapshot and the recomputation up to the current
    // profile (at least 1); in live operation ReprocessRing only.
    void SettingsChanged();
    // The full pass over the data set ("&RECOMPUTE", exports); the window ends at the last
    // profile afterwards, and so does the position. An observer sees every profile.
    bool Recompute(PassObserver* observer = nullptr);
    // Lock Measurement: flips FileIsLocked and writes the .cfg at once.
    bool LockMeasurement();
    bool FileIsLocked() const { return values_.fileIsLocked; }
    // Writes the .cfg as closing does (not while locked). False when it could not be written.
    bool SaveSideFile();

    // --- navigation ---
    // Moves to item n (limited to 1..count) and processes what the move needs. False when a
    // read failed (the position is then the last good profile and the state paused).
    bool GotoProfile(int n);
    // Rebuilds the window around the current profile from the first profile.
    bool ReloadWindow();

    // --- transport ---
    const PlaybackTransport& Transport() const { return transport_; }
    int Mode() const { return transport_.Mode(); }
    int PlayState() const { return transport_.State(); }
    // The status pane; empty in live mode while no instrument port is open.
    std::string StatusText() const;
    // In live mode Play after Pause resumes (below).
    void Play();
    // Playback: stops the timer (paused); again: Play. Live while collecting: a recording is
    // ended as by StopRecording, the acquisition tick stops and RunState is 3; from RunState 3 a
    // resume sets the tick counters to a full interval, starts the 1000 ms timer (1107) and runs
    // ToggleRecord with the request of the last recording, so a new file is recorded (none when
    // nothing was recorded before). The owner goes on calling OnAcquisitionTick every 250 ms.
    void Pause();
    void Stop();
    void FullRewind();
    void RewindTo(int n);
    void ForwardTo(int n);
    void FullForward();
    void StepForward();
    void StepBackward();
    void SetSpeed(int speedIndex);
    // Timer 1107 in playback: one profile on while running, never beyond the last.
    void PlaybackTick();

    // --- live operation (mode 0) ---
    // Resets the stored tables, "LeftProfile" and "RightProfile" to 0, RunState 1, and runs
    // PrepareCollection on the connection's instrument port; the acquisition tick starts when
    // the instrument collects. False (collection stopped) otherwise.
    bool StartAcquisition(const LiveConnection& connection);
    // Timer 1106: one acquisition tick; a profile taken is processed at once.
    void OnAcquisitionTick();
    // RunState 1: names and creates the data file and its .pmk, starts the measurement and the
    // recording, and puts the start edge question (below). RunState 2: StopRecording. False
    // when no recording started.
    bool ToggleRecord(const DataFileNameRequest& request);
    // Ends the file: the end edge question, the far edge and the totals, and the recording's
    // .cfg (its bank profiles counted in records of the file); collection goes on.
    void StopRecording();
    // With the application setting "AskForEdgeDistances" on, ToggleRecord and StopRecording put
    // the edge question to `question` (null: no question; the edges are the Discharge keys). An
    // answer is checked as the dialog checks it (a failure is told through the UserPrompt and the
    // question put again with the answer shown) and stored as the dialog's OK stores it.
    void SetEdgeQuestion(EdgeQuestion* question) { edgeQuestion_ = question; }
    // RunState 0, the timer stops, and the instrument is woken out of collecting.
    void StopAcquisition();
    // The count-down of the seconds to the next profile ("%4d"); "--" in playback.
    std::string CountDownText() const;
    // The acquisition while live data come in (null before StartAcquisition).
    const LiveAcquisition* Acquisition() const { return live_.get(); }
    // Told after every live profile has been processed: its ProfileCount and whether it was good.
    void SetLiveProfileObserver(std::function<void(int profileCount, bool good)> observer) {
        liveObserver_ = std::move(observer);
    }
    // Header time of the first profile of the live data (of the recording once it runs).
    const ProfileHeader& FirstProfileHeader() const { return firstProfileHeader_; }

private:
    bool OpenSteps(const std::string& path, const LoadFields& load);
    bool AllocateProfiles(int slots);
    void ReadSideFilesAndSetup();
    void StartNewMeasurement();
    void SnapshotSettings();
    bool LoadFirstWindow();
    // Takes items from the end of the window up to `target`; stops at a read failure.
    bool LoadForward(int target, bool firstPass);
    bool RebuildTo(int target, bool firstPass);
    void ReadFailed(int lastGood, bool firstPass);
    void PrepareMove();
    void SplitPath(const std::string& path);
    // Live glue (survey_document_live.cpp).
    void TakeLiveProfile(int profileCount, bool good);
    void TakeLiveItem(int item, bool good);
    void BeginLiveTables();
    void ResetRunningSums();
    void SetFarBankProfile(int profileCount);
    void EndOfRecording();
    void AskEdge(bool atStart);
    void PlaceLostGpsPoint(int item);
    void PauseLive();
    void ResumeLive();
    bool LiveCollecting() const;
    void SyncLiveState();
    LiveDeviceSettings LiveDevices() const;

    AppSettings& app_;
    UserPrompt& prompt_;
    Options options_;
    PlaybackTransport transport_;

    CKvrData data_;
    std::unique_ptr<ProfileSource> source_;
    PmkState pmk_;
    NodeRef root_ = NodeRef::MakeNew();
    NodeRef systemRoot_ = NodeRef::MakeNew();
    CfgValues values_;
    SystemDocumentFields systemFields_;
    DocumentProcessingFields fields_;

    std::vector<SlotResults> slots_;
    RunningState state_;
    ProcessingSettings settings_;
    std::shared_ptr<CDischargeData> discharge_;
    ProfileWorkingValues working_;

    std::string path_, folder_, stem_;
    int itemCount_ = 0;
    int window_ = 0;
    int windowStart_ = 1, windowEnd_ = 0;
    int current_ = 0;
    double velocityScale_ = 1.0;
    double declination_ = 0.0;
    bool rebuildOnPlay_ = false;  // Stop was pressed: the next Play rebuilds the data

    LiveConnection connection_;
    std::unique_ptr<LiveAcquisition> live_;
    std::unique_ptr<LiveProfileSource> liveSource_;
    std::function<void(int, bool)> liveObserver_;
    int lastLiveItem_ = 0;  // the last ProfileCount taken into the tables
    EdgeQuestion* edgeQuestion_ = nullptr;
    std::optional<DataFileNameRequest> recordRequest_;  // of the last recording, for a resume
    ProfileHeader firstProfileHeader_;
};

}  // namespace rm
