#include "display/pixel_mapping.h"

#include <algorithm>
#include <cmath>

namespace rm {

namespace {
constexpr double kFarPixel = 1.0e6;  // keeps absurd values inside the int range
}

int AxisMapping::ToPixel(double u) const {
    if (!Valid() || std::isnan(u)) return p0;
    const double pixel = (u - v0) * (p1 - p0) / (v1 - v0) + p0;
    return static_cast<int>(std::clamp(pixel, -kFarPixel, kFarPixel));  // truncation toward zero
}

double AxisMapping::ToValue(double pixel) const {
    if (!Valid()) return v0;
    return (pixel - p0) * (v1 - v0) / (p1 - p0) + v0;
}

PlotMapping PlotMapping::Of(const QRect& rect, double x0, double x1, double y0, double y1) {
    PlotMapping m;
    m.x = AxisMapping{x0, x1, rect.left(), rect.left() + rect.width()};
    m.y = AxisMapping{y0, y1, rect.top(), rect.top() + rect.height()};
    return m;
}

}  // namespace rm
