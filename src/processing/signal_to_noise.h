#pragma once
// Signal-to-noise ratio of a cell: (amplitude - noise level of the beam) x 0.43 dB per count,
// never below 0. The noise level per beam stands in the profile header's bytes 26 to 29
// (bytes the header otherwise keeps as read), one unsigned count per beam.

#include <cstddef>
#include <cstdint>

#include "data/profile_record.h"

namespace rm {

constexpr size_t kNoiseLevelOffset = 26;
constexpr double kSnrDecibelsPerCount = 0.43;

// Noise level of a beam (0 to 3), counts; 0 for other beams.
uint8_t BeamNoiseLevel(const ProfileHeader& header, int beam);
// dB; 0 for a cell or beam outside the record.
double CellSnr(const ProfileRecord& record, int beam, int cell);

}  // namespace rm
