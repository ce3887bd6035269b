// The coordinate steps of the simulator checked against the forward steps of processing,
// written from their formulas in sim_test_support.cpp: what the simulator records in beam,
// XYZ or ENU coordinates must turn back into the intended water-minus-boat velocity.

#include <gtest/gtest.h>

#include <cmath>

#include "data/instrument_records.h"
#include "sim/instrument_geometry.h"
#include "sim/river_scenario.h"
#include "sim/transect.h"
#include "sim_test_support.h"

namespace rm::sim {
namespace {

constexpr double kDeg = 0.0174532925199433;

SmallMatrix DerivedMatrix(int beams) {
    RiverScenario s;
    s.instrument.beams = beams;
    s.outputPath = "x.kvr";
    const InstrumentRecords r = BuildInstrumentRecords(s);
    const DerivedValues d = DeriveValues(r.conf, r.oper, r.user);
    SmallMatrix m;
    m.n = d.matrixSize;
    for (int i = 0; i < m.n * m.n; ++i) m.a[static_cast<size_t>(i)] = d.matrix[static_cast<size_t>(i)];
    return m;
}

TEST(BeamMatrixTest, JanusEntriesAreTheHandComputedOnes) {
    // 1 / (2 sin 20) x 1024 = 1496.99; 1 / (4 cos 20) x 1024 = 272.43.
    const auto e = BeamMatrixEntries(4, 20.0);
    const std::array<int16_t, 16> expected{1497, -1497, 0,   0,   0,   0,   1497, -1497,
                                           272,  272,   272, 272, 272, 272, -272, -272};
    EXPECT_EQ(e, expected);
}

TEST(BeamMatrixTest, ThreeBeamEntriesInvertTheBeamDirections) {
    const auto e = BeamMatrixEntries(3, 20.0);
    for (int i = 9; i < 16; ++i) EXPECT_EQ(e[static_cast<size_t>(i)], 0);
    for (int i = 0; i < 3; ++i) {
        for (int k = 0; k < 3; ++k) {
            double sum = 0.0;
            for (int j = 0; j < 3; ++j) {
                const double phi = 120.0 * j * kDeg;
                const double dir[3] = {std::sin(20 * kDeg) * std::cos(phi), std::sin(20 * kDeg) * std::sin(phi),
                                       std::cos(20 * kDeg)};
                sum += e[static_cast<size_t>(i * 3 + j)] / 1024.0 * dir[k];
            }
            EXPECT_NEAR(sum, i == k ? 1.0 : 0.0, 2e-3) << i << k;
        }
    }
}

TEST(OrientationTest, AxesPointWhereTheAttitudeSays) {
    // Column j of the matrix is instrument axis j in East, North, Up.
    const SmallMatrix east = OrientationMatrix(90.0, 0.0, 0.0);
    EXPECT_NEAR(east.at(0, 0), 1.0, 1e-12);  // the bow (X) points east at heading 90
    EXPECT_NEAR(east.at(1, 1), 1.0, 1e-12);  // port (Y) points north
    const SmallMatrix bowUp = OrientationMatrix(0.0, 10.0, 0.0);
    EXPECT_NEAR(bowUp.at(2, 0), std::sin(10 * kDeg), 1e-7);
    const SmallMatrix portUp = OrientationMatrix(0.0, 0.0, 10.0);
    EXPECT_NEAR(portUp.at(2, 1), std::sin(10 * kDeg), 1e-7);
    // A rotation: its transpose is its inverse.
    const SmallMatrix m = OrientationMatrix(237.4, -6.3, 4.1);
    const SmallMatrix id = m * Transpose(m);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) EXPECT_NEAR(id.at(i, j), i == j ? 1.0 : 0.0, 1e-12);
}

// Whole profiles of a rocking, swinging boat: every good cell and the bottom track come back as
// the intended velocities through the reference forward chain (which undoes the simulator's
// earth-to-recorded step for each beam count and coordinate system).
TEST(TransectGeneratorTest, RecordedVelocitiesTurnBackIntoWaterMinusBoat) {
    VirtualRiver river;
    river.flowAzimuthDeg = 35.0;
    CrossingOptions crossing;
    crossing.profiles = 40;
    crossing.boatSpeedMs = 1.1;
    crossing.crabAngleDeg = -12.0;
    crossing.headingWobbleDeg = 8.0;
    crossing.pitchDeg = 4.0;
    crossing.rollDeg = 6.0;
    const CrossingPlan plan = PlanCrossing(river, crossing);
    for (int beams : {3, 4}) {
        for (int coords : {0, 1, 2}) {
            TransectSettings settings;
            settings.beams = beams;
            settings.coordinateSystem = coords;
            DerivedValues derived;
            const SmallMatrix m = DerivedMatrix(beams);
            derived.matrixSize = beams;
            for (int i = 0; i < beams * beams; ++i)
                derived.matrix[static_cast<size_t>(i)] = static_cast<float>(m.a[static_cast<size_t>(i)]);
            TransectGenerator gen(river, settings, m, 7);
            ASSERT_TRUE(gen.Usable());
            // Raw values are whole mm/s, rounded with the remainder of the previous profile
            // carried in: each is off by less than 1, which the beam matrix spreads over the XYZ
            // components by the sizes of its rows.
            double spread = 3.0;
            if (coords == 0) {
                spread = 0.0;
                for (int i = 0; i < 3; ++i) {
                    double row = 0.0;
                    for (int b = 0; b < beams; ++b) row += std::fabs(m.at(i, b));
                    spread += row * row;
                }
            }
            const double bound = std::sqrt(spread) + 1e-6;  // mm/s
            int goodCells = 0, badCells = 0;
            for (const ProfileState& state : plan.profiles) {
                const ProfileRecord p = gen.Build(state);
                const auto bt = simtest::ReferenceBottomTrack(p, derived, coords);
                EXPECT_NEAR(bt[0], -state.boatVelocity.east, bound * 1e-3);
                EXPECT_NEAR(bt[1], -state.boatVelocity.north, bound * 1e-3);
                const auto cells = simtest::ReferenceEnuVelocities(p, derived, coords);
                const double depth = river.Depth(state.y);
                for (int c = 0; c < p.cells; ++c) {
                    const double centre = settings.layout.CellCentre(c);
                    const double zLow = depth - centre - 0.125, zHigh = depth - centre + 0.125;
                    const bool beyondSideLobe = centre + 0.125 - 0.2 > (depth - 0.2) * std::cos(20 * kDeg);
                    ASSERT_EQ(cells[static_cast<size_t>(c)].valid, !beyondSideLobe) << "cell " << c;
                    if (beyondSideLobe) {
                        ++badCells;
                        continue;
                    }
                    ++goodCells;
                    const EnVector w = river.LayerMeanVelocity(state.y, zLow, zHigh) * river.Downstream();
                    EXPECT_NEAR(cells[static_cast<size_t>(c)].east, (w.east - state.boatVelocity.east) * 100.0,
                                bound * 0.1);
                    EXPECT_NEAR(cells[static_cast<size_t>(c)].north, (w.north - state.boatVelocity.north) * 100.0,
                                bound * 0.1);
                    EXPECT_NEAR(cells[static_cast<size_t>(c)].up, 0.0, bound * 0.1);
                }
            }
            EXPECT_GT(goodCells, 200);
            EXPECT_GT(badCells, 50);
        }
    }
}

}  // namespace
}  // namespace rm::sim
