// Power-law and constant fits of the unmeasured layers. Water following u(z) = a z^(1/6) (z the
// height above the bed) is fitted from its mean over the measured layer or over a range of
// cells; the fitted top and bottom layers must carry the integrals of that law. The analytic
// integral of a z^(1/6) from z0 to z1 is a 6/7 (z1^(7/6) - z0^(7/6)).

#include <gtest/gtest.h>

#include <cmath>

#include "processing/discharge_fixture.h"
#include "processing/power_fit.h"

namespace rm::test {
namespace {

constexpr double kH = 5.0, kD1 = 4.25, kD2 = 1.25;
constexpr double kA = 120.0;  // cm/s at 1 m above the bed

double Integral(double z0, double z1) { return kA * 6.0 / 7.0 * (std::pow(z1, 7.0 / 6.0) - std::pow(z0, 7.0 / 6.0)); }
double MeanOver(double z0, double z1) { return Integral(z0, z1) / (z1 - z0); }

FitColumn PowerLawColumn() {
    FitColumn c;
    c.depth = kH;
    c.topEdge = kD1;
    c.bottomEdge = kD2;
    c.firstCellDepth = 1.0;
    c.lastCellDepth = 3.5;
    c.measuredMean = Vector2{0.0, MeanOver(kD2, kD1)};
    c.topRangeThickness = 1.0;
    c.topRangeMean = Vector2{0.0, MeanOver(kD1 - 1.0, kD1)};
    c.bottomRangeThickness = 1.5;
    c.bottomRangeMean = Vector2{0.0, MeanOver(kD2, kD2 + 1.5)};
    return c;
}

TEST(PowerFit, TopAndBottomCarryTheLawsIntegralsFromTheWholeLayerOrARangeOfCells) {
    for (bool entireProfile : {true, false}) {
        SCOPED_TRACE(entireProfile);
        const FitChoice choice{kFitTypePower, entireProfile, 1.0 / 6.0};
        const LayerFit top = FitTopLayer(choice, PowerLawColumn());
        const LayerFit bottom = FitBottomLayer(choice, PowerLawColumn());
        EXPECT_NEAR(top.mean.North * (kH - kD1) / Integral(kD1, kH), 1.0, 1e-9);
        EXPECT_NEAR(bottom.mean.North * kD2 / Integral(0.0, kD2), 1.0, 1e-9);
        EXPECT_DOUBLE_EQ(top.mean.East, 0.0);
        if (entireProfile) {
            EXPECT_NEAR(top.ratio, Integral(kD1, kH) / Integral(kD2, kD1), 1e-12);
            EXPECT_NEAR(bottom.ratio, Integral(0.0, kD2) / Integral(kD2, kD1), 1e-12);
        }
    }
}

TEST(PowerFit, SubLayersAreTheLawsMeansOverTenthsOfTheirSpan) {
    const FitChoice entire{kFitTypePower, true, 1.0 / 6.0};
    const LayerFit top = FitTopLayer(entire, PowerLawColumn());
    const LayerFit bottom = FitBottomLayer(entire, PowerLawColumn());
    // Top: surface to the first layer (1.0 m) in 0.1 m steps; bottom: 3.5 m to the bed in 0.15 m.
    for (int k = 0; k < 10; ++k) {
        const size_t i = static_cast<size_t>(k);
        EXPECT_NEAR(top.layers[i].North, MeanOver(kH - (k + 1) * 0.1, kH - k * 0.1), 1e-9) << k;
        EXPECT_NEAR(top.layerDepth[i], (k + 0.5) * 0.1, 1e-12);
        EXPECT_NEAR(bottom.layers[i].North, MeanOver(1.5 - (k + 1) * 0.15, 1.5 - k * 0.15), 1e-9) << k;
        EXPECT_NEAR(bottom.layerDepth[i], 3.5 + (k + 0.5) * 0.15, 1e-12);
    }
}

TEST(PowerFit, ZoneWithoutThicknessGivesZeroLayers) {
    FitColumn c = PowerLawColumn();
    c.topRangeThickness = 0.0;  // no cell of the range had a value
    c.topRangeMean = Vector2{};
    const LayerFit top = FitTopLayer({kFitTypePower, false, 1.0 / 6.0}, c);
    EXPECT_DOUBLE_EQ(top.mean.North, 0.0);
    for (const Vector2& v : top.layers) EXPECT_DOUBLE_EQ(v.North, 0.0);
    // A range mean without value does not become a number through a fit that has a zone.
    c.topRangeThickness = 1.0;
    EXPECT_EQ(FitTopLayer({kFitTypePower, false, 1.0 / 6.0}, c).mean.North, MissingValue);
}

TEST(SnappedPower, HeightsWithinATenthOfAMillimetreOfTheBedAreZero) {
    EXPECT_DOUBLE_EQ(SnappedPower(-0.00005, 7.0 / 6.0), 0.0);
    EXPECT_DOUBLE_EQ(SnappedPower(0.0001, 7.0 / 6.0), 0.0);
    EXPECT_DOUBLE_EQ(SnappedPower(0.0002, 2.0), 0.0002 * 0.0002);
}

// The same law recorded in the cells of a profile: cell j holds the law's mean over its 0.5 m,
// rounded to the 0.1 cm/s of the raw values, which bounds the agreement to a few 1e-5.
class PowerLawProfileTest : public DischargeFixture {};

TEST_F(PowerLawProfileTest, ProfileDischargeMatchesTheIntegralsOfTheLaw) {
    BuildDischarge();
    ProfileScene scene;
    scene.cellVelocity = [](int j) {
        const double top = kD1 - j * kCell;
        return Vector2{0.0, MeanOver(top - kCell, top)};
    };
    TakeProfile(0, scene);
    // q = (bN x - bE y) t dt 0.01 with b = (-1, 0) m/s and dt = 2 s: 0.02 x integral.
    EXPECT_TRUE(Close(Result(0).TopQ, 0.02 * Integral(kD1, kH), 5e-5));
    EXPECT_TRUE(Close(Result(0).MiddleQ, 0.02 * Integral(kD2, kD1), 5e-5));
    EXPECT_TRUE(Close(Result(0).BottomQ, 0.02 * Integral(0.0, kD2), 5e-5));
    EXPECT_TRUE(Close(Result(0).MeanNorth, Integral(0.0, kH) / kH, 5e-5));
}

}  // namespace
}  // namespace rm::test
