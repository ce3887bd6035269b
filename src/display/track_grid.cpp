#include "display/track_grid.h"

#include <cmath>
#include <cstdio>

namespace rm {

namespace {
constexpr const char* kDegreeSign = "\u00B0";
}  // namespace

double AutomaticGridSpacing(double span) {
    const double x = std::fabs(span / 4.0);
    if (!(x > 0.0) || !std::isfinite(x)) return 0.0;
    double p = 1.0;
    while (x > p) p *= 10.0;
    while (x < p) p *= 0.1;
    if (5.0 * p < x) return 5.0 * p;
    if (2.0 * p >= x) return p;
    return 2.0 * p;
}

DialogCheck CheckGridSpacing(double spacing, int unitSystem) {
    const bool metric = unitSystem == 1;
    const double low = metric ? 1.0 : 3.0;
    const double high = metric ? 1000.0 : 3000.0;
    if (spacing >= low && spacing <= high) return DialogCheck::Pass();
    return DialogCheck::Fail("MapGridSpacing", metric ? kGridSpacingMetricMessage : kGridSpacingEnglishMessage);
}

std::string LatLonLabel(double degrees) {
    const bool negative = degrees < 0.0;
    const double magnitude = std::fabs(degrees);
    int whole = static_cast<int>(magnitude);
    const double minutesAll = (magnitude - whole) * 60.0;
    int minutes = static_cast<int>(minutesAll);
    double seconds = (minutesAll - minutes) * 60.0;
    const bool roundSeconds = std::fabs(seconds - std::round(seconds)) < 0.05;
    // Seconds that print as 60 carry (only whole seconds can: the others lie below 59.95).
    if (roundSeconds && std::round(seconds) >= 60.0) {
        seconds = 0.0;
        if (++minutes == 60) {
            minutes = 0;
            ++whole;
        }
    }
    char text[64];
    int n = 0;
    if (negative && whole == 0)
        n = std::snprintf(text, sizeof text, "%3s%s", "-0", kDegreeSign);
    else
        n = std::snprintf(text, sizeof text, "%3d%s", negative ? -whole : whole, kDegreeSign);
    n += std::snprintf(text + n, sizeof text - static_cast<size_t>(n), "%2d'", minutes);
    std::snprintf(text + n, sizeof text - static_cast<size_t>(n), roundSeconds ? "%2.0f\"" : "%2.2f\"", seconds);
    return text;
}

std::string TrackAxisLabel(double value, double spacing) {
    char text[64];
    const bool whole = spacing >= 1.0 && std::fabs(spacing - std::round(spacing)) < 1e-9;
    std::snprintf(text, sizeof text, whole ? "%.0f" : "%.1f", value);
    // "-0" of a value a hair below zero.
    if (std::string(text) == "-0" || std::string(text) == "-0.0") return whole ? "0" : "0.0";
    return text;
}

}  // namespace rm
