#include "sim/instrument_geometry.h"

#include <cmath>
#include <utility>

namespace rm::sim {

namespace {
constexpr double kDegToRad = 0.0174532925199433;
// Processing turns pitch and roll into radians with this single-precision factor.
constexpr double kTiltDegToRad = static_cast<double>(0.017453292f);

int16_t ToEntry(double v) { return static_cast<int16_t>(std::lround(v * 1024.0)); }
}  // namespace

SmallMatrix SmallMatrix::Identity(int size) {
    SmallMatrix m;
    m.n = size;
    for (int i = 0; i < size; ++i) m.at(i, i) = 1.0;
    return m;
}

SmallMatrix operator*(const SmallMatrix& x, const SmallMatrix& y) {
    SmallMatrix r;
    r.n = x.n;
    for (int i = 0; i < x.n; ++i) {
        for (int j = 0; j < x.n; ++j) {
            double s = 0.0;
            for (int k = 0; k < x.n; ++k) s += x.at(i, k) * y.at(k, j);
            r.at(i, j) = s;
        }
    }
    return r;
}

std::array<double, 4> Apply(const SmallMatrix& x, const std::array<double, 4>& v) {
    std::array<double, 4> r{};
    for (int i = 0; i < x.n; ++i) {
        double s = 0.0;
        for (int k = 0; k < x.n; ++k) s += x.at(i, k) * v[static_cast<size_t>(k)];
        r[static_cast<size_t>(i)] = s;
    }
    return r;
}

bool Invert(const SmallMatrix& x, SmallMatrix& inverse) {
    SmallMatrix a = x;
    SmallMatrix inv = SmallMatrix::Identity(x.n);
    for (int col = 0; col < x.n; ++col) {
        int pivot = col;
        for (int row = col + 1; row < x.n; ++row) {
            if (std::fabs(a.at(row, col)) > std::fabs(a.at(pivot, col))) pivot = row;
        }
        if (std::fabs(a.at(pivot, col)) < 1e-12) return false;
        if (pivot != col) {
            for (int k = 0; k < x.n; ++k) {
                std::swap(a.at(pivot, k), a.at(col, k));
                std::swap(inv.at(pivot, k), inv.at(col, k));
            }
        }
        const double p = a.at(col, col);
        for (int k = 0; k < x.n; ++k) {
            a.at(col, k) /= p;
            inv.at(col, k) /= p;
        }
        for (int row = 0; row < x.n; ++row) {
            if (row == col) continue;
            const double f = a.at(row, col);
            if (f == 0.0) continue;
            for (int k = 0; k < x.n; ++k) {
                a.at(row, k) -= f * a.at(col, k);
                inv.at(row, k) -= f * inv.at(col, k);
            }
        }
    }
    inverse = inv;
    return true;
}

SmallMatrix Transpose(const SmallMatrix& x) {
    SmallMatrix r;
    r.n = x.n;
    for (int i = 0; i < x.n; ++i)
        for (int j = 0; j < x.n; ++j) r.at(i, j) = x.at(j, i);
    return r;
}

std::array<int16_t, 16> BeamMatrixEntries(int beams, double slantDeg) {
    std::array<int16_t, 16> entries{};
    const double st = std::sin(slantDeg * kDegToRad);
    const double ct = std::cos(slantDeg * kDegToRad);
    if (beams == 4) {
        const double a = 1.0 / (2.0 * st);
        const double b = 1.0 / (4.0 * ct);
        const double rows[4][4] = {{a, -a, 0.0, 0.0}, {0.0, 0.0, a, -a}, {b, b, b, b}, {b, b, -b, -b}};
        for (int i = 0; i < 4; ++i)
            for (int j = 0; j < 4; ++j) entries[static_cast<size_t>(i * 4 + j)] = ToEntry(rows[i][j]);
        return entries;
    }
    if (beams == 3) {
        // Beam directions as rows; the matrix from beam to XYZ is their inverse.
        SmallMatrix directions;
        directions.n = 3;
        for (int k = 0; k < 3; ++k) {
            const double phi = 120.0 * k * kDegToRad;
            directions.at(k, 0) = st * std::cos(phi);
            directions.at(k, 1) = st * std::sin(phi);
            directions.at(k, 2) = ct;
        }
        SmallMatrix toXyz;
        if (Invert(directions, toXyz)) {
            for (int i = 0; i < 3; ++i)
                for (int j = 0; j < 3; ++j) entries[static_cast<size_t>(i * 3 + j)] = ToEntry(toXyz.at(i, j));
        }
    }
    return entries;
}

SmallMatrix OrientationMatrix(double headingDeg, double pitchDeg, double rollDeg) {
    const double a = (90.0 - headingDeg) * kDegToRad;
    const double ch = std::cos(a), sh = std::sin(a);
    const double cr = std::cos(rollDeg * kTiltDegToRad), sr = std::sin(rollDeg * kTiltDegToRad);
    const double q = std::sin(-pitchDeg * kTiltDegToRad);
    const double t = q * sr;
    const double p = std::asin(q * cr / std::sqrt(1.0 - t * t));
    const double cp = std::cos(p), sp = std::sin(p);
    SmallMatrix m;
    m.n = 3;
    m.at(0, 0) = cp * ch - sp * sh * sr;
    m.at(0, 1) = -sh * cr;
    m.at(0, 2) = cp * sh * sr + sp * ch;
    m.at(1, 0) = sp * ch * sr + cp * sh;
    m.at(1, 1) = ch * cr;
    m.at(1, 2) = sp * sh - cp * ch * sr;
    m.at(2, 0) = -sp * cr;
    m.at(2, 1) = sr;
    m.at(2, 2) = cp * cr;
    return m;
}

SmallMatrix EarthToRecorded(int coords, const SmallMatrix& beamToXyz, const SmallMatrix& orientation) {
    const int n = beamToXyz.n;
    if (coords == 2) return SmallMatrix::Identity(n);
    // The orientation matrix is a rotation, so its inverse is its transpose; a fourth (error)
    // component passes unchanged.
    SmallMatrix earthToXyz = SmallMatrix::Identity(n);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) earthToXyz.at(i, j) = orientation.at(j, i);
    if (coords == 1) return earthToXyz;
    SmallMatrix xyzToBeam;
    if (!Invert(beamToXyz, xyzToBeam)) return SmallMatrix{};
    return xyzToBeam * earthToXyz;
}

}  // namespace rm::sim
