#include "data/profile_record.h"

#include <algorithm>

namespace rm {

void ProfileRecord::Resize(int cellCount, int beamCount) {
    cells = std::max(cellCount, 0);
    beams = std::max(beamCount, 0);
    const size_t n = static_cast<size_t>(cells) * static_cast<size_t>(beams);
    velocity.assign(n, kBadVelocity);
    stdError.assign(n, 0);
    amplitude.assign(n, 0);
}

uint32_t WaveBurst::Sample(size_t i) const {
    const size_t at = i * 3;
    if (at + 3 > samples.size()) return 0;
    return static_cast<uint32_t>(samples[at]) | (static_cast<uint32_t>(samples[at + 1]) << 8) |
           (static_cast<uint32_t>(samples[at + 2]) << 16);
}

void WaveBurst::SetSample(size_t i, uint32_t value) {
    const size_t at = i * 3;
    if (at + 3 > samples.size()) samples.resize(at + 3, 0);
    samples[at] = static_cast<uint8_t>(value & 0xFF);
    samples[at + 1] = static_cast<uint8_t>((value >> 8) & 0xFF);
    samples[at + 2] = static_cast<uint8_t>((value >> 16) & 0xFF);
}

}  // namespace rm
