// The velocity chain: scaling and bad values, the coordinate step, the declination rotation,
// the references, and one scene recorded in beam, XYZ and ENU coordinates.

#include <gtest/gtest.h>

#include <cmath>

#include "processing/chain_fixture.h"
#include "processing/processing_steps.h"
#include "processing/vector_direction.h"
#include "processing/velocity_chain.h"
#include "sim/crossing_plan.h"
#include "sim/river_scenario.h"
#include "sim/transect.h"

namespace rm::test {
namespace {

constexpr float kMissing = MissingValueF;
constexpr double kRad = 0.0174532925199433;

class VelocityChainTest : public ChainFixture {
protected:
    VelocityVector Cell(int cell, int coordinates, int reference = 0) {
        return VelocityChain(ctx, 0, coordinates, reference).Cell(cell);
    }
    void UseReducedVelocityUnit() {
        data.user.PCMode = 1;
        data.conf.CPUSoftwareVerNum = 165;
        Derive();
    }
};

TEST_F(VelocityChainTest, SameSystemScalesByATenthAndCatchesBadValuesByFormat) {
    Build(kCoordXyz);
    SetCell(0, 0, {100, -50, 20, 0});
    SetCell(0, 1, {32767, 1, 1, 1});
    EXPECT_EQ(Cell(0, kCoordXyz), (VelocityVector{10.0f, -5.0f, 2.0f, 0.0f}));
    EXPECT_EQ(Cell(1, kCoordXyz)[0], kMissing);
    EXPECT_FLOAT_EQ(Cell(1, kCoordXyz)[1], 0.1f);

    UseReducedVelocityUnit();  // s = 0.1, and 32767 passes the scaling step
    EXPECT_FLOAT_EQ(Cell(0, kCoordXyz)[0], 1.0f);
    EXPECT_NEAR(Cell(1, kCoordXyz)[0], 327.67, 1e-3);
}

TEST_F(VelocityChainTest, MatrixWorksOnRawValuesInTheirUnitWithoutSoundSpeed) {
    Build(kCoordBeam);
    settings.SalinityCorrectionType = 1;  // f != 1: salinity 35 instead of 0 at 15 degC
    settings.CorrectedSalinityInPpt = 35.0;
    SetCell(0, 0, {100, 0, 0, 0});
    SetCell(0, 1, {100, 0, 32767, 0});
    // Column 0 of BeamToXyz is (1, 0, -0.5, 0.5).
    EXPECT_EQ(Cell(0, kCoordXyz), (VelocityVector{10.0f, 0.0f, -5.0f, 5.0f}));
    EXPECT_EQ(Cell(1, kCoordXyz), (VelocityVector{kMissing, kMissing, kMissing, kMissing}));

    const double c0 = 1449.2 + 15 * (4.6 + 15 * (-0.055 + 0.00029 * 15)) - 35 * (1.34 - 0.15);
    const double f = static_cast<float>(1449.2 + 15 * (4.6 + 15 * (-0.055 + 0.00029 * 15))) / c0;
    EXPECT_NEAR(Cell(0, kCoordBeam)[0], 10.0 * f, 1e-4);
    // In the finer unit a raw 100 is 1 cm/s, transformed or not (f only where nothing transforms).
    UseReducedVelocityUnit();
    EXPECT_FLOAT_EQ(Cell(0, kCoordXyz)[0], 1.0f);
    EXPECT_NEAR(Cell(0, kCoordBeam)[0], 1.0 * f, 1e-5);
}

TEST_F(VelocityChainTest, EnuRecordingTurnsByTheStoredDeclination) {
    Build(kCoordEnu);
    data.user.MagneticDeclinationRaw = 500;  // 10 degrees
    Derive();
    SetCell(0, 0, {0, 100, 0, 0});
    SetCell(0, 1, {9999, 100, 0, 0});
    const VelocityVector v = Cell(0, kCoordEnu);
    EXPECT_NEAR(v[0], 10.0 * std::sin(10 * kRad), 1e-4);
    EXPECT_NEAR(v[1], 10.0 * std::cos(10 * kRad), 1e-4);
    EXPECT_LT(Cell(1, kCoordEnu)[0], kMissing);  // 9999 is a value in the normal format
    UseReducedVelocityUnit();
    EXPECT_EQ(Cell(1, kCoordEnu)[0], kMissing);
    EXPECT_EQ(Cell(1, kCoordEnu)[1], kMissing);
}

TEST_F(VelocityChainTest, BottomTrackReferenceSubtractsTheBedPerAxis) {
    Build(kCoordEnu);
    SetCell(0, 0, {100, 0, 0, 0});
    slots[0].bottomTrack.Velocity = {-0.5f, 0.25f, 0.01f, 0.0f};
    const VelocityVector v = Cell(0, kCoordEnu, kVelocityRefBottomTrack);
    EXPECT_FLOAT_EQ(v[0], 60.0f);
    EXPECT_FLOAT_EQ(v[1], -25.0f);
    EXPECT_FLOAT_EQ(v[2], -1.0f);
    slots[0].bottomTrack.Velocity[0] = kMissing;
    EXPECT_EQ(Cell(0, kCoordEnu, kVelocityRefBottomTrack)[2], kMissing);
}

TEST_F(VelocityChainTest, GpsReferenceAddsTheRoundedGpsVelocity) {
    Build(kCoordEnu);
    SetCell(0, 0, {0, 0, 30, 0});
    slots[0].gpsPresent = true;
    slots[0].gps = GpsBlockMoving(45.0, 7.0, 0.0, 0.0001, 10.0);
    const double meanLatitude = 45.00005;
    const double dn = 0.0001 * (6378137.0 - meanLatitude * 237.611) * kRad;
    const double northMmS = std::round(dn * 10000.0 / 10.0) * 0.1;
    const VelocityVector v = Cell(0, kCoordEnu, kVelocityRefGps);
    EXPECT_NEAR(v[1], northMmS * 0.1, 1e-3);
    EXPECT_FLOAT_EQ(v[0], 0.0f);

    slots[0].gps = GpsBlockMoving(45.0, 7.0, 0.0, 0.0001, 0.5);  // under one second: no velocity
    const VelocityVector bad = Cell(0, kCoordEnu, kVelocityRefGps);
    EXPECT_EQ(bad[0], kMissing);
    EXPECT_EQ(bad[1], kMissing);
    EXPECT_FLOAT_EQ(bad[2], 3.0f);
}

TEST_F(VelocityChainTest, ShallowCellVectorComesFromTheShallowBlock) {
    Build(kCoordEnu, 2);
    settings.CoordinateSystem = kCoordEnu;
    settings.VelocityReference = kVelocityRefInstrument;
    ByteWriter w(Raw(0).shallowWater.data(), Raw(0).shallowWater.size());
    for (size_t b = 0; b < 4; ++b) w.i16(12 + 2 * b, static_cast<int16_t>(100 * (b + 1)));
    std::array<float, 4> v{};
    ASSERT_TRUE(GetShallowVelocity(ctx, 0, v));
    EXPECT_EQ(v, (std::array<float, 4>{10.0f, 20.0f, 30.0f, 40.0f}));
    w.i16(14, 9999);  // a shallow-water value from 9999 on is bad
    EXPECT_FALSE(GetShallowVelocity(ctx, 0, v));
    data.user.BottomTrack = 1;  // no shallow-water block in the file
    Derive();
    w.i16(14, 200);
    EXPECT_FALSE(GetShallowVelocity(ctx, 0, v));
}

// One scene of the virtual river recorded three times: the earth velocities over ground agree
// with each other and with the river.
class RecordedSceneTest : public ChainFixture {
protected:
    sim::RiverScenario scenario;
    sim::ProfileState state0;

