#pragma once
// The instrument's coordinate steps as the simulator needs them: the beam geometry written
// into the configuration record, and the inverses of the steps that processing applies, so
// that velocities meant in earth coordinates come out as the raw values of the chosen system.
//
// Axes. Earth: East, North, Up. Instrument (XYZ, as processing sees it after the signs of the
// down-looking mount): X toward the bow, Y to port, Z up. The orientation matrix maps XYZ to
// ENU; at heading h, pitch 0 and roll 0 the X axis points to azimuth h.

#include <array>
#include <cstddef>
#include <cstdint>

namespace rm::sim {

// A square matrix of size 1 to 4, row-major.
struct SmallMatrix {
    int n = 0;
    std::array<double, 16> a{};

    double& at(int row, int col) { return a[static_cast<size_t>(row * n + col)]; }
    double at(int row, int col) const { return a[static_cast<size_t>(row * n + col)]; }
    static SmallMatrix Identity(int size);
};

SmallMatrix operator*(const SmallMatrix& x, const SmallMatrix& y);
// x applied to the first x.n values of v.
std::array<double, 4> Apply(const SmallMatrix& x, const std::array<double, 4>& v);
// Gauss-Jordan with row exchange. False when a pivot is below 1e-12 in magnitude.
bool Invert(const SmallMatrix& x, SmallMatrix& inverse);
SmallMatrix Transpose(const SmallMatrix& x);

// The transformation matrix of the configuration record in units of 1/1024, stored row after
// row with `beams` columns, for a down-looking head of `beams` (3 or 4) beams slanted by
// `slantDeg` from the head's axis. In the head's own frame (Z along its axis, the beams leaning
// out from it) beam velocities are the water velocity's component along each beam, positive
// away from the head. Four beams stand in a JANUS cross (1 toward +X, 2 toward -X, 3 toward
// +Y, 4 toward -Y) and give X, Y, Z and the error velocity; three beams stand 120 degrees apart
// starting at +X. Processing turns the signs of rows 2 and 3 for the downward mount.
std::array<int16_t, 16> BeamMatrixEntries(int beams, double slantDeg);

// The orientation matrix from XYZ to ENU (3 x 3), built from heading, pitch and roll in degrees
// by the same formula as processing (tilt-compensated pitch, heading angle 90 - h).
SmallMatrix OrientationMatrix(double headingDeg, double pitchDeg, double rollDeg);

// The matrix from earth velocities (East, North, Up, error) to the raw values of coordinate
// system `coords` (0 beam, 1 XYZ, 2 ENU), for the derived beam-to-XYZ matrix `beamToXyz` and
// orientation `orientation`. It is the inverse of the product that processing applies.
SmallMatrix EarthToRecorded(int coords, const SmallMatrix& beamToXyz, const SmallMatrix& orientation);

}  // namespace rm::sim
