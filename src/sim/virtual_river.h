#pragma once
// A straight channel of known shape and known steady velocity field, the ground truth that
// synthetic recordings are made from.
//
// Frame. Positions are local metric offsets East and North (metres). The channel runs along
// the flow azimuth; the cross-stream coordinate y runs from the left bank (y = 0, on the left
// when looking downstream) to the right bank (y = width). The point y = 0 on the section
// through the origin is the local origin (East 0, North 0).
//
// Depth. h(y) = maxDepth * (1 - |s|^m), s = 2 y / width - 1, m = bedShapeExponent: zero at both
// banks, deepest in the middle; m = 2 is a parabola, larger m a flatter bed.
//
// Velocity. The depth-averaged speed is U(y) = maxVelocity * (h(y) / maxDepth)^beta, pointing
// downstream everywhere. Over the vertical it follows a power law from the bed:
// u(z) = u* (z / h)^a with z the height above the bed, a = verticalExponent (1/6 by default),
// and u* = (a + 1) U, so that the depth mean of u is U.

#include <string>

namespace rm::sim {

struct EnVector {
    double east = 0.0;
    double north = 0.0;
};

inline EnVector operator+(EnVector a, EnVector b) { return {a.east + b.east, a.north + b.north}; }
inline EnVector operator-(EnVector a, EnVector b) { return {a.east - b.east, a.north - b.north}; }
inline EnVector operator*(double k, EnVector a) { return {k * a.east, k * a.north}; }
// The vertical component of a x b: positive when b points to the left of a.
inline double Cross(EnVector a, EnVector b) { return a.east * b.north - a.north * b.east; }

struct VirtualRiver {
    double widthM = 60.0;                      // bank to bank
    double maxDepthM = 4.0;                    // depth in the middle of the channel
    double bedShapeExponent = 2.0;             // m of the depth law, at least 1
    double maxVelocityMs = 1.0;                // depth-averaged speed where the depth is greatest
    double velocityDepthExponent = 2.0 / 3.0;  // beta: how the depth mean follows the depth
    double verticalExponent = 1.0 / 6.0;       // a of the vertical power law
    double flowAzimuthDeg = 0.0;               // where the water goes, clockwise from North

    // Empty when the parameters describe a channel; otherwise what is wrong, in words.
    std::string Validate() const;

    // Depth at cross-stream position y, metres; 0 on and beyond the banks.
    double Depth(double y) const;
    // Depth-averaged downstream speed at y, m/s; 0 where there is no water.
    double MeanVelocity(double y) const;
    // Speed at height z above the bed at y, m/s; z is clipped to the water column.
    double VelocityAtHeight(double y, double z) const;
    // Flow per unit width between heights zLow and zHigh above the bed at y, m2/s. Heights are
    // clipped to the water column; the full column gives MeanVelocity(y) * Depth(y).
    double LayerUnitDischarge(double y, double zLow, double zHigh) const;
    // Mean speed over the layer between zLow and zHigh above the bed, m/s.
    double LayerMeanVelocity(double y, double zLow, double zHigh) const;
    // Flow per unit width of the whole column at y, m2/s.
    double UnitDischarge(double y) const { return MeanVelocity(y) * Depth(y); }

    // The positions y (from the left bank) where the depth equals `depth`, in increasing
    // order: none when depth is not inside (0, maxDepth], one at the deepest point, else two.
    int PositionsOfDepth(double depth, double out[2]) const;

    // Unit vector of the flow, and unit vector across the channel toward the right bank.
    EnVector Downstream() const;
    EnVector TowardRightBank() const;
    // Water velocity (depth mean) at y as a vector, m/s.
    EnVector MeanVelocityVector(double y) const { return MeanVelocity(y) * Downstream(); }
    // Local position of the point at cross-stream y and along-stream x (metres downstream of
    // the section through the origin).
    EnVector PointAt(double y, double x = 0.0) const;
};

}  // namespace rm::sim
