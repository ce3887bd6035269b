#pragma once
// The layer arrays of the profile display: velocity and discharge of the ten top sub-layers,
// of the shallow-water cell and the water cells as the measured layer's power law gives them,
// of the ten bottom sub-layers, and the measured discharge of every cell.
//
// Layout of LayerDepth and LayerQ: 0..9 the top sub-layers; 10 the shallow cell when there is
// one; then the c water cells from 10 + w; then the bottom sub-layers from 10 + c + w.

#include "processing/discharge_inputs.h"
#include "processing/power_fit.h"

namespace rm {

struct LayerDisplayInputs {
    const VectorDischarge& q;
    const CellGeometry& geometry;
    const VelocityArrays& velocity;
    int cellCount = 0;  // cells of the instrument
    int c = 0, w = 0;
    double depth = 0.0;        // H
    double topEdge = 0.0;      // D1
    double bottomEdge = 0.0;   // D2
    float topExponent = 0.0f;  // the display reads it in single precision
    Vector2 shallow;           // S
    Vector2 gapVelocity;
    Vector2 measuredMean;
    const LayerFit& top;
    const LayerFit& bottom;
};

// Fills the layer arrays and ShallowCellQ and GapQ of `out`; entries without a value keep what
// they hold (MissingValue after the clearing of the step).
void FillLayerDisplay(const LayerDisplayInputs& in, ProfileWorkingValues& out);

}  // namespace rm
