#pragma once
// CKvrData: owner of the instrument's records and of one .kvr data file. It writes the file
// during acquisition (head, then one record a profile, wave bursts interleaved) and reads it
// for playback: validation, the head, record counting, at most one seek and one read a profile
// into a ring of cache slots, averaging of consecutive profiles on load and velocity unwrapping.
//
// Writing:  set conf, oper, user (and calibration when the instrument has one);
//           CreateDataFile(path); WriteHeader(); WriteProfile(record)...; CloseFile().
// Reading:  OpenFile(path); Validate(); ReadHeader(false); ProfileCount();
//           LoadProfile(i, slot); Slot(slot).

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "data/instrument_records.h"
#include "data/kvr_file_layout.h"
#include "data/profile_codec.h"
#include "data/profile_record.h"

namespace rm {

class UserPrompt;

// Results of the reading operations.
constexpr int kReadOk = 0;
constexpr int kReadError = 1;        // short read, or no file open
constexpr int kReadBadChecksum = 2;  // the record is in its slot all the same
constexpr int kReadOutOfRange = 3;   // profile index outside the file
constexpr int kReadBadLayout = 4;    // ReadHeader: cells 0 or above 128, beams 0 or above 4
constexpr int kReadBadRecords = 5;   // ReadHeader: the configuration fails its validity ranges

constexpr int kDefaultCacheCapacity = 3000;
constexpr int kCacheMaxCells = 128;  // the arrays of one record fit a 2048-byte scratch block
constexpr int kCacheMaxBeams = 4;
constexpr int kDefaultUnwrapThreshold = 10;

// How the load dialog asked for profiles: every P-th, the mean of P consecutive ones, or all.
enum class GroupType { SelectEvery = 0, Average = 1, EveryProfile = 2 };

// Date and time as a profile header carries them.
struct ProfileTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, hundredths = 0;
};
ProfileTime TimeOfHeader(const ProfileHeader& header);

class CKvrData {
public:
    CKvrData();
    ~CKvrData();
    CKvrData(const CKvrData&) = delete;
    CKvrData& operator=(const CKvrData&) = delete;

    // The records, decoded, each with its raw image. A writer may leave conf.raw empty and
    // oper.raw all zero: the decoded fields are written over the raw image in any case.
    InstrumentConf conf;
    OperationRecord oper;
    UserSetup user;
    std::vector<uint8_t> calibration;  // the 250-byte sensor calibration block, when present
    DerivedValues derived;

    // Where messages to the user go; the default prints to stderr.
    void SetPrompt(UserPrompt* prompt);

    // --- the file ---
    // For reading ("rb"). Reopening the path read last keeps its head and layout, so playback
    // may open and close the file around every record; another path needs ReadHeader.
    bool OpenFile(const std::string& path);
    bool CreateDataFile(const std::string& path);  // created empty, read-write; messages on failure
    bool OpenForAppend(const std::string& path);   // existing file, read-write, writes at the end
    // Closes the file; false (with the disk message) when buffered bytes could not be written.
    bool CloseFile();
    bool IsOpen() const { return file_ != nullptr; }
    const std::string& Path() const { return path_; }

    // --- reading ---
    // 0 when the open file starts with a valid configuration record, 1 otherwise. Position 0 after.
    int Validate();
    // Reads the records, derives values, computes the layout and the counts, and the times of
    // the first and last profile. `loadWaves` also reads the first wave burst. kReadOk,
    // kReadError on a short read, kReadBadRecords or kReadBadLayout (nothing is allocated then).
    int ReadHeader(bool loadWaves);
    // As ReadHeader without the counts, with profile `index` for the time of the last profile.
    int ReadInitial(int index);
    // Recounts the records of a file that has grown; the layout must be known.
    int CountRecordsInFile();
    // Reads profile `index` into cache slot `slot` (taken modulo the capacity), or into its
    // group slot when averaging; unwraps pulse-coherent velocities. kReadOk, kReadError,
    // kReadBadChecksum (the record stays in its slot) or kReadOutOfRange.
    int ReadProfile(int index, int slot, bool skipArrays = false);
    // Range check, ReadProfile, and with averaging CombineGroup at the last profile of a group.
    int LoadProfile(int index, int slot);
    // Loads the `group`-th selection of the load dialog into `slot`: profile first + group x P
    // for "select every", the mean of P profiles for "average over", first + group otherwise.
    int LoadGroup(int group, int slot);
    int ReadWaveBurst(int burst, WaveBurst& out);

