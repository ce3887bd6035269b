#pragma once
// The variables the contour and the profile graphs show, their names in the lists and on the
// legends, their units, and the values of one profile's cells in display units.
//
// Units: velocities and standard deviations in m/s (metric) or ft/s (English), amplitude in
// counts, SNR in dB, depths and distances in m or ft. The processing accessor gives velocities
// in cm/s in metric; the pictures show m/s, the unit of every text they print.

#include <array>
#include <optional>
#include <string>

#include "processing/processing_context.h"
#include "processing/profile_value_parts.h"

namespace rm {

enum class DisplayVariable { Velocity, Amplitude, StdDev, Snr, Velocity3D };

// Components are those of the processing accessor: 0 to 3 a beam or axis (named " Beam1/X/E"
// ... " Beam4" on the legends), kComponentMean (4) the mean over the beams, kComponentMagnitude
// (5) the horizontal speed and kComponentDirection (6) the direction (velocities only).

// "Velocity", "Amplitude", "SNR", "Velocity-3D" in the contour's list (Std Dev has no contour:
// nothing).
std::optional<std::string> ContourVariableName(DisplayVariable variable);
// "Velocity", "Amplitude", "Std Dev", "SNR", "Velocity - 3D" in the profile graphs' list.
std::string GraphVariableName(DisplayVariable variable);
// The contour's choice as the settings store it ("ContourDisplayVariable": 0 Velocity,
// 1 Amplitude, 2 SNR, 3 Velocity-3D); nothing for another code.
std::optional<DisplayVariable> ContourVariableOfCode(int code);
int ContourVariableCode(DisplayVariable variable);
// " Beam1/X/E", " Beam2/Y/N", " Beam3/Z/U", " Beam4", and " Mean", " Speed", " Direction".
std::string ComponentName(int component);
// Whether `component` makes sense for the variable (directions and magnitudes of velocities only).
bool ComponentAllowed(DisplayVariable variable, int component);

// The unit of the variable's values: "m/s" or "ft/s", "counts", "dB"; "deg" for a direction.
std::string ValueUnitText(DisplayVariable variable, int component, int unitSystem);
// "m" or "ft".
std::string LengthUnitText(int unitSystem);
// Length in metres in the display unit (MissingValue stays).
double LengthForDisplay(double metres, int unitSystem);
// A velocity in cm/s (as processing keeps it) in m/s or ft/s (MissingValue stays).
double VelocityForDisplay(double cmPerSecond, int unitSystem);

// The cells of one profile in display units; MissingValue where there is no value.
struct CellColumn {
    int cells = 0;
    std::array<double, kMaxCells> value{};
    // The shallow-water cell's value (velocity variables only; MissingValue otherwise).
    double shallow = MissingValue;
};

// The values of every cell of the profile in `slot` for the variable and component, in the
// coordinate system and reference given (velocity variables). One pass of the velocity chain
// serves the whole profile.
void ReadCellColumn(const ProcessingContext& ctx, DisplayVariable variable, int component, int coordinateSystem,
                    int reference, int slot, CellColumn& out);

}  // namespace rm
