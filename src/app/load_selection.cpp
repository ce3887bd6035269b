#include "app/load_selection.h"

#include <unistd.h>

#include <climits>
#include <cstdio>
#include <fstream>
#include <sstream>

namespace rm {

LoadGroupType GroupTypeFor(bool averageOver, int32_t n) {
    if (averageOver) return LoadGroupType::AverageOver;
    return n == 1 ? LoadGroupType::EveryProfile : LoadGroupType::SelectEvery;
}

int32_t LoadCount(int32_t start, int32_t end, int32_t step) {
    if (step < 1) step = 1;
    const int64_t chosen = static_cast<int64_t>(end) - start + 1;
    return static_cast<int32_t>((chosen / step - 1) + 1);
}

int64_t PerProfileMemory(const ProfileMemoryFacts& f) {
    const int64_t w = (f.waveBursts && f.burstInterval > 0)
                          ? (3 * static_cast<int64_t>(f.pseriesLength) + 80) / f.burstInterval
                          : 0;
    const int64_t c = f.cells, b = f.beams;
    return w + 18 * (f.bottomTrack + 2 * f.pulseCoherent) + 12 +
           4 * ((c + 1) * b + 2 * (f.externalSensor + 2 * (3 * f.gps + f.ctd))) + 4 * c * b + 84;
}

int64_t LoadLimit(uint64_t availableBytes, int64_t perProfileBytes) {
    if (perProfileBytes <= 0) return INT64_MAX;
    return static_cast<int64_t>(availableBytes / 4 / static_cast<uint64_t>(perProfileBytes));
}

std::string LoadLimitMessage(int64_t limit) {
    const int shown = limit > INT_MAX ? INT_MAX : static_cast<int>(limit);
    char text[128];
    std::snprintf(text, sizeof text, "Please reduce the number of profiles below %4d to meet system requirements", shown);
    return text;
}

std::optional<uint64_t> AvailableMemoryFromMeminfo(const std::string& meminfoText) {
    std::istringstream lines(meminfoText);
    std::string line;
    std::optional<uint64_t> available;
    uint64_t swapFree = 0;
    while (std::getline(lines, line)) {
        unsigned long long kilobytes = 0;
        if (std::sscanf(line.c_str(), "MemAvailable: %llu kB", &kilobytes) == 1) available = kilobytes * 1024;
        if (std::sscanf(line.c_str(), "SwapFree: %llu kB", &kilobytes) == 1) swapFree = kilobytes * 1024;
    }
    if (!available) return std::nullopt;
    return *available + swapFree;
}

uint64_t AvailableMemoryBytes() {
    std::ifstream meminfo("/proc/meminfo");
    if (meminfo) {
        std::stringstream text;
        text << meminfo.rdbuf();
        if (auto bytes = AvailableMemoryFromMeminfo(text.str())) return *bytes;
    }
    const long pages = sysconf(_SC_AVPHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    return (pages > 0 && pageSize > 0) ? static_cast<uint64_t>(pages) * static_cast<uint64_t>(pageSize) : 0;
}

int32_t StartFieldValue(int32_t typed, int32_t profileCount) {
    return (typed == 0 || typed > profileCount) ? 1 : typed;
}

int32_t EndFieldValue(int32_t typed, int32_t profileCount) {
    return (typed == 0 || typed > profileCount) ? profileCount : typed;
}

LoadDialogResult ApplyLoadDialog(const LoadDialogInput& input, int32_t profileCount,
                                 const ProfileMemoryFacts& facts, uint64_t availableBytes) {
    LoadDialogResult result;
    result.start = input.allProfiles ? 1 : input.start;
    result.end = input.allProfiles ? profileCount : input.end;
    if (input.n < 1 || input.n > kMaxLoadStep) {
        result.message = "Please enter an integer between 1 and 99999999.";
        return result;
    }
    result.step = input.n;
    result.groupType = GroupTypeFor(input.averageOver, input.n);
    if (result.end <= result.start) {
        result.message = "End Profile Number must be greater than Start Profile Number";
        result.end = profileCount;
        return result;
    }
    const int64_t limit = LoadLimit(availableBytes, PerProfileMemory(facts));
    const int64_t chosen = static_cast<int64_t>(result.end) - result.start + 1;
    if (limit < INT64_MAX / kMaxLoadStep && chosen > limit * result.step) {
        result.message = LoadLimitMessage(limit);
        return result;
    }
    result.count = LoadCount(result.start, result.end, result.step);
    result.accepted = true;
    return result;
}

}  // namespace rm