    int FileVersion() const { return fileVersion_; }
    const ProfileLayout& Layout() const { return layout_; }
    const WaveSetup& Waves() const { return waves_; }
    int64_t HeaderSize() const { return headerLength_; }    // H
    int64_t RecordSize() const { return static_cast<int64_t>(layout_.RecordSize()); }  // S
    int64_t BurstSize() const { return waves_.burstSize; }   // W
    int ProfileCount() const { return profileCount_; }
    int BurstCount() const { return burstCount_; }
    int64_t FileSize() const { return fileSize_; }
    // Profiles that the current selection turns into cache slots.
    int GroupCount() const;
    int64_t ProfilePosition(int index) const;
    int64_t ProfilePositionWithoutBursts(int index) const;
    ProfileTime FirstProfileTime() const { return TimeOfHeader(firstHeader_); }
    ProfileTime LastProfileTime() const { return TimeOfHeader(lastHeader_); }
    const WaveBurst& FirstWaveBurst() const { return firstBurst_; }

    // --- the cache ---
    void SetCacheCapacity(int slots);  // at least 1; slots are re-sized at once when the layout is known
    int CacheCapacity() const { return capacity_; }
    // Index modulo the capacity, never negative.
    int SlotOf(int index) const { return ((index % capacity_) + capacity_) % capacity_; }
    ProfileRecord& Slot(int slot) { return slots_[static_cast<size_t>(SlotOf(slot))]; }
    const ProfileRecord& Slot(int slot) const { return slots_[static_cast<size_t>(SlotOf(slot))]; }

    // --- selecting and averaging ---
    // P is at least 1; firstIndex is the first profile of the selection (from 0).
    void SetGrouping(int groupNumber, GroupType type, int firstIndex);
    int GroupNumber() const { return groupNumber_; }
    GroupType Grouping() const { return groupType_; }
    bool Averaging() const { return groupType_ == GroupType::Average && groupNumber_ > 1; }
    // Forms cache slot `slot` from the P group slots.
    void CombineGroup(int slot);

    void SetUnwrapThreshold(int threshold) { unwrapThreshold_ = threshold; }

    // --- writing ---
    // Raw conf (encoded when empty, always as version 2), raw oper, the re-encoded user and the
    // calibration block when the conf calls for it. False with the disk message on failure.
    bool WriteHeader();
    // False without writing when the record's cells or beams differ from the setup's.
    bool WriteProfile(const ProfileRecord& record);
    // False without writing when the setup has no wave bursts or the burst's sample count is
    // not the setup's; the writer does not place bursts, the caller does (WaveBurstFollows).
    bool WriteWaveBurst(const WaveBurst& burst);
    // True when a wave burst stands right after the first `profilesWritten` profiles.
    bool WaveBurstFollows(int64_t profilesWritten) const;
    // Bytes of samples in one burst record of the writer's setup.
    size_t WaveSampleBytes() const;
    int64_t BytesWritten() const { return bytesWritten_; }
    // The layout of written records (known after WriteHeader).
    const ProfileLayout& WriteLayout() const { return writeLayout_; }

private:
    int ReadRecords();
    int ComputeLayout();
    int ReadHeaderAt(int index, ProfileHeader& header);
    bool ReadExact(int64_t offset, uint8_t* buffer, size_t size);
    int64_t CurrentFileSize();
    void AllocateSlots();
    void ConfigureWriter();
    bool WriteBytes(const uint8_t* data, size_t size);
    void ReportWriteFailure();

    UserPrompt* prompt_;
    std::FILE* file_ = nullptr;
    std::string path_;
    bool writable_ = false;
    // Where the stream stands after the last read, so that reading the next record in the
    // file needs no seek; -1 when unknown (after opening, writing or finding the size).
    int64_t readPosition_ = -1;

    int fileVersion_ = 2;
    bool layoutReady_ = false;  // the head was read and its layout accepted
    ProfileLayout layout_;
    WaveSetup waves_;
    int64_t headerLength_ = 0;
    int64_t fileSize_ = 0;
    int profileCount_ = 0;
    int burstCount_ = 0;
    ProfileHeader firstHeader_;
    ProfileHeader lastHeader_;
    WaveBurst firstBurst_;

    int capacity_ = kDefaultCacheCapacity;
    std::vector<ProfileRecord> slots_;
    std::vector<uint8_t> recordBuffer_;

    int groupNumber_ = 1;
    GroupType groupType_ = GroupType::EveryProfile;
    int groupFirstIndex_ = 0;
    std::vector<ProfileRecord> groupSlots_;
    std::vector<const ProfileRecord*> groupOrder_;  // the group slots, oldest first

    int unwrapThreshold_ = kDefaultUnwrapThreshold;

    ProfileLayout writeLayout_;
    WaveSetup writeWaves_;
    bool writerReady_ = false;
    bool writeGpsDecided_ = false;
    std::vector<uint8_t> writeBuffer_;
    int64_t bytesWritten_ = 0;
};

}  // namespace rm
