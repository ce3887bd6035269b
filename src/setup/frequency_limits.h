#pragma once
// The profiling limits of each system frequency, and the limits derived from them and from what
// the instrument told: least and greatest cell size, the greatest blanking distance, and the
// profiling range that a cell layout reaches.

#include <optional>
#include <string>

namespace rm {

// One row of the system's limits by frequency index; lengths in metres.
struct FrequencyLimits {
    int index;
    int frequencyKHz;
    double workingRangeM;
    double absoluteRangeM;
    double leastCellM;
    double greatestCellM;
};

// The row of a frequency index 0 to 7; nothing for any other index.
std::optional<FrequencyLimits> FrequencyLimitsFor(int frequencyIndex);

// The row for an index as the tree stores it (any number); nothing unless it is a whole 0 to 7.
std::optional<FrequencyLimits> FrequencyLimitsForValue(double index);

// The text for a frequency index without a row: no limit can be checked without one.
std::string UnknownFrequencyMessage(double index);

// Cell size limits in whole millimetres.
struct CellSizeLimitsMm {
    long least;
    long greatest;
};

// The told limits `MinCellSizeInCm` and `MaxCellSizeInCm` x 10, truncated to millimetres; a
// negative result (the instrument told nothing, stored as -1.0) takes the table's value.
CellSizeLimitsMm CellSizeLimits(const FrequencyLimits& limits, double minCellSizeInCm, double maxCellSizeInCm);

// The greatest blanking distance in centimetres: the working range less the least cell size.
double BlankLimitCm(const FrequencyLimits& limits, const CellSizeLimitsMm& cells);

// The far end of the last cell from the transducer, in centimetres:
// (cells + 0.5) x cell size + blanking distance.
double ProfilingRangeCm(double numberOfCells, double cellSizeCm, double blankingDistanceCm);

// a <= b, forgiving the rounding of decimal fractions, so that a value exactly on a limit
// written in other units (metres against centimetres) passes.
bool AtMost(double a, double b);

}  // namespace rm
