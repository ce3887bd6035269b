// Values derived from the records: matrix signs, pressure calibration and pressure from
// counts, shallow-water factors, the Bottom Track override and cell positions.

#include <gtest/gtest.h>

#include "data/instrument_records.h"
#include "data/test_record_images.h"

namespace rm {
namespace {

InstrumentConf DecodedConf(const test::Image& img) {
    InstrumentConf c;
    EXPECT_EQ(DecodeConf(img.data(), img.size(), c), RecordStatus::Ok);
    return c;
}

TEST(DerivedValues, DownOrientationTurnsRowsTwoAndThreeFromThreeBeamsOn) {
    for (uint8_t beams : {2, 3, 4}) {
        for (uint8_t orientation : {0, 1}) {
            test::Image img = test::ConfV2().u8(26, beams).u8(30, orientation);
            for (int k = 0; k < 16; ++k) img.i16(36 + 2 * k, static_cast<int16_t>((k + 1) * 512));  // (k+1)/2
            const DerivedValues d = DeriveValues(DecodedConf(img), OperationRecord(), UserSetup());
            ASSERT_EQ(d.matrixSize, beams);
            for (int row = 0; row < beams; ++row) {
                for (int col = 0; col < beams; ++col) {
                    const int k = row * beams + col;  // rows of Nbeams columns from the start
                    const bool turned = orientation == 0 && beams >= 3 && (row == 1 || row == 2);
                    EXPECT_FLOAT_EQ(d.matrix[k], (turned ? -1.0f : 1.0f) * (k + 1) / 2.0f)
                        << int(beams) << " beams, orientation " << int(orientation) << " at " << row << "," << col;
                }
            }
        }
    }
}

TEST(DerivedValues, PressureCalibrationAndPressureFromCountsBySensorKind) {
    const OperationRecord oper;
    UserSetup user;
    auto pressure = [&](const test::Image& img, uint16_t counts, uint8_t high) {
        const InstrumentConf c = DecodedConf(img);
        return PressureFromCounts(c, user, DeriveValues(c, oper, user), counts, high, 2000);
    };
    // Internal sensor: offset -150000e-5 dbar, scale 2500000e-8 dbar/count, scale 2 -42e-12.
    const DerivedValues internal = DeriveValues(DecodedConf(test::ConfV2()), oper, user);
    EXPECT_DOUBLE_EQ(internal.pressureOffset, -1.5);
    EXPECT_DOUBLE_EQ(internal.pressureScale, 0.025);
    EXPECT_DOUBLE_EQ(internal.pressureScale2, -42e-12);
    EXPECT_DOUBLE_EQ(pressure(test::ConfV2(), 100, 0), -1.5 + 100 * 0.025 + 10000 * -42e-12);
    // No sensor: calibration zero, and no pressure.
    const DerivedValues none = DeriveValues(DecodedConf(test::ConfV2().u8(34, 0)), oper, user);
    EXPECT_EQ(none.pressureOffset + none.pressureScale + none.pressureScale2, 0.0);
    EXPECT_EQ(pressure(test::ConfV2().u8(34, 0), 500, 3), 0.0);
    // External sensors replace the calibration; kinds 2 and 3 add the range byte (7) in millions.
    for (uint8_t kind : {1, 2, 3}) {
        const DerivedValues d = DeriveValues(DecodedConf(test::ConfV2().u8(80, kind)), oper, user);
        EXPECT_EQ(d.pressureOffset, 0.0);
        EXPECT_DOUBLE_EQ(d.pressureScale, 0.001);
        EXPECT_EQ(d.pressureRangeCounts, kind == 1 ? 0u : 7000000u);
    }
    EXPECT_DOUBLE_EQ(pressure(test::ConfV2().u8(34, 0).u8(80, 1), 12345, 0), 12.345);
    const test::Image druck = test::ConfV2().u8(34, 0).u8(80, 2);
    EXPECT_DOUBLE_EQ(pressure(druck, 500, 3), (3 * 65536 + 7000000 + 500) * 1e-6);
    EXPECT_DOUBLE_EQ(pressure(druck, 0, 0), 7.0);
    user.PCMode = 1;  // pulse-coherent: no counts, no pressure
    EXPECT_EQ(pressure(druck, 0, 3), 0.0);
    EXPECT_DOUBLE_EQ(pressure(druck, 500, 3), (7000500 + 3 * 65536) * 1e-6);
    // Versions 0 and 1 carry the fixed offset of those instruments.
    EXPECT_DOUBLE_EQ(DeriveValues(DecodedConf(test::ConfV1()), oper, user).pressureOffset, 1000000.0);
}

TEST(DerivedValues, ShallowWaterFactorsAndBottomTrackOverride) {
    InstrumentConf conf;
    conf.CPUSoftwareVerNum = 165;
    OperationRecord oper;
    UserSetup user;
    user.PCMode = 1;
    DerivedValues d = DeriveValues(conf, oper, user);
    EXPECT_TRUE(d.hasShallowWaterBlock);
    EXPECT_DOUBLE_EQ(d.shallowWaterVelocityFactor, 0.1);
    EXPECT_DOUBLE_EQ(d.shallowWaterFactorA, 0.72);
    EXPECT_DOUBLE_EQ(d.shallowWaterFactorB, 1.0);
    conf.CPUSoftwareVerNum = 164;
    EXPECT_DOUBLE_EQ(DeriveValues(conf, oper, user).shallowWaterVelocityFactor, 1.0);

    // Bottom Track 2 brings the block; only the document applies the 0.1 scale to it.
    conf.CPUSoftwareVerNum = 165;
    user.PCMode = 0;
    user.BottomTrack = 2;
    d = DeriveValues(conf, oper, user);
    EXPECT_TRUE(d.hasShallowWaterBlock);
    EXPECT_DOUBLE_EQ(d.shallowWaterVelocityFactor, 1.0);
    EXPECT_DOUBLE_EQ(d.documentShallowWaterVelocityFactor, 0.1);
    user.BottomTrack = 0;
    EXPECT_EQ(DeriveValues(conf, oper, user).shallowWaterFactorA, 0.0);

    // The operation record's word at 39 turns Bottom Track off on firmware 5.6 with DSP 5.0,
    // outside pulse-coherent mode only.
    conf.CPUSoftwareVerNum = 56;
    conf.DSPSoftwareVerNum = 50;
    oper.bottomTrackDisable = 1;
    user.BottomTrack = 1;
    EXPECT_EQ(DeriveValues(conf, oper, user).bottomTrackMode, 0);
    user.PCMode = 1;
    EXPECT_EQ(DeriveValues(conf, oper, user).bottomTrackMode, 1);
    user.PCMode = 0;
    conf.DSPSoftwareVerNum = 51;
    EXPECT_EQ(DeriveValues(conf, oper, user).bottomTrackMode, 1);
    conf.DSPSoftwareVerNum = 50;
    ApplyOperationLimits(conf, oper, user);
    EXPECT_EQ(user.BottomTrack, 0);
}

}  // namespace
}  // namespace rm
