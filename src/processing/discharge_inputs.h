#pragma once
// What the discharge computation of one profile takes from the records and the settings: where
// the cells and the shallow-water cell lie below the surface, the edges of the measured layer,
// the selected profile range, which profile a ring slot holds, and the discharge of a velocity
// vector over a thickness of water.

#include "processing/discharge_vector.h"
#include "processing/processing_context.h"
#include "processing/shallow_water_cell.h"

namespace rm {

// Depths below the surface, m. Cell j has its centre at CellCentre() + j cell.
struct CellGeometry {
    double transducer = 0.0;  // T
    double blank = 0.0;       // blanking distance
    double cell = 0.0;        // cell size
    ShallowCellGeometry shallow;  // A, B, C

    double CellTop() const { return transducer + blank + cell / 2.0; }
    double CellCentre() const { return CellTop() + cell / 2.0; }
    double ShallowTop() const { return transducer + shallow.blank + shallow.pulse / 2.0; }
    double ShallowCentre() const { return ShallowTop() + shallow.cellSize / 2.0; }
    double ShallowBottom() const { return ShallowTop() + shallow.cellSize; }
};
CellGeometry CellGeometryOf(const ProcessingContext& ctx);

// The measured layer of a profile: D1 and D2 are heights above the bed of its top and bottom,
// the two depths those of its first and last layer below the surface.
struct MeasuredLayerEdges {
    double TopEdge = MissingValue;     // D1
    double BottomEdge = MissingValue;  // D2
    double FirstCellDepth = MissingValue;
    double LastCellDepth = MissingValue;
};
// `c` water cells and `w` shallow cells (0 or 1) in water `depth` deep.
MeasuredLayerEdges EdgesOfMeasuredLayer(const CellGeometry& g, double depth, int c, int w);

// The profiles whose discharge adds to the sums, counted from 0. L0 and R0 are the left and
// right profile of the settings less one; `first` is the smaller, `last` the larger. A right
// profile of 0 (not yet set to the end of the file) stands for the last profile there is.
struct ProfileRange {
    int L0 = 0, R0 = 0;
    int first = 0, last = 0;
    bool Contains(int profileIndex) const { return first <= profileIndex && profileIndex <= last; }
};
ProfileRange SelectedProfileRange(const ProcessingContext& ctx);

// The profile (from 0) that `slot` holds: the latest profile taken in whose slot it is.
int ProfileIndexOfSlot(const ProcessingContext& ctx, int slot);
// The profile is the last one taken in.
bool IsLastTakenIn(const ProcessingContext& ctx, int profileIndex);
// The profile's values are still in the ring (it has been taken in and not overwritten since).
bool IsHeldInRing(const ProcessingContext& ctx, int profileIndex);

// Discharge of a velocity (x, y) in cm/s over a thickness t in m during one profile's time step:
// q = (bN x - bE y) t dt 0.01 s, with the boat vector b in m/s, dt the time step in s, s = -1 when
// the start bank is the right one, and 0.01 in single precision. MissingValue for a missing
// velocity.
class VectorDischarge {
public:
    VectorDischarge(const Vector2& boat, float dt, int startBankSide);
    double operator()(const Vector2& v, double thickness) const;
    // The same per metre of thickness, as the layer display shows it.
    double PerMetre(const Vector2& v) const;
    double Sign() const { return sign_; }

private:
    Vector2 boat_;
    float dt_ = 0.0f;
    double sign_ = 1.0;
};

}  // namespace rm
