#include "processing/course_direction.h"

#include <cmath>

namespace rm {

namespace {
constexpr double kLargestComponent = 3270.0;
constexpr double kSmallestX = 0.001;
constexpr double kDegreesPerRadian = 57.29577951;
}  // namespace

double CourseDirection(double x, double y) {
    if (x > kLargestComponent) return 0.0;
    if (std::fabs(x) < kSmallestX) return y < 0.0 ? 180.0 : 0.0;
    double direction = 90.0 - std::atan2(y, x) * kDegreesPerRadian;
    if (direction < 0.0) direction += 360.0;
    return direction;
}

}  // namespace rm
