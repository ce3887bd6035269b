#pragma once
// Plausible echo amplitude and velocity standard error for the cells of a synthetic profile.
//
// Amplitude (counts) decays with the range below the transducer from 200 toward a noise floor
// of 30 (scale 15 m), each beam a little weaker than the one before; the cell that holds the
// bed echoes at 230, and cells beyond the bed fade back to the floor. The floor stays far
// above any plausible beam noise level, so a signal-to-noise test never ends a profile early.
//
// The standard error (velocity units of the raw data, mm/s) grows with range from a base of
// the velocity noise or 5 mm/s, whichever is larger; 255 marks a cell without a velocity.

#include <cstdint>

namespace rm::sim {

constexpr uint8_t kMissingStdError = 255;

// `rangeM`: depth below the transducer of the cell's centre; `bedRangeM`: of the bed.
uint8_t EchoAmplitude(double rangeM, double bedRangeM, double cellM, int beam);

uint8_t VelocityStdError(double rangeM, double noiseCms);

}  // namespace rm::sim
