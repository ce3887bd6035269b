#pragma once
// Small square float matrices of the coordinate step: the orientation matrix from heading,
// pitch and roll, its products with the instrument's beam-to-XYZ matrix, the user rotation and
// the Gauss-Jordan inverse. All arithmetic of the stored matrices is single precision, as the
// instrument's matrix is.

#include <array>
#include <cstddef>

namespace rm {

constexpr int kMaxMatrixSize = 8;

// Row-major, n by n with n from 0 to 8 (Zero and Identity limit the size to that range).
struct FloatMatrix {
    int n = 0;
    std::array<float, kMaxMatrixSize * kMaxMatrixSize> a{};

    float& at(int row, int col) { return a[static_cast<size_t>(row * kMaxMatrixSize + col)]; }
    float at(int row, int col) const { return a[static_cast<size_t>(row * kMaxMatrixSize + col)]; }
    static FloatMatrix Zero(int size);
    static FloatMatrix Identity(int size);
};

// x times y; both must have the same size.
FloatMatrix Multiply(const FloatMatrix& x, const FloatMatrix& y);

// Gauss-Jordan elimination with row exchange. A size outside 1..8 or a pivot below 1e-30 in
// magnitude is singular: the result is then all zeros and the function returns false.
bool Invert(const FloatMatrix& m, FloatMatrix& inverse);

// The 3 by 3 matrix from XYZ (X to the bow, Y to port, Z up) to East, North, Up, for heading,
// pitch and roll in degrees. Pitch and roll go to radians with the single-precision factor
// 0.017453292, the heading angle 90 - h with 0.0174532925199433; pitch is compensated for
// roll through P = arcsin(sin(-p) cos(r) / sqrt(1 - sin(-p)^2 sin(r)^2)).
FloatMatrix OrientationMatrix(double headingDeg, double pitchDeg, double rollDeg);

// A 3 by 3 rotation in an n by n frame: the identity outside the first three rows and columns.
// A frame smaller than 3 gets the zero matrix.
FloatMatrix EmbedRotation(const FloatMatrix& rotation3, int n);

// rotation3 x beamToXyz on the first three rows; a fourth row of beamToXyz is copied unchanged.
FloatMatrix RotateBeamToXyz(const FloatMatrix& rotation3, const FloatMatrix& beamToXyz);

// The user rotation: the orientation matrix of heading 90 - angle, pitch 0, roll 0, in an n by
// n frame.
FloatMatrix UserRotationMatrix(double angleDeg, int n);

}  // namespace rm
