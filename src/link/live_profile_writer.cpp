// LiveAcquisition: one profile with what the GPS and echo sounder said during it, and, while
// recording, its record in the data file and its sentences in the .pmk. The data file is opened
// and closed around every record, so that what was written is on disk whatever happens next.

#include <sys/stat.h>
#include <unistd.h>

#include "data/nmea_sentences.h"
#include "link/live_acquisition.h"

namespace rm {

namespace {

// A prompt that says nothing: the open for appending has a message of its own here.
class SilentPrompt : public UserPrompt {
public:
    void Message(const std::string&) override {}
    bool AskYesNo(const std::string&) override { return false; }
    std::string AskSavePath(const std::string&, const std::string&, const std::string&) override { return {}; }
    void Progress(int, int, const std::string&) override {}
};

int64_t FileSizeOf(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 ? static_cast<int64_t>(st.st_size) : -1;
}

}  // namespace

int LiveAcquisition::ReadLiveProfile() {
    const NodeRef node = NodeRef::MakeNew();
    const int result = ReadFrame();
    const bool collecting = runState_ == kRunReady || runState_ == kRunRecording;
    if (profileCount_ >= 1 && collecting) {
        if (link_.GpsOn) AddGps(Current(), CurrentRecord(), node);
        if (devices_.echoOn) AddEchoDepth(Current(), CurrentRecord(), node);
    }
    if (result == kFrameProfile) {
        ProfileRecord& record = CurrentRecord();
        if (ExternalGps()) {
            // The GPS block is added to the record on disk: header bit 1 and the larger size.
            record.hasGps = true;
            record.header.flags = static_cast<uint8_t>(record.header.flags | 0x02);
            record.header.size = kHeaderSizeWithGps;
        }
        if (runState_ == kRunRecording) WriteProfile(record, node);
    } else if (result == kFrameWave && runState_ == kRunRecording) {
        WriteWave();
    }
    return result;
}

void LiveAcquisition::AddGps(LiveSlot& slot, ProfileRecord& record, const NodeRef& node) {
    if (InternalGps()) {
        slot.gpsFlag = kSlotGood;
        return;
    }
    const NodeRef sentences = gps_.TakeSentences();
    GpsFix fix;
    if (TakeNewestFix(sentences, fix) != 1) {
        slot.gpsFlag = kSlotLost;
    } else {
        slot.gpsFlag = kSlotGood;
        // The slot holds the position at the profile's start (the last fix, or the new one for
        // the first profile) and at its end.
        const GpsFix& start = (profileCount_ == 1 || lastFix_.Time < 0.0) ? fix : lastFix_;
        record.gps = GpsBlock{start.Time, start.Latitude, start.Longitude, fix.Time, fix.Latitude, fix.Longitude};
        lastFix_ = fix;
    }
    StoreProfileSentences(node, sentences, NodeRef());
}

void LiveAcquisition::AddEchoDepth(LiveSlot& slot, const ProfileRecord& record, const NodeRef& node) {
    const NodeRef sentences = echo_.TakeSentences();
    const ProfileHeader& h = record.header;
    slot.echoDepth = ReadEchoDepth(sentences, devices_.echo, h.pitch * 0.1, h.roll * 0.1, 1.0);
    slot.echoFlag = slot.echoDepth < kPositionSentinel ? kSlotGood : kSlotLost;
    StoreProfileSentences(node, NodeRef(), sentences);
}

bool LiveAcquisition::AppendToDataFile(const std::function<bool()>& write) {
    SilentPrompt silent;
    kvr_.SetPrompt(&silent);
    const bool opened = kvr_.OpenForAppend(dataPath_);
    kvr_.SetPrompt(&prompt_);
    if (!opened) {
        prompt_.Message(kCanNotWriteOutputText);
        return false;
    }
    const int64_t before = FileSizeOf(dataPath_);
    const bool written = write();
    const bool closed = kvr_.CloseFile();
    if (written && closed) return true;
    // The disk refused the record: the file is cut back to the last whole record, so that what
    // was written before stays readable, and the recording ends.
    if (before >= 0 && ::truncate(dataPath_.c_str(), before) != 0) {
        // Nothing more can be done; the reader counts whole records only.
    }
    StopRecording();
    return false;
}

void LiveAcquisition::WriteProfile(const ProfileRecord& record, const NodeRef& node) {
    if (!AppendToDataFile([&] { return kvr_.WriteProfile(record); })) return;
    ++profilesWritten_;
    pmk_.AppendProfileNode(node, prompt_);
}

void LiveAcquisition::WriteWave() {
    // A wave burst has no tree of its own in the .pmk: its trees are counted as profiles.
    AppendToDataFile([&] { return kvr_.WriteWaveBurst(wave_); });
}

}  // namespace rm
