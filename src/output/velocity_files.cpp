#include "output/velocity_files.h"

#include <cmath>

namespace rm {

namespace {
constexpr double kMissingSpeed = 32767.0;
constexpr double kMissingFirstComponent = 3270.0;
constexpr double kDegreesPerRadian = 57.29577951;
}  // namespace

SpeedDirection VelocitySpeedDirection(double u, double v) {
    if (u >= kMissingFirstComponent) return {kMissingSpeed, 0.0};
    SpeedDirection out;
    out.speed = std::sqrt(v * v + u * u);
    if (std::fabs(u) >= 0.001) {
        out.direction = 90.0 - std::atan2(v, u) * kDegreesPerRadian;
        if (out.direction < 0.0) out.direction += 360.0;
    } else {
        out.direction = v < 0.0 ? 180.0 : 0.0;
    }
    return out;
}

std::vector<std::string> VelocityComponentExtensions(int coordinateSystem, int beams) {
    std::vector<std::string> names;
    switch (coordinateSystem) {
        case 0: names = {".v1", ".v2", ".v3", ".v4"}; break;
        case 1: names = {".vx", ".vy", ".vz", ".vz2"}; break;
        default: names = {".ve", ".vn", ".vu", ".vu2"}; break;
    }
    names.resize(beams > 3 ? 4 : 3);
    return names;
}

}  // namespace rm
