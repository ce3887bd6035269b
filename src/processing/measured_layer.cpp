#include "processing/measured_layer.h"

#include <algorithm>
#include <cmath>

namespace rm {

namespace {
// Sum of the present cells of a run of cells.
struct CellSum {
    double east = 0.0, north = 0.0;
    int count = 0;           // m
    double thickness = 0.0;  // m cells of water
};

bool CellPresent(const VelocityArrays& v, int j) {
    if (j < 0 || j >= kMaxCells) return false;
    return v[0][static_cast<size_t>(j)] < MissingValueF && v[1][static_cast<size_t>(j)] < MissingValueF;
}

Vector2 CellVector(const VelocityArrays& v, int j) {
    if (j < 0 || j >= kMaxCells) return MissingVector();
    return MakeVector(v[0][static_cast<size_t>(j)], v[1][static_cast<size_t>(j)]);
}

CellSum SumCells(const MeasuredColumn& column, int from, int to) {
    CellSum s;
    for (int j = from; j < to; ++j) {
        if (!CellPresent(column.velocity, j)) continue;
        s.east += column.velocity[0][static_cast<size_t>(j)];
        s.north += column.velocity[1][static_cast<size_t>(j)];
        ++s.count;
        s.thickness += column.geometry.cell;
    }
    return s;
}

Vector2 PlainMean(const CellSum& s) {
    if (s.count < 1) return MissingVector();
    return MakeVector(s.east / s.count, s.north / s.count);
}

// The cells' mean blended with the shallow cell by thickness: (S C + sum W / m) / (W + C) with
// W = m cell; S alone without a cell.
Vector2 BlendWithShallow(const MeasuredColumn& column, const CellSum& s) {
    const Vector2& S = column.shallow;
    if (s.count < 1) return S;
    const double C = column.geometry.shallow.cellSize;
    const double W = s.count * column.geometry.cell;
    return MakeVector((S.East * C + (s.east * W) / s.count) / (W + C),
                      (S.North * C + (s.north * W) / s.count) / (W + C));
}

// Error of the layer's mean from the standard deviation bytes of beams 0 and 1 of the present
// cells: e = sqrt(q / c) / c * 0.1 per beam, combined along the mean's direction.
double VelocityErrorOf(const MeasuredColumn& column, const Vector2& mean) {
    if (column.c <= 0) return MissingValue;
    double q0 = 0.0, q1 = 0.0;
    const int beams = column.raw.beams;
    for (int j = 0; j < column.c && j < column.raw.cells; ++j) {
        if (!CellPresent(column.velocity, j)) continue;
        if (beams > 0) q0 += std::pow(static_cast<double>(column.raw.StdError(0, j)), 2);
        if (beams > 1) q1 += std::pow(static_cast<double>(column.raw.StdError(1, j)), 2);
    }
    const double c = column.c;
    const double e0 = std::sqrt(q0 / c) / c * 0.1;
    const double e1 = std::sqrt(q1 / c) / c * 0.1;
    const double x = mean.East, y = mean.North;
    const double norm = x * x + y * y;
    if (HoldsMissing(mean) || norm == 0.0) return MissingValue;
    return std::sqrt((x * x * e0 * e0 + y * y * e1 * e1) / norm);
}
}  // namespace

RangeMean TopRangeMean(const MeasuredColumn& column, int numTopCells) {
    const int n = std::min(numTopCells, column.c + column.w);
    // Runs over the instrument's cells even where n reaches past the water cells.
    const CellSum s = SumCells(column, 0, n);
    RangeMean r;
    r.thickness = s.thickness;
    if (column.w > 0 && column.shallow.Valid()) {
        r.mean = BlendWithShallow(column, s);
        r.thickness += column.geometry.shallow.cellSize;
    } else {
        r.mean = PlainMean(s);
    }
    return r;
}

RangeMean BottomRangeMean(const MeasuredColumn& column, int numBottomCells) {
    int n = numBottomCells;
    const bool allCells = column.c + column.w <= n;
    if (allCells) n = column.c;
    const CellSum s = SumCells(column, std::max(column.c - n, 0), column.c);
    RangeMean r;
    r.thickness = s.thickness;
    if (allCells && column.shallow.Valid()) {
        r.mean = BlendWithShallow(column, s);
        r.thickness += column.geometry.shallow.cellSize;
    } else {
        r.mean = PlainMean(s);
    }
    return r;
}

MeasuredMean MeasuredLayerMean(const MeasuredColumn& column) {
    const CellSum s = SumCells(column, 0, column.c);
    MeasuredMean m;
    m.validCells = s.count;
    if (column.w < 1 || !column.shallow.Valid()) {
        m.mean = PlainMean(s);
    } else if (s.count < 1) {
        m.mean = column.shallow;
        m.shallowUsed = true;
    } else {
        // Velocity in the gap between the shallow cell and cell 0 on the line through both
        // centres; cell 0 is taken as it stands, a missing cell included.
        const CellGeometry& g = column.geometry;
        const double zt = g.CellTop(), zc = g.CellCentre(), zs = g.ShallowTop();
        const double gap = zt - zs;
        const double G = zc - (zs + zt) / 2.0;
        const double K = zc - (g.shallow.cellSize / 2.0 + zs);
        const Vector2 v0 = CellVector(column.velocity, 0);
        const Vector2& S = column.shallow;
        m.gapVelocity = MakeVector((S.East - v0.East) * G / K + v0.East, (S.North - v0.North) * G / K + v0.North);
        const double W = s.count * g.cell;
        m.mean = MakeVector((m.gapVelocity.East * gap + (s.east * W) / s.count) / (gap + W),
                            (m.gapVelocity.North * gap + (s.north * W) / s.count) / (gap + W));
        m.shallowUsed = true;
    }
    m.velocityError = VelocityErrorOf(column, m.mean);
    return m;
}

}  // namespace rm
