#pragma once
// The first way of choosing the profiling layout: the user gives the depths to cover, measured
// from the transducer, and the cells are derived from the instrument's limits.

#include <string>

#include "data/node_tree.h"

namespace rm {

struct DepthMethodResult {
    bool ok = false;
    std::string message;  // why no layout was derived
    int numberOfCells = 0;
    int cellSizeCm = 0;
    int blankingDistanceCm = 0;
};

// Derives a layout that starts no nearer than `minimumDepthM` (and no nearer than the
// instrument's `Oper/MinBlankLengthInCm`) and whose last cell ends at or before `maximumDepthM`:
// the smallest whole-centimetre cell size, at least the least cell size, that covers the span
// with no more cells than `Other/MaxNumberOfCells` (unlimited when not told), and as many cells
// of it as fit. Nothing is written to the tree; the caller applies the three values.
DepthMethodResult DeriveProfilingFromDepths(const NodeRef& system, double minimumDepthM, double maximumDepthM);

}  // namespace rm
