#include "output/summary_statistics.h"

#include <cmath>

namespace rm {

namespace {
constexpr float kMissing = 32767.0f;
}

bool ComputeSummaryStatistics(const std::vector<float>& values, SummaryStatistics& out) {
    out = SummaryStatistics{};
    float sum = 0.0f;
    int n = 0;
    for (const float x : values) {
        if (x == kMissing) continue;
        sum += x;
        ++n;
    }
    if (n == 0) return false;
    out.mean = sum / static_cast<float>(n);
    out.minimum = 9999999.0f;
    out.maximum = -9999999.0f;
    float squares = 0.0f;
    for (const float x : values) {
        if (x == kMissing) continue;
        if (x < out.minimum) out.minimum = x;
        if (x > out.maximum) out.maximum = x;
        const float dx = x - out.mean;
        squares += dx * dx;
    }
    out.variance = n > 1 ? squares / static_cast<float>(n - 1) : 0.0f;
    out.deviation = std::sqrt(out.variance);
    if (out.variance > 1e-10f) {
        float cubes = 0.0f, fourths = 0.0f;
        for (const float x : values) {
            if (x == kMissing) continue;
            const float z = (x - out.mean) / out.deviation;
            cubes += z * z * z;
            fourths += z * z * z * z;
        }
        out.skewness = cubes / static_cast<float>(n);
        out.kurtosis = fourths / static_cast<float>(n) - 3.0f;
    }
    return true;
}

}  // namespace rm
