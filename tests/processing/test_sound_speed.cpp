// The sound speed formula and the correction factor of a profile.

#include <gtest/gtest.h>

#include "processing/chain_fixture.h"
#include "processing/processing_steps.h"
#include "processing/sound_speed.h"

namespace rm::test {
namespace {

TEST(SoundSpeed, FormulaAtHandComputedPoints) {
    EXPECT_NEAR(SoundSpeed(35.0, 0.0, 0.0), 1449.2, 1e-9);
    // 1449.2 + 10 (4.6 + 10 (-0.055 + 0.0029)) = 1489.99
    EXPECT_NEAR(SoundSpeed(35.0, 10.0, 0.0), 1489.99, 1e-9);
    // salinity 0 at 0 degC: -35 x 1.34; 100 m adds 1.6
    EXPECT_NEAR(SoundSpeed(0.0, 0.0, 100.0), 1449.2 - 46.9 + 1.6, 1e-9);
}

class SoundSpeedFactorTest : public ChainFixture {
protected:
    void SetUp() override { Build(kCoordEnu); }
};

TEST_F(SoundSpeedFactorTest, NoCorrectionIsExactlyOne) {
    data.user.DefaultTemperature = 0;
    Raw(0).ctd.temperature = 1e30f;  // would make the formula overflow
    settings.CorrectedSalinityInPpt = 30.0;
    EXPECT_EQ(SoundSpeedFactor(ctx, 0), 1.0);
}

TEST_F(SoundSpeedFactorTest, MeasuredTemperatureModeChangesOnlyTheSalinity) {
    data.user.TemperatureMode = 1;
    data.user.DefaultSalinity = 50;      // 5 ppt input to the instrument
    Raw(0).header.temperature = 1234;    // 12.34 degC measured
    settings.SalinityCorrectionType = 1;
    settings.CorrectedSalinityInPpt = 30.0;
    const double f = static_cast<float>(SoundSpeed(30.0, 12.34, 0.0)) / SoundSpeed(5.0, 12.34, 0.0);
    EXPECT_DOUBLE_EQ(SoundSpeedFactor(ctx, 0), f);
    EXPECT_GT(f, 1.0);
}

TEST_F(SoundSpeedFactorTest, CtdTypesReadTheSlotsValuesEvenWithoutACtdBlock) {
    Raw(0).hasCtd = false;
    Raw(0).ctd.temperature = 8.0f;
    Raw(0).ctd.salinity = 20.0f;
    settings.TemperatureCorrectionType = 2;
    settings.SalinityCorrectionType = 2;
    const double f = static_cast<float>(SoundSpeed(20.0, 8.0, 0.0)) / SoundSpeed(0.0, 15.0, 0.0);
    EXPECT_DOUBLE_EQ(SoundSpeedFactor(ctx, 0), f);
}

}  // namespace
}  // namespace rm::test
