#pragma once
// The free-space test that runs before any file of the "ASCII File Output" set is touched:
// the bytes a kind needs for a range of profiles, and the drive's free space.

#include <cstdint>
#include <optional>
#include <string>

#include "output/ascii_output_kind.h"

namespace rm {

constexpr const char* kNotEnoughSpace = "Not enough available drive space to save to: ";

// Bytes needed by `kind` for profiles `first` to `last` with `cells` cells and `beams` beams
// (n = last - first): header 41 (n+1) 3; signal strength (5c+8) b (n+1); standard deviation
// and signal-to-noise (6c+8) b (n+1); GPS 135 (n+1); velocity (c+1)(b+2)(n+1) 8; the
// configuration 10000.
uint64_t AsciiSpaceNeeded(AsciiOutputKind kind, int first, int last, int cells, int beams);

// The free space is too small when its high 32 bits are zero and its low 32 bits are below
// the need plus 20; a drive with 4 GiB or more free always passes.
bool SpaceTooSmall(uint64_t freeBytes, uint64_t needed);

// Free bytes for an unprivileged user on the drive of `folder`; nothing when it cannot be asked.
std::optional<uint64_t> FreeDriveBytes(const std::string& folder);

}  // namespace rm
