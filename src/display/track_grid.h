#pragma once
// The grid of the track map: the automatic spacing rule, the check of a spacing the person
// enters, and the texts of the grid labels (degrees of latitude and longitude when the track
// has a GPS origin, else track coordinates).

#include <string>

#include "processing/dialog_check.h"

namespace rm {

// The round spacing for a visible span of `span` display length units, with four divisions:
// x = |span / 4|; p starts at 1 and is multiplied by 10 while x > p, then by 0.1 while x < p;
// the spacing is 5p when 5p < x, else p when 2p >= x, else 2p. A span that is zero or not a
// number has no grid: 0.
double AutomaticGridSpacing(double span);

// The grid dialog's check of a spacing in display units: 1 to 1000 metres, or 3 to 3000 feet
// (any unit system other than 1 is English), both ends included.
DialogCheck CheckGridSpacing(double spacing, int unitSystem);
constexpr const char* kGridSpacingMetricMessage = "Grid spacing must be between 1 and 1000 meters";
constexpr const char* kGridSpacingEnglishMessage = "Grid spacing must be between 3 and 3000 feet";

// An angle in degrees as a grid label: degrees "%3d", the degree sign, minutes "%2d'", then the
// seconds "%2.0f\"" when they lie within 0.05 of a whole number, else "%2.2f\"". Minutes and
// seconds are of the magnitude; a negative angle of less than a degree shows " -0". Seconds
// that round up to 60 carry into the minutes. Texts are UTF-8 (the degree sign is U+00B0).
std::string LatLonLabel(double degrees);

// A grid line's value in track coordinates: "%.0f" when the spacing is a whole number of
// units, else "%.1f".
std::string TrackAxisLabel(double value, double spacing);

}  // namespace rm
