#include "output/space_check.h"

#include <sys/statvfs.h>

namespace rm {

uint64_t AsciiSpaceNeeded(AsciiOutputKind kind, int first, int last, int cells, int beams) {
    const uint64_t profiles = last >= first ? static_cast<uint64_t>(last - first) + 1 : 1;
    const uint64_t c = cells > 0 ? static_cast<uint64_t>(cells) : 0;
    const uint64_t b = beams > 0 ? static_cast<uint64_t>(beams) : 0;
    switch (kind) {
        case AsciiOutputKind::Header: return 41 * profiles * 3;
        case AsciiOutputKind::SignalStrength: return (5 * c + 8) * b * profiles;
        case AsciiOutputKind::StdDeviation:
        case AsciiOutputKind::SnRatio: return (6 * c + 8) * b * profiles;
        case AsciiOutputKind::Gps: return 135 * profiles;
        case AsciiOutputKind::Velocity: return (c + 1) * (b + 2) * profiles * 8;
        case AsciiOutputKind::Configuration: break;
    }
    return 10000;
}

bool SpaceTooSmall(uint64_t freeBytes, uint64_t needed) {
    const uint64_t high = freeBytes >> 32;
    const uint64_t low = freeBytes & 0xFFFFFFFFull;
    return high == 0 && low < needed + 20;
}

std::optional<uint64_t> FreeDriveBytes(const std::string& folder) {
    struct statvfs info {};
    if (statvfs(folder.empty() ? "." : folder.c_str(), &info) != 0) return std::nullopt;
    return static_cast<uint64_t>(info.f_bavail) * static_cast<uint64_t>(info.f_frsize);
}

}  // namespace rm
