#include "display/track_texts.h"

#include <cstdio>

#include "processing/processing_types.h"

namespace rm {

namespace {
constexpr const char* kDegreeSign = "\u00B0";
}  // namespace

const char* VelocityUnitText(int unitSystem) { return unitSystem == 1 ? "m/s" : "ft/s"; }

std::string TrackHoverText(int profile, double speed, double direction, int unitSystem) {
    char text[160];
    if (IsMissing(speed))
        std::snprintf(text, sizeof text, "Profile# %d; Speed= -- %s; Dir= -- %s", profile, VelocityUnitText(unitSystem),
                      kDegreeSign);
    else
        std::snprintf(text, sizeof text, "Profile# %d; Speed=%.2f %s; Dir=%.1f%s", profile, speed,
                      VelocityUnitText(unitSystem), direction, kDegreeSign);
    return text;
}

std::string ScaleBarText(int unitSystem) { return std::string("1.0 ") + VelocityUnitText(unitSystem); }

}  // namespace rm
