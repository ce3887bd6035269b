#pragma once
// Conversion of processing values to display units. Metric values pass unchanged; in English
// units velocities (cm/s) become ft/s, lengths feet, temperatures degF, pressures psi and
// discharges cubic feet per second. MissingValue is never converted.

namespace rm {

constexpr double kFeetPerMetre = 3.280839895;
constexpr double kPsiPerDecibar = 1.450377;

enum class Quantity { None, Velocity, Speed, Length, Temperature, Pressure, Discharge };

// True for the English unit system (any value other than 1).
inline bool IsEnglish(int unitSystem) { return unitSystem != 1; }

// `value` in the metric unit of `quantity` (velocity cm/s, speed m/s, length m, temperature
// degC, pressure dbar, discharge m3/s) in the display unit of `unitSystem`.
double ToDisplayUnits(double value, Quantity quantity, int unitSystem);

}  // namespace rm
