#include "display/contour_colour.h"

#include <cmath>
#include <cstdint>

namespace rm {

namespace {
// Truncation toward zero, then the low eight bits. Values beyond the 64-bit range (an absurd
// range) are taken as 0 rather than invoking undefined behaviour.
int LowByte(double x) {
    if (!(std::fabs(x) < 9.0e18)) return 0;
    return static_cast<int>(static_cast<uint64_t>(static_cast<int64_t>(x)) & 0xFFu);
}
}  // namespace

QRgb ContourColour(double v, double a, double b) {
    const double w = b - a;
    const double t = v - a;
    double red = 0.0, green = 0.0, blue = 0.0;
    if (v <= a + 0.125 * w) {
        blue = 1024.0 * t / w + 127.0;
    } else if (v <= a + 0.375 * w) {
        green = 1020.0 * (t - 0.125 * w) / w;
        blue = 255.0;
    } else if (v <= a + 0.625 * w) {
        red = 1020.0 * (t - 0.375 * w) / w;
        green = 255.0;
        blue = 255.0 - 1020.0 * (t - 0.375 * w) / w;
    } else if (v <= a + 0.875 * w) {
        red = 255.0;
        green = 255.0 - 1020.0 * (t - 0.625 * w) / w;
    } else {
        red = 255.0 - 1024.0 * (t - 0.875 * w) / w;
    }
    return qRgb(LowByte(red), LowByte(green), LowByte(blue));
}

}  // namespace rm
