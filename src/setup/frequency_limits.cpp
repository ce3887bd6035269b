#include "setup/frequency_limits.h"

#include <cmath>

#include "setup/setup_text.h"

namespace rm {

namespace {

constexpr FrequencyLimits kFrequencyTable[] = {
    {0, 3000, 6.0, 6.5, 0.15, 2.0},   {1, 1500, 24.0, 25.0, 0.25, 4.0},  {2, 750, 80.0, 80.0, 0.5, 8.0},
    {3, 500, 130.0, 130.0, 1.0, 12.0}, {4, 250, 200.0, 200.0, 1.0, 20.0}, {5, 1000, 45.0, 45.0, 0.25, 5.0},
    {6, 5000, 8.0, 8.0, 0.05, 1.0},    {7, 125, 500.0, 500.0, 4.0, 25.0},
};

// Metres of the table into whole millimetres; the table's values are exact in millimetres.
long TableMillimetres(double metres) { return std::lround(metres * 1000.0); }

long ToldOrTable(double toldCm, double tableM) {
    // A value that is not a number, or absurdly large, counts as not told.
    if (!std::isfinite(toldCm) || std::fabs(toldCm) > 1e9) return TableMillimetres(tableM);
    const long told = static_cast<long>(std::trunc(toldCm * 10.0));
    return told < 0 ? TableMillimetres(tableM) : told;
}

}  // namespace

std::optional<FrequencyLimits> FrequencyLimitsFor(int frequencyIndex) {
    for (const FrequencyLimits& row : kFrequencyTable)
        if (row.index == frequencyIndex) return row;
    return std::nullopt;
}

std::optional<FrequencyLimits> FrequencyLimitsForValue(double index) {
    if (!(index >= 0.0 && index < 256.0) || index != std::floor(index)) return std::nullopt;
    return FrequencyLimitsFor(static_cast<int>(index));
}

std::string UnknownFrequencyMessage(double index) {
    return FormatText("The system frequency index %g is not known, so the profiling limits cannot be checked.", index);
}

CellSizeLimitsMm CellSizeLimits(const FrequencyLimits& limits, double minCellSizeInCm, double maxCellSizeInCm) {
    return {ToldOrTable(minCellSizeInCm, limits.leastCellM), ToldOrTable(maxCellSizeInCm, limits.greatestCellM)};
}

double BlankLimitCm(const FrequencyLimits& limits, const CellSizeLimitsMm& cells) {
    return limits.workingRangeM * 100.0 - static_cast<double>(cells.least) * 0.1;
}

double ProfilingRangeCm(double numberOfCells, double cellSizeCm, double blankingDistanceCm) {
    return (numberOfCells + 0.5) * cellSizeCm + blankingDistanceCm;
}

bool AtMost(double a, double b) {
    const double tolerance = 1e-9 * std::fmax(1.0, std::fabs(b));
    return a <= b + tolerance;
}

}  // namespace rm
