// GetProfileValue: components of cell values, the direction rule, English units and the codes
// that read processing results.

#include <gtest/gtest.h>

#include <cmath>

#include "processing/chain_fixture.h"
#include "processing/processing_steps.h"
#include "processing/vector_direction.h"

namespace rm::test {
namespace {

constexpr double kFeet = 1.0 / 0.3048;

class ProfileValueTest : public ChainFixture {
protected:
    void SetUp() override {
        Build(kCoordEnu);
        SetCell(0, 0, {30, -40, 5, 1});
    }
    double Value(int code, int component = 0, int cell = 0, int coordinates = kCoordEnu) {
        return GetProfileValue(ctx, code, component, coordinates, kVelocityRefInstrument, 0, cell);
    }
};

TEST_F(ProfileValueTest, VelocityComponentsMeanMagnitudeAndDirection) {
    EXPECT_FLOAT_EQ(Value(1, 1), -4.0f);
    EXPECT_NEAR(Value(50, 4), (3.0 - 4.0 + 0.5 + 0.1) / 4.0, 1e-6);
    EXPECT_NEAR(Value(54, 5), 5.0, 1e-6);
    EXPECT_NEAR(Value(1, 6), 90.0 + std::atan2(4.0, 3.0) * 180.0 / 3.14159265358979, 1e-4);
    // A bad cell: no magnitude, direction 0; a cell outside the profile: missing.
    EXPECT_EQ(Value(1, 5, 1), MissingValue);
    EXPECT_EQ(Value(1, 6, 1), 0.0);
    EXPECT_EQ(Value(1, 0, 99), MissingValue);
}

TEST(VectorDirection, QuadrantsAndTheNearlyNorthSouthRule) {
    EXPECT_NEAR(VectorDirection(-1.0, 0.0), 270.0, 1e-6);
    EXPECT_DOUBLE_EQ(VectorDirection(0.0005, -2.0), 180.0);
    EXPECT_DOUBLE_EQ(VectorDirection(-0.0005, 2.0), 0.0);
    EXPECT_DOUBLE_EQ(VectorDirection(3271.0, 0.0), 0.0);
    EXPECT_EQ(VectorMagnitude(3271.0, 0.0), MissingValue);
}

TEST_F(ProfileValueTest, BeamValuesOfStandardDeviationAndSnr) {
    ProfileRecord& r = Raw(0);
    for (int b = 0; b < 4; ++b) r.StdError(b, 0) = static_cast<uint8_t>(20 * (b + 1));
    r.StdError(3, 0) = 255;
    EXPECT_DOUBLE_EQ(Value(3, 1), 4.0);
    EXPECT_EQ(Value(52, 3), MissingValue);
    EXPECT_NEAR(Value(3, 4), 4.0, 1e-9);  // (2 + 4 + 6) / 3
    SetSignal(0, 100, 30);
    r.Amplitude(2, 0) = 20;
    EXPECT_NEAR(Value(4, 0), 70 * 0.43, 1e-9);
    EXPECT_EQ(Value(53, 2), 0.0);
    EXPECT_DOUBLE_EQ(Value(2, 2), 20.0);
}

TEST_F(ProfileValueTest, EnglishUnitsConvertEachQuantityButNotMissing) {
    data.conf.ExtPressureSensorInstalled = 1;  // pressure = counts x 0.001 dbar
    Derive();
    Raw(0).header.pressureCounts = 10000;
    Raw(0).header.temperature = 2000;
    slots[0].meanDepth = 2.0f;
    settings.UnitSystem = 0;
    EXPECT_NEAR(Value(1, 0), 3.0 * kFeet * 0.01, 1e-6);
    EXPECT_NEAR(Value(5), 68.0, 1e-9);
    EXPECT_NEAR(Value(6), 10.0 * 1.450377, 1e-9);
    EXPECT_NEAR(Value(47), 2.0 * kFeet, 1e-6);
    slots[0].meanDepth = MissingValueF;
    EXPECT_EQ(Value(47), MissingValue);
    slots[0].processed.TotalQ = 1.0f;
    EXPECT_NEAR(Value(61), kFeet * kFeet * kFeet, 1e-6);
}

TEST_F(ProfileValueTest, SpeedsAndTheirRatio) {
    ProcessedProfile& p = slots[0].processed;
    p.MeanEast = 30.0f;
    p.MeanNorth = 40.0f;
    p.BottomTrackEast = -0.6;
    p.BottomTrackNorth = 0.8;
    EXPECT_NEAR(Value(57), 0.5, 1e-9);
    EXPECT_NEAR(Value(70), 1.0, 1e-9);
    EXPECT_NEAR(Value(71), 2.0, 1e-9);
    EXPECT_FLOAT_EQ(Value(63, 1), 40.0f);
    p.MeanEast = p.MeanNorth = 0.0f;
    EXPECT_EQ(Value(71), 0.0);
    settings.TrackReference = kTrackRefGps;
    p.GpsEast = MissingValue;
    EXPECT_EQ(Value(70), MissingValue);
}

TEST_F(ProfileValueTest, QualityAndErrorDependOnCoordinatesAndBottomTrack) {
    slots[0].processed.QualityIndex = 55.0f;
    slots[0].processed.VelocityError = 1.5f;
    EXPECT_EQ(Value(64), 55.0);
    EXPECT_EQ(Value(64, 0, 0, kCoordXyz), 0.0);
    EXPECT_EQ(Value(62), 1.5);
    data.user.BottomTrack = 0;
    Derive();
    EXPECT_EQ(Value(62), 0.0);
    EXPECT_EQ(Value(17), MissingValue);
    EXPECT_EQ(Value(999), MissingValue);
}

TEST_F(ProfileValueTest, BottomTrackDepthMeanOfBeamsPresent) {
    slots[0].bottomTrack.Depth = {2.0f, 0.0f, 3.0f, MissingValueF};
    EXPECT_DOUBLE_EQ(Value(16, 2), 3.0);
    EXPECT_DOUBLE_EQ(Value(16, 4), 2.5);
    EXPECT_EQ(Value(16, 1), MissingValue);
}

}  // namespace
}  // namespace rm::test
