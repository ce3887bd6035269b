#pragma once
// Text helpers shared by the setup rules: printf-style formatting of the fixed messages and the
// unit conversions that the messages use. Lengths are stored in centimetres in every unit
// system; only the texts shown to the user change with it.

#include <string>

namespace rm {

// snprintf into a std::string.
std::string FormatText(const char* format, ...) __attribute__((format(printf, 1, 2)));

// `UnitSystem` 1 is metric; every other value means English units.
inline bool IsMetricUnitSystem(int unitSystem) { return unitSystem == 1; }

constexpr double kFeetPerMetre = 3.28084;

// Metres into the unit of the display: unchanged when metric, feet otherwise.
inline double MetresForDisplay(double metres, bool metric) { return metric ? metres : metres * kFeetPerMetre; }
inline const char* LengthUnitWord(bool metric) { return metric ? "m" : "ft"; }

// Case-insensitive comparison of ASCII names, as the settings tree matches its keys.
bool SameKeyName(const std::string& a, const std::string& b);

}  // namespace rm
