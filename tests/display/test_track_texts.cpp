// The track map's rules and texts that need no drawing: grid spacing, the grid dialog's check,
// latitude and longitude labels, the hover text, the scale bar and the vector scale commands.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "display/track_grid.h"
#include "display/track_texts.h"

namespace rm {
namespace {

TEST(TrackGrid, AutomaticSpacingWorkedCases) {
    struct Case {
        double span, spacing;
    };
    // x = span / 4; p the power of ten at or below x; 5p when 5p < x, p when 2p >= x, else 2p.
    const Case cases[] = {
        {4.0, 1.0},     // x = 1: p stays 1
        {8.0, 1.0},     // x = 2: 2p >= x
        {8.4, 2.0},     // x = 2.1
        {20.0, 2.0},    // x = 5: 5p < x fails at equality
        {24.0, 5.0},    // x = 6
        {40.0, 10.0},   // x = 10: p = 10
        {-40.0, 10.0},  // the span's sign does not matter
        {150.0, 20.0},  // x = 37.5
        {1000.0, 200.0}, // x = 250 -> p = 100: 5p = 500 > x and 2p = 200 < x
        {0.4, 0.1},     // x = 0.1: p comes down to 0.1
        {3.0, 0.5},     // x = 0.75: p = 0.1, and 5p < x
    };
    for (const Case& c : cases) EXPECT_NEAR(AutomaticGridSpacing(c.span), c.spacing, 1e-12) << c.span;
    EXPECT_EQ(AutomaticGridSpacing(0.0), 0.0);
    EXPECT_EQ(AutomaticGridSpacing(std::nan("")), 0.0);
    EXPECT_EQ(AutomaticGridSpacing(INFINITY), 0.0);
}

TEST(TrackGrid, AutomaticSpacingIsARoundNumberGivingFourToTenDivisions) {
    for (double span = 0.013; span < 2.0e6; span *= 1.0173) {
        const double spacing = AutomaticGridSpacing(span);
        const double divisions = span / spacing;
        EXPECT_GE(divisions, 4.0 - 1e-9) << span;
        EXPECT_LE(divisions, 10.0 + 1e-9) << span;
        const double decade = std::pow(10.0, std::floor(std::log10(spacing) + 1e-9));
        const double mantissa = spacing / decade;
        EXPECT_TRUE(std::fabs(mantissa - 1) < 1e-9 || std::fabs(mantissa - 2) < 1e-9 || std::fabs(mantissa - 5) < 1e-9)
            << span << " gives " << spacing;
    }
}

TEST(TrackGrid, SpacingCheckOfTheDialog) {
    for (double ok : {1.0, 10.0, 1000.0}) EXPECT_TRUE(CheckGridSpacing(ok, 1).ok) << ok;
    for (double bad : {0.999, 0.0, -5.0, 1000.001, std::nan("")}) {
        const DialogCheck c = CheckGridSpacing(bad, 1);
        EXPECT_FALSE(c.ok) << bad;
        EXPECT_EQ(c.message, "Grid spacing must be between 1 and 1000 meters");
        EXPECT_EQ(c.field, "MapGridSpacing");
    }
    for (double ok : {3.0, 3000.0, 32.8}) EXPECT_TRUE(CheckGridSpacing(ok, 0).ok) << ok;
    for (double bad : {1.0, 2.999, 3000.5}) {
        const DialogCheck c = CheckGridSpacing(bad, 0);
        EXPECT_FALSE(c.ok) << bad;
        EXPECT_EQ(c.message, "Grid spacing must be between 3 and 3000 feet");
    }
}

TEST(TrackGrid, LatitudeAndLongitudeLabels) {
    const std::string deg = "\u00B0";
    EXPECT_EQ(LatLonLabel(45.5), " 45" + deg + "30' 0\"");
    EXPECT_EQ(LatLonLabel(8.0 + 15.0 / 60.0 + 15.0 / 3600.0), "  8" + deg + "15'15\"");
    EXPECT_EQ(LatLonLabel(8.0 + 15.0 / 60.0 + 15.5 / 3600.0), "  8" + deg + "15'15.50\"");
    // 122 deg 25' 9.8958": seconds not within 0.05 of a whole number.
    EXPECT_EQ(LatLonLabel(-122.4194155), "-122" + deg + "25'9.90\"");
    // 47 deg 3' 29.96" is within 0.05 of 30.
    EXPECT_EQ(LatLonLabel(47.0 + 3.0 / 60.0 + 29.96 / 3600.0), " 47" + deg + " 3'30\"");
    // 10 deg 59' 59.98" prints as 11 deg 0' 0", never as 60 seconds.
    EXPECT_EQ(LatLonLabel(10.0 + 59.0 / 60.0 + 59.98 / 3600.0), " 11" + deg + " 0' 0\"");
    // Less than a degree south or west keeps its sign.
    EXPECT_EQ(LatLonLabel(-0.5), " -0" + deg + "30' 0\"");
    EXPECT_EQ(LatLonLabel(0.0), "  0" + deg + " 0' 0\"");
}

TEST(TrackGrid, TrackCoordinateLabels) {
    EXPECT_EQ(TrackAxisLabel(120.0, 20.0), "120");
    EXPECT_EQ(TrackAxisLabel(-40.0, 10.0), "-40");
    EXPECT_EQ(TrackAxisLabel(12.5, 0.5), "12.5");
    EXPECT_EQ(TrackAxisLabel(-1e-12, 1.0), "0");
    EXPECT_EQ(TrackAxisLabel(-1e-12, 0.2), "0.0");
}

TEST(TrackTexts, HoverTextInBothUnitSystems) {
    const std::string deg = "\u00B0";
    EXPECT_EQ(TrackHoverText(12, 0.456, 87.26, 1), "Profile# 12; Speed=0.46 m/s; Dir=87.3" + deg);
    EXPECT_EQ(TrackHoverText(1, 1.5, 359.96, 0), "Profile# 1; Speed=1.50 ft/s; Dir=360.0" + deg);
    EXPECT_EQ(TrackHoverText(3, 32767.0, 0.0, 1), "Profile# 3; Speed= -- m/s; Dir= -- " + deg);
    EXPECT_EQ(TrackHoverText(4, 40000.0, 12.0, 2), "Profile# 4; Speed= -- ft/s; Dir= -- " + deg);
}

TEST(TrackTexts, ScaleBarAndVectorScale) {
    EXPECT_EQ(ScaleBarText(1), "1.0 m/s");
    EXPECT_EQ(ScaleBarText(0), "1.0 ft/s");
    EXPECT_DOUBLE_EQ(IncreasedVectorScale(50.0), 60.0);
    EXPECT_DOUBLE_EQ(DecreasedVectorScale(60.0), 50.0);
    // Five steps up and five down come back to the start.
    double scale = 50.0;
    for (int i = 0; i < 5; ++i) scale = IncreasedVectorScale(scale);
    EXPECT_NEAR(scale, 50.0 * std::pow(1.2, 5), 1e-9);
    for (int i = 0; i < 5; ++i) scale = DecreasedVectorScale(scale);
    EXPECT_NEAR(scale, 50.0, 1e-12);
}

}  // namespace
}  // namespace rm
