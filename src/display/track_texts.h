#pragma once
// The texts of the track map that do not depend on drawing: the hover text of a track point,
// the scale bar's label and the vector scale commands. Texts are UTF-8.

#include <string>

namespace rm {

// The hover text at a track point: "Profile# %d; Speed=%.2f %s; Dir=%.1f%c", or
// "Profile# %d; Speed= -- %s; Dir= -- %c" when the speed is missing (MissingValue or more).
// `profile` is one-based; `speed` is in the display unit, "m/s" in metric (unit system 1),
// else "ft/s"; `direction` in degrees; the last field is the degree sign.
std::string TrackHoverText(int profile, double speed, double direction, int unitSystem);

// The label of the scale bar: "1.0 m/s" or "1.0 ft/s".
std::string ScaleBarText(int unitSystem);
// The velocity unit of the unit system: "m/s" or "ft/s".
const char* VelocityUnitText(int unitSystem);

// "Increase length of velocity vectors (+)" and "Decrease length of velocity vectors (-)".
constexpr double kVectorScaleIncrease = 1.2;
constexpr double kVectorScaleDecrease = 0.8333333333333334;
inline double IncreasedVectorScale(double scale) { return scale * kVectorScaleIncrease; }
inline double DecreasedVectorScale(double scale) { return scale * kVectorScaleDecrease; }

}  // namespace rm