    void SetUp() override {
        scenario.crossing.pitchDeg = 4.0;
        scenario.crossing.rollDeg = 3.0;
        scenario.crossing.headingWobbleDeg = 20.0;
        scenario.crossing.crabAngleDeg = 25.0;
        state0 = sim::PlanCrossing(scenario.river, scenario.crossing).profiles[37];
    }

    // Water velocity over ground of cell 0, ENU, bottom-track reference.
    VelocityVector Record(int coordinates) {
        scenario.instrument.coordinateSystem = coordinates;
        const sim::InstrumentRecords r = sim::BuildInstrumentRecords(scenario);
        data.conf = r.conf;
        data.oper = r.oper;
        data.user = r.user;
        Derive();
        data.SetCacheCapacity(2);
        slots.assign(2, SlotResults{});
        state.ring = 2;
        state.count = 1;
        sim::SmallMatrix b;
        b.n = data.derived.matrixSize;
        for (int i = 0; i < b.n; ++i)
            for (int j = 0; j < b.n; ++j) b.at(i, j) = data.derived.matrix[static_cast<size_t>(i * b.n + j)];
        sim::TransectSettings t;
        t.layout = sim::CellLayoutOf(scenario.instrument);
        t.coordinateSystem = coordinates;
        sim::TransectGenerator generator(scenario.river, t, b, 1);
        data.Slot(0) = generator.Build(state0);
        settings.CoordinateSystem = kCoordEnu;
        BottomTrackStep(ctx, 0);
        return VelocityChain(ctx, 0, kCoordEnu, kVelocityRefBottomTrack).Cell(0);
    }
};

TEST_F(RecordedSceneTest, BeamXyzAndEnuGiveTheSameEarthVelocity) {
    const VelocityVector enu = Record(kCoordEnu);
    const VelocityVector xyz = Record(kCoordXyz);
    const VelocityVector beam = Record(kCoordBeam);
    for (int axis = 0; axis < 2; ++axis) {
        EXPECT_NEAR(xyz[axis], enu[axis], 0.3) << axis;
        EXPECT_NEAR(beam[axis], enu[axis], 0.3) << axis;
    }
    const sim::CellLayout l = sim::CellLayoutOf(scenario.instrument);
    const double bedRange = scenario.river.Depth(state0.y) - l.transducerDepthM;
    const double centre = l.CellCentre(0) - l.transducerDepthM;
    const double speed = scenario.river.LayerMeanVelocity(state0.y, bedRange - centre - 0.5 * l.cellM,
                                                          bedRange - centre + 0.5 * l.cellM);
    EXPECT_NEAR(enu[0], 0.0, 0.3);  // the river flows north
    EXPECT_NEAR(enu[1], speed * 100.0, 0.3);
}

TEST_F(RecordedSceneTest, UserRotationTurnsBeamDataClockwiseAndAppliesTheUserMatrixToEnu) {
    const VelocityVector plainBeam = Record(kCoordBeam);
    const VelocityVector plainEnu = Record(kCoordEnu);
    settings.UserRotationActive = true;
    settings.UserRotationAngle = 30.0;
    const VelocityVector beam = Record(kCoordBeam);
    const double turn = VectorDirection(beam[0], beam[1]) - VectorDirection(plainBeam[0], plainBeam[1]);
    EXPECT_NEAR(std::fmod(turn + 360.0, 360.0), 30.0, 0.3);
    EXPECT_NEAR(std::hypot(beam[0], beam[1]), std::hypot(plainBeam[0], plainBeam[1]), 0.2);
    // The matrix of heading 90 - a: E' = E cos a - N sin a, N' = E sin a + N cos a.
    const VelocityVector enu = Record(kCoordEnu);
    const double c = std::cos(30 * kRad), s = std::sin(30 * kRad);
    EXPECT_NEAR(enu[0], plainEnu[0] * c - plainEnu[1] * s, 0.3);
    EXPECT_NEAR(enu[1], plainEnu[0] * s + plainEnu[1] * c, 0.3);
}

}  // namespace
}  // namespace rm::test
