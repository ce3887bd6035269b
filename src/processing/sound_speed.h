#pragma once
// Speed of sound in water and the correction factor of a profile: the ratio of the sound speed
// of the water as the user corrects it to the one the instrument worked with. Velocities that
// no matrix transforms, shallow-water velocities, and bottom-track velocities and depths are
// multiplied by the factor (SoundSpeedFactor in processing_steps.h).

namespace rm {

// m/s, for salinity in ppt, temperature in degC and depth in metres:
// 1449.2 + T (4.6 + T (-0.055 + 0.00029 T)) + (S - 35) (1.34 - 0.01 T) + 0.016 D.
double SoundSpeed(double salinity, double temperature, double depth);

}  // namespace rm
