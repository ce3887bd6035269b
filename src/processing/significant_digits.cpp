#include "processing/significant_digits.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace rm {

namespace {

// The shared steps: the decimal exponent d of the last kept digit, its power p, the truncated
// scaled value i and the hundredths f of the part cut off.
struct ScaledDigits {
    int d = 0;
    double p = 1.0;
    double i = 0.0;
    double f = 0.0;
};

ScaledDigits Scale(double value, int digits) {
    ScaledDigits s;
    const double a = std::fabs(value);
    int e = static_cast<int>(std::trunc(std::log10(a)));
    if (a < 1.0) e -= 1;
    s.d = digits - e - 1;
    s.p = std::pow(10.0, s.d);
    const double y = s.p * value;
    s.i = std::trunc(y);
    s.f = (y - s.i) * 100.0;
    return s;
}

bool Unscalable(double value) { return value == 0.0 || !std::isfinite(value); }

}  // namespace

std::string SignificantDigitsText(double value, int digits) {
    if (value == 0.0) return "0";
    char text[400];
    if (!std::isfinite(value)) {
        std::snprintf(text, sizeof text, "%f", value);
        return text;
    }
    ScaledDigits s = Scale(value, digits);
    if (s.f >= 49.999999999) s.i += 1.0;
    std::snprintf(text, sizeof text, "%.*f", std::max(s.d, 0), s.i / s.p);
    return text;
}

double SignificantDigitsValue(double value, int digits) {
    if (Unscalable(value)) return value;
    ScaledDigits s = Scale(value, digits);
    if (s.f >= 49.999999999) s.i += 1.0;
    return s.i / s.p;
}

double UsgsRoundedValue(double value, int digits) {
    if (Unscalable(value)) return value;
    ScaledDigits s = Scale(value, digits);
    if (s.f >= 50.999999999) {
        s.i += 1.0;
    } else if (s.f == 50.0) {
        s.i = 2.0 * std::trunc((s.i + 1.0) / 2.0);
    }
    return s.i / s.p;
}

}  // namespace rm
