#include "processing/vector_direction.h"

#include <cmath>

#include "processing/processing_types.h"

namespace rm {

namespace {
constexpr double kLargestComponent = 3270.0;
constexpr double kSmallestX = 0.001;
constexpr double kDegreesPerRadian = 57.29577951;

// A missing y (32767) is treated like a missing x, so that no bearing is made from it.
bool Missing(double x, double y) { return x > kLargestComponent || y > kLargestComponent; }
}  // namespace

double VectorMagnitude(double x, double y) {
    if (Missing(x, y)) return MissingValue;
    return std::sqrt(x * x + y * y);
}

double VectorDirection(double x, double y) {
    if (Missing(x, y)) return 0.0;
    if (std::fabs(x) < kSmallestX) return y < 0.0 ? 180.0 : 0.0;
    double direction = 90.0 - std::atan2(y, x) * kDegreesPerRadian;
    if (direction < 0.0) direction += 360.0;
    return direction;
}

}  // namespace rm
