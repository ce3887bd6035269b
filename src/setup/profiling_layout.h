#pragma once
// The cell layout of a setup as the user sees it: the line of the profiling range and the table
// of cell depths relative to the sensor, in metres or feet.

#include <string>
#include <vector>

#include "data/node_tree.h"

namespace rm {

struct ProfilingLayout {
    double numberOfCells = 0.0;
    double cellSizeCm = 0.0;
    double blankingDistanceCm = 0.0;
};

// `Setup/NumberOfCells`, `CellSizeInCm` and `BlankingDistanceInCm`, 0 when missing. Throws
// VariantConversionError for a value that is not a number.
ProfilingLayout ReadProfilingLayout(const NodeRef& system);

// "Profiling Range: %6.2f - %6.2f m" (or ft): from the start of the first cell, half a cell
// beyond the blanking distance, to the end of the last cell.
std::string ProfilingRangeLine(const ProfilingLayout& layout, bool metric);

// The heading, then one line per cell with its number from 1 and the distance of its centre
// from the sensor: blanking distance + cell number x cell size.
std::vector<std::string> CellTableLines(const ProfilingLayout& layout, bool metric);

}  // namespace rm
