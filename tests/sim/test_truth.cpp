// The river's closed forms and the truth integrals, against hand-derived formulas and a
// brute-force double integral.

#include <gtest/gtest.h>

#include <cmath>

#include "sim/truth.h"
#include "sim/virtual_river.h"

namespace rm::sim {
namespace {

double Beta(double a, double b) { return std::tgamma(a) * std::tgamma(b) / std::tgamma(a + b); }

VirtualRiver River(double m, double beta) {
    VirtualRiver r;
    r.widthM = 40.0;
    r.maxDepthM = 3.0;
    r.bedShapeExponent = m;
    r.velocityDepthExponent = beta;
    r.maxVelocityMs = 1.2;
    return r;
}

TEST(VirtualRiverTest, DepthAndVelocityFollowTheirLaws) {
    const VirtualRiver r = River(2.0, 1.0);
    EXPECT_DOUBLE_EQ(r.Depth(20.0), 3.0);
    EXPECT_DOUBLE_EQ(r.Depth(10.0), 3.0 * (1.0 - 0.25));  // s = -0.5
    EXPECT_EQ(r.Depth(0.0), 0.0);
    EXPECT_EQ(r.Depth(-1.0), 0.0);
    EXPECT_EQ(r.Depth(41.0), 0.0);
    EXPECT_DOUBLE_EQ(r.MeanVelocity(10.0), 1.2 * 0.75);
    // The power law: the surface speed is (a + 1) times the depth mean, and the full column's
    // flow is mean x depth.
    EXPECT_NEAR(r.VelocityAtHeight(10.0, 99.0), 1.2 * 0.75 * 7.0 / 6.0, 1e-12);
    EXPECT_NEAR(r.LayerUnitDischarge(10.0, -1.0, 99.0), 0.9 * 2.25, 1e-12);
    // Lower half of the column: U h (1/2)^(7/6).
    EXPECT_NEAR(r.LayerUnitDischarge(10.0, 0.0, 1.125), 0.9 * 2.25 * std::pow(0.5, 7.0 / 6.0), 1e-12);
    EXPECT_NEAR(r.LayerMeanVelocity(10.0, 0.0, 1.125), 0.9 * 2.25 * std::pow(0.5, 7.0 / 6.0) / 1.125, 1e-12);
}

TEST(VirtualRiverTest, DirectionsFollowTheFlowAzimuth) {
    VirtualRiver r;
    r.flowAzimuthDeg = 0.0;  // flowing north: the right bank lies east
    EXPECT_NEAR(r.Downstream().north, 1.0, 1e-15);
    EXPECT_NEAR(r.TowardRightBank().east, 1.0, 1e-15);
    r.flowAzimuthDeg = 90.0;  // flowing east: the right bank lies south
    EXPECT_NEAR(r.Downstream().east, 1.0, 1e-15);
    EXPECT_NEAR(r.TowardRightBank().north, -1.0, 1e-15);
    EXPECT_NEAR(r.PointAt(10.0, 5.0).east, 5.0, 1e-12);
    EXPECT_NEAR(r.PointAt(10.0, 5.0).north, -10.0, 1e-12);
}

TEST(VirtualRiverTest, PositionsOfDepthInvertTheBed) {
    const VirtualRiver r = River(3.0, 0.5);
    double at[2];
    ASSERT_EQ(r.PositionsOfDepth(1.7, at), 2);
    EXPECT_NEAR(r.Depth(at[0]), 1.7, 1e-12);
    EXPECT_NEAR(r.Depth(at[1]), 1.7, 1e-12);
    EXPECT_LT(at[0], 20.0);
    EXPECT_GT(at[1], 20.0);
    EXPECT_EQ(r.PositionsOfDepth(3.0, at), 1);
    EXPECT_EQ(r.PositionsOfDepth(3.1, at), 0);
    EXPECT_EQ(r.PositionsOfDepth(0.0, at), 0);
}

// Bank to bank: area W hmax m/(m + 1); discharge W umax hmax B(1/m, 2 + beta) / m, from
// the integral of (1 - s^m)^q over [0, 1] = B(1/m, q + 1) / m.
TEST(TruthTest, WholeSectionMatchesBetaFunctionClosedForm) {
    for (const auto& [m, beta] : {std::pair{2.0, 2.0 / 3.0}, std::pair{3.0, 0.5}, std::pair{1.5, 1.0}}) {
        const VirtualRiver r = River(m, beta);
        const SectionPart whole = IntegrateSection(r, 0.0, r.widthM);
        EXPECT_NEAR(whole.area, 40.0 * 3.0 * m / (m + 1.0), 1e-8) << m;
        const double q = 40.0 * 1.2 * 3.0 * Beta(1.0 / m, 2.0 + beta) / m;
        EXPECT_NEAR(whole.discharge / q, 1.0, 1e-9) << m << " " << beta;
    }
}

// Parabolic bed and velocity proportional to depth: q(y) = umax hmax (1 - s^2)^2, whose
// integral over s is s - 2 s^3 / 3 + s^5 / 5.
TEST(TruthTest, SpanMatchesPolynomialClosedForm) {
    const VirtualRiver r = River(2.0, 1.0);
    auto F = [](double s) { return s - 2.0 * s * s * s / 3.0 + std::pow(s, 5) / 5.0; };
    const double yA = 7.0, yB = 31.0;
    const double sA = 2.0 * yA / 40.0 - 1.0, sB = 2.0 * yB / 40.0 - 1.0;
    const double expected = 20.0 * 1.2 * 3.0 * (F(sB) - F(sA));
    CellLayout layout;
    const SpanTruth t = ComputeSpanTruth(r, yB, yA, layout);  // ends in either order
    EXPECT_NEAR(t.span.discharge, expected, 1e-9 * expected);
    EXPECT_DOUBLE_EQ(t.span.width, 24.0);
    EXPECT_NEAR(t.leftEdge.width, 7.0, 1e-12);
    EXPECT_NEAR(t.rightEdge.width, 9.0, 1e-12);
    EXPECT_NEAR(t.leftEdge.discharge + t.span.discharge + t.rightEdge.discharge, t.river.discharge,
                1e-9 * t.river.discharge);
    EXPECT_NEAR(t.meanVelocity, t.span.discharge / t.span.area, 1e-12);
    EXPECT_DOUBLE_EQ(t.startDepth, r.Depth(31.0));
}

TEST(TruthTest, CountedCellsFollowTheDiscardRule) {
    CellLayout L;  // T 0.2, blank 0.25, cell 0.25, 20 cells, 10 %
    // (2.8 x 0.9 - 0.25 - 0.125) / 0.25 = 8.58
    EXPECT_EQ(L.CountedCells(3.0), 8);
    // The threshold for 8 cells: T + (8 x 0.25 + 0.375) / 0.9.
    const double d8 = 0.2 + 2.375 / 0.9;
    EXPECT_DOUBLE_EQ(L.DepthForCountedCells(8), d8);
    EXPECT_EQ(L.CountedCells(d8 + 1e-9), 8);
    EXPECT_EQ(L.CountedCells(d8 - 1e-9), 7);
    EXPECT_EQ(L.CountedCells(0.5), 0);
    EXPECT_EQ(L.CountedCells(100.0), 20);
    EXPECT_DOUBLE_EQ(L.CellCentre(0), 0.7);
    EXPECT_DOUBLE_EQ(L.MeasuredTop(), 0.575);
}

// The layers of the span against a brute-force midpoint double integral of u(y, z) over the
// layer's region.
TEST(TruthTest, LayerSplitMatchesBruteForceIntegral) {
    const VirtualRiver r = River(2.0, 2.0 / 3.0);
    CellLayout L;
    const double yA = 6.0, yB = 33.0;
    const SpanTruth t = ComputeSpanTruth(r, yA, yB, L);
    EXPECT_NEAR(t.layers.Total(), t.span.discharge, 1e-8 * t.span.discharge);

    const int ny = 2700, nz = 400;
    double top = 0.0, middle = 0.0, bottom = 0.0;
    const double dy = (yB - yA) / ny;
    for (int i = 0; i < ny; ++i) {
        const double y = yA + (i + 0.5) * dy;
        const double h = r.Depth(y);
        const int c = L.CountedCells(h);
        const double d1 = h - L.MeasuredTop(), d2 = h - L.MeasuredBottom(c);
        const double dz = h / nz;
        for (int k = 0; k < nz; ++k) {
            const double z = (k + 0.5) * dz;
            const double u = r.VelocityAtHeight(y, z) * dz * dy;
            (z > d1 ? top : z > d2 ? middle : bottom) += u;
        }
    }
    EXPECT_NEAR(t.layers.top / top, 1.0, 2e-3);
    EXPECT_NEAR(t.layers.middle / middle, 1.0, 2e-3);
    EXPECT_NEAR(t.layers.bottom / bottom, 1.0, 5e-3);
    EXPECT_EQ(t.layers.unmeasured, 0.0);
}

TEST(TruthTest, ShallowColumnsGoToUnmeasured) {
    const VirtualRiver r = River(2.0, 2.0 / 3.0);
    CellLayout L;
    L.transducerDepthM = 1.0;  // no counted cell where the water is under about 1.9 m
    const SpanTruth t = ComputeSpanTruth(r, 1.0, 39.0, L);
    EXPECT_GT(t.layers.unmeasured, 0.0);
    double at[2];
    ASSERT_EQ(r.PositionsOfDepth(L.DepthForCountedCells(1), at), 2);
    const double shallowLeft = IntegrateSection(r, 1.0, at[0]).discharge;
    const double shallowRight = IntegrateSection(r, at[1], 39.0).discharge;
    EXPECT_NEAR(t.layers.unmeasured, shallowLeft + shallowRight, 1e-8);
    EXPECT_NEAR(t.layers.Total(), t.span.discharge, 1e-8 * t.span.discharge);
}

}  // namespace
}  // namespace rm::sim
