#pragma once
// The arithmetic of the load dialog: which profiles of a data file reach the document, and
// whether the machine has the memory to hold them.

#include <cstdint>
#include <optional>
#include <string>

namespace rm {

// How the chosen profiles are grouped on loading.
enum class LoadGroupType : int32_t { SelectEvery = 0, AverageOver = 1, EveryProfile = 2 };

// "Select every" with N of 1 is every profile; otherwise the radio choice decides.
LoadGroupType GroupTypeFor(bool averageOver, int32_t n);

// ((end - start + 1) / step - 1) + 1 in integer division: the profiles that reach the document.
int32_t LoadCount(int32_t start, int32_t end, int32_t step);

// The file facts that size one profile in memory.
struct ProfileMemoryFacts {
    int32_t cells = 0;
    int32_t beams = 0;
    int32_t gps = 0;             // 0 or 1
    int32_t ctd = 0;             // 0 or 1
    int32_t externalSensor = 0;  // 0 or 1
    int32_t bottomTrack = 0;     // the file's bottom-track value
    int32_t pulseCoherent = 0;   // 0 or 1
    bool waveBursts = false;
    int32_t pseriesLength = 0;
    int32_t burstInterval = 0;
};

// Bytes one profile takes in memory:
// w + 18 (t + 2p) + 12 + 4 ((C + 1) B + 2 (x + 2 (3g + c))) + 4 C B + 84, with
// w = (3 PseriesLength + 80) / burst interval for files with wave bursts, else 0.
// A burst interval of 0 or less counts as no wave data, so that nothing divides by zero.
int64_t PerProfileMemory(const ProfileMemoryFacts& facts);

// L = (available bytes / 4) / M in integer division.
int64_t LoadLimit(uint64_t availableBytes, int64_t perProfileBytes);

// "Please reduce the number of profiles below %4d to meet system requirements" with L.
std::string LoadLimitMessage(int64_t limit);

// An estimate of the memory a load may use, standing for the platform's available page
// file: MemAvailable plus SwapFree of /proc/meminfo, or the free physical pages when that
// file cannot be read.
uint64_t AvailableMemoryBytes();
// The same sum from the text of a meminfo file; nullopt when MemAvailable is not in it.
std::optional<uint64_t> AvailableMemoryFromMeminfo(const std::string& meminfoText);

// The start field on leaving it: 0 or above the profile count falls back to 1.
int32_t StartFieldValue(int32_t typed, int32_t profileCount);
// The end field on leaving it: 0 or above the profile count falls back to the count.
int32_t EndFieldValue(int32_t typed, int32_t profileCount);

// The dialog shows the file size as FormatFileSize of data/record_dumps.h does.

constexpr int32_t kMaxLoadStep = 99999999;

// What the person chose in the dialog.
struct LoadDialogInput {
    bool allProfiles = true;  // "All Profiles (Default)"; else "Selected Profiles"
    int32_t start = 1;
    int32_t end = 0;
    bool averageOver = false;  // "Average over"; else "Select every"
    int32_t n = 1;
};

// The outcome of OK: either accepted with the load fields, or a message and the dialog
// stays open (with the end field possibly reset).
struct LoadDialogResult {
    bool accepted = false;
    std::string message;
    int32_t start = 1;
    int32_t end = 0;
    int32_t step = 1;
    int32_t count = 0;
    LoadGroupType groupType = LoadGroupType::EveryProfile;
};

// The OK button, in its order: group type; end above start, else the message and end back
// to the profile count; the memory limit. An N outside 1..99999999 is refused with
// "Please enter an integer between 1 and 99999999.".
LoadDialogResult ApplyLoadDialog(const LoadDialogInput& input, int32_t profileCount,
                                 const ProfileMemoryFacts& facts, uint64_t availableBytes);

}  // namespace rm
