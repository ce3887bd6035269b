// The Data Quality Index: the weighted mean of the measured layer's uncertainty (from the
// velocity error and the ping count) and the shallow cell's (from its correlation), and the
// profiles that cannot be rated.

#include <gtest/gtest.h>

#include <cmath>

#include "processing/discharge_fixture.h"

namespace rm::test {
namespace {

class QualityIndexTest : public DischargeFixture {
protected:
    void SetUp() override { BuildDischarge(); }
    float Index(double velocityError) {
        slots[0].processed.VelocityError = static_cast<float>(velocityError);
        ComputeQualityIndex(ctx, 0);
        return slots[0].processed.QualityIndex;
    }
};

TEST_F(QualityIndexTest, MeasuredLayerRatesByVelocityErrorAndPingsAndOnePingIsInfinite) {
    ProfileScene scene;
    scene.pings = 10;
    TakeProfile(0, scene);
    const double expected =
        (static_cast<double>(2.576f) + static_cast<double>(8.9f) / std::pow(9.0, 1.125)) / std::sqrt(10.0) * 2.0;
    EXPECT_NEAR(Index(2.0), expected, 1e-5);
    EXPECT_FLOAT_EQ(Index(0.0), 100.0f);  // a perfect profile rates like an unrated one
    Raw(0).header.pingCount = 1;          // one ping rates infinite
    EXPECT_TRUE(std::isinf(Index(2.0)));
}

TEST_F(QualityIndexTest, ProfilesThatCannotBeRatedKeep100) {
    ProfileScene scene;
    TakeProfile(0, scene);
    ASSERT_NE(Index(2.0), 100.0f);

    Raw(0).header.pingCount = 0;
    EXPECT_FLOAT_EQ(Index(2.0), 100.0f);
    Raw(0).header.pingCount = 10;
    slots[0].processed.DepthStatus = 2;
    EXPECT_FLOAT_EQ(Index(2.0), 100.0f);
    slots[0].processed.DepthStatus = 1;
    slots[0].bottomStatus = 4;  // good with one bad beam is not good enough
    EXPECT_FLOAT_EQ(Index(2.0), 100.0f);
    slots[0].bottomStatus = kBottomGood;
    settings.TrackReference = kTrackRefGps;  // no GPS in this profile
    EXPECT_FLOAT_EQ(Index(2.0), 100.0f);
    settings.TrackReference = kTrackRefBottomTrack;
    settings.VelocityReference = kVelocityRefGps;
    EXPECT_FLOAT_EQ(Index(2.0), 100.0f);
    settings.VelocityReference = kVelocityRefInstrument;
    working.MeasuredMean = Vector2{};
    EXPECT_FLOAT_EQ(Index(2.0), 100.0f);
}

TEST_F(QualityIndexTest, ShallowCellWeighsInByItsThickness) {
    BuildDischarge(2);
    SetShallowGeometry(20, 20, 30);
    SetShallowVelocity(0, 0, 500, 73);
    ProfileScene scene;
    scene.shallowCells = 1;
    TakeProfile(0, scene);
    // A = 100 (error 0) over 6 cells of 0.5 m; B = (100 - 73)^(1/3) = 3 over 0.3 m.
    EXPECT_NEAR(Index(0.0), (3.0 * 100.0 + 0.3 * 3.0) / 3.3, 1e-4);
}

}  // namespace
}  // namespace rm::test
