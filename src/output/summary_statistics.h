#pragma once
// The single-precision statistics routine of the discharge summary: mean, standard deviation,
// minimum, maximum, variance, skewness and kurtosis (less 3) of a set of values, where 32767.0
// marks a missing value that is left out everywhere.

#include <vector>

namespace rm {

// The routine's result record of seven floats, in the routine's order.
struct SummaryStatistics {
    float mean = 0.0f;
    float deviation = 0.0f;
    float minimum = 0.0f;
    float maximum = 0.0f;
    float variance = 0.0f;
    float skewness = 0.0f;
    float kurtosis = 0.0f;
};

// Fills `out`; false (and mean and deviation 0) when no value is present. The variance divides
// by n - 1 and is 0 for a single value; skewness and kurtosis are formed only when the variance
// exceeds 1e-10.
bool ComputeSummaryStatistics(const std::vector<float>& values, SummaryStatistics& out);

}  // namespace rm
