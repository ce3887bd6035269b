#include "processing/orientation_matrix.h"

#include <cmath>
#include <utility>

namespace rm {

namespace {
constexpr float kTiltRadiansPerDegree = 0.017453292f;
constexpr double kHeadingRadiansPerDegree = 0.0174532925199433;
constexpr float kSingularPivot = 1e-30f;
}  // namespace

FloatMatrix FloatMatrix::Zero(int size) {
    FloatMatrix m;
    m.n = size < 0 ? 0 : (size > kMaxMatrixSize ? kMaxMatrixSize : size);
    return m;
}

FloatMatrix FloatMatrix::Identity(int size) {
    FloatMatrix m = Zero(size);
    for (int i = 0; i < m.n; ++i) m.at(i, i) = 1.0f;
    return m;
}

FloatMatrix Multiply(const FloatMatrix& x, const FloatMatrix& y) {
    FloatMatrix r = FloatMatrix::Zero(x.n);
    for (int i = 0; i < x.n; ++i) {
        for (int j = 0; j < x.n; ++j) {
            float s = 0.0f;
            for (int k = 0; k < x.n; ++k) s += x.at(i, k) * y.at(k, j);
            r.at(i, j) = s;
        }
    }
    return r;
}

bool Invert(const FloatMatrix& m, FloatMatrix& inverse) {
    const int n = m.n;
    inverse = FloatMatrix::Zero(n);
    if (n < 1 || n > kMaxMatrixSize) return false;  // also a size set by hand beyond the storage
    FloatMatrix a = m;
    FloatMatrix inv = FloatMatrix::Identity(n);
    for (int col = 0; col < n; ++col) {
        int pivot = col;
        for (int row = col + 1; row < n; ++row) {
            if (std::fabs(a.at(row, col)) > std::fabs(a.at(pivot, col))) pivot = row;
        }
        if (std::fabs(a.at(pivot, col)) < kSingularPivot) return false;
        if (pivot != col) {
            for (int k = 0; k < n; ++k) {
                std::swap(a.at(pivot, k), a.at(col, k));
                std::swap(inv.at(pivot, k), inv.at(col, k));
            }
        }
        const float p = a.at(col, col);
        for (int k = 0; k < n; ++k) {
            a.at(col, k) /= p;
            inv.at(col, k) /= p;
        }
        for (int row = 0; row < n; ++row) {
            const float f = a.at(row, col);
            if (row == col || f == 0.0f) continue;
            for (int k = 0; k < n; ++k) {
                a.at(row, k) -= f * a.at(col, k);
                inv.at(row, k) -= f * inv.at(col, k);
            }
        }
    }
    inverse = inv;
    return true;
}

FloatMatrix OrientationMatrix(double headingDeg, double pitchDeg, double rollDeg) {
    const double k = static_cast<double>(kTiltRadiansPerDegree);
    const double a = (90.0 - headingDeg) * kHeadingRadiansPerDegree;
    const double ch = std::cos(a), sh = std::sin(a);
    const double cr = std::cos(rollDeg * k), sr = std::sin(rollDeg * k);
    const double q = std::sin(-pitchDeg * k);
    const double t = q * sr;
    const double p = std::asin(q * cr / std::sqrt(1.0 - t * t));
    const double cp = std::cos(p), sp = std::sin(p);
    FloatMatrix m = FloatMatrix::Zero(3);
    const double rows[3][3] = {{cp * ch - sp * sh * sr, -sh * cr, cp * sh * sr + sp * ch},
                               {sp * ch * sr + cp * sh, ch * cr, sp * sh - cp * ch * sr},
                               {-sp * cr, sr, cp * cr}};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) m.at(i, j) = static_cast<float>(rows[i][j]);
    return m;
}

FloatMatrix EmbedRotation(const FloatMatrix& rotation3, int n) {
    if (n < 3 || n > kMaxMatrixSize) return FloatMatrix::Zero(n);
    FloatMatrix m = FloatMatrix::Identity(n);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) m.at(i, j) = rotation3.at(i, j);
    return m;
}

FloatMatrix RotateBeamToXyz(const FloatMatrix& rotation3, const FloatMatrix& beamToXyz) {
    const int n = beamToXyz.n;
    if (n < 3 || n > kMaxMatrixSize) return FloatMatrix::Zero(n);
    FloatMatrix m = beamToXyz;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < n; ++j) {
            float s = 0.0f;
            for (int k = 0; k < 3; ++k) s += rotation3.at(i, k) * beamToXyz.at(k, j);
            m.at(i, j) = s;
        }
    }
    return m;
}

FloatMatrix UserRotationMatrix(double angleDeg, int n) {
    return EmbedRotation(OrientationMatrix(90.0 - angleDeg, 0.0, 0.0), n);
}

}  // namespace rm
