#pragma once
// The mean velocities of the measured part of a profile: the mean of the first cells (top range)
// and of the last cells (bottom range) that the fits may use, and the mean of the whole measured
// layer, each blended with the shallow-water cell when the profile has one, with the error
// estimate of the layer's mean.
//
// A cell counts when both its first components (East, North) are present.

#include "processing/discharge_inputs.h"
#include "processing/processing_context.h"

namespace rm {

struct MeasuredColumn {
    const VelocityArrays& velocity;  // cm/s per axis and cell
    const ProfileRecord& raw;        // for the standard deviation bytes
    int c = 0;                       // water cells
    int w = 0;                       // shallow cells, 0 or 1
    Vector2 shallow;                 // S, cm/s; missing without a shallow cell
    CellGeometry geometry;
};

struct RangeMean {
    Vector2 mean;            // missing when no cell and no shallow cell gives a value
    double thickness = 0.0;  // m of water that the mean stands for (tT, tB)
};

// Mean of cells 0 to n - 1, n the smaller of `numTopCells` and c + w, blended with S.
RangeMean TopRangeMean(const MeasuredColumn& column, int numTopCells);
// Mean of the last `numBottomCells` cells; with all cells in range it blends with S as the top.
RangeMean BottomRangeMean(const MeasuredColumn& column, int numBottomCells);

struct MeasuredMean {
    Vector2 mean;           // cm/s
    Vector2 gapVelocity;    // between the shallow cell and cell 0, when blended
    int validCells = 0;     // m
    bool shallowUsed = false;
    double velocityError = MissingValue;  // cm/s; missing without water cells or without flow
    // No cell and no shallow cell gave a value: the profile has no discharge.
    bool Empty() const { return validCells == 0 && !shallowUsed; }
};
MeasuredMean MeasuredLayerMean(const MeasuredColumn& column);

}  // namespace rm
