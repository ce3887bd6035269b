// The colour rule, the mapping of values to pixels, the legend drawn by the same rule, and the
// checks of the scale dialogs.

#include <gtest/gtest.h>

#include <QPainter>

#include "display/contour_colour.h"
#include "display/contour_legend.h"
#include "display/contour_view.h"
#include "display/pixel_mapping.h"
#include "display/profile_graph.h"
#include "display_test_support.h"

namespace rm {
namespace {

using displaytest::BlankImage;
using displaytest::Pixel;

TEST(ContourColour, BandsEdgesAndWrapOnAWorkedRange) {
    // Range 0..8: w = 8, band edges at 1, 3, 5 and 7; each colour worked out by hand from the
    // table, with truncation toward zero and the low eight bits.
    struct Case {
        double v;
        int r, g, b;
    };
    const Case cases[] = {
        {0.0, 0, 0, 127},     // blue starts at 127 at v = a
        {-0.5, 0, 0, 63},     // below a, still the first band: -64 + 127
        {1.0, 0, 0, 255},     // exactly a + 0.125 w belongs to the first band
        {2.0, 0, 127, 255},   // 1020 / 8 = 127.5
        {3.0, 0, 255, 255},
        {4.0, 127, 255, 127},
        {5.0, 255, 255, 0},
        {6.0, 255, 127, 0},
        {7.0, 255, 0, 0},
        {8.0, 127, 0, 0},     // the last band falls to 127 at v = b
        {16.0, 127, 0, 0},    // 255 - 1152 = -897, low byte 127
        {-1.0, 0, 0, 255},    // -128 + 127 = -1, low byte 255
        {-8.0, 0, 0, 127},    // -897 again
        {32767.0, 255, 0, 0}, // the missing value: 255 - 128 * 32760, low byte 255
    };
    for (const Case& c : cases) {
        EXPECT_EQ(ContourColour(c.v, 0.0, 8.0), qRgb(c.r, c.g, c.b)) << "v = " << c.v;
    }
    // A missing value on a usual velocity range, 0 to 1.5 m/s: 255 - 1024 (32767 - 1.3125) / 1.5.
    EXPECT_EQ(ContourColour(32767.0, 0.0, 1.5), qRgb(213, 0, 0));
    // The rule moves with the range: -1..1 at its middle is the middle band.
    EXPECT_EQ(ContourColour(0.0, -1.0, 1.0), qRgb(127, 255, 127));
}

TEST(PixelMapping, TruncatesTowardZeroAndInvertsAtPixelCentres) {
    const AxisMapping m{0.0, 10.0, 10, 110};
    EXPECT_EQ(m.ToPixel(5.0), 60);     // 5 * 100 / 10 + 10
    EXPECT_EQ(m.ToPixel(0.0), 10);
    EXPECT_EQ(m.ToPixel(10.0), 110);   // the end of the range is the pixel past the rectangle
    EXPECT_EQ(m.ToPixel(0.099), 10);   // 10.99 truncated
    EXPECT_EQ(m.ToPixel(-0.15), 8);    // 8.5 truncated
    EXPECT_DOUBLE_EQ(m.ValueAtPixel(60), 5.05);
    EXPECT_EQ(m.ToPixel(1e300), 1000000);  // held, not overflowed
    const PlotMapping p = PlotMapping::Of(QRect(20, 30, 200, 100), 1.0, 5.0, 0.0, 10.0);
    EXPECT_EQ(p.ToPixel(3.0, 2.5), QPoint(120, 55));  // depth grows downward from the top
    EXPECT_FALSE((AxisMapping{2.0, 2.0, 0, 10}.Valid()));
}

TEST(ContourLegend, BarIsTheColourRuleFromLowAtTheBottomToHighAtTheTop) {
    QImage image = BlankImage(160, 400);
    ContourViewState view;
    view.colour0 = -0.5;
    view.colour1 = 1.5;
    view.colourStep = 0.5;
    {
        QPainter painter(&image);
        PaintContourLegend(painter, QRect(0, 0, 160, 400), view, 1, 12);
    }
    const QRect bar = LegendBar(QRect(0, 0, 160, 400), 12);
    const AxisMapping m = LegendMapping(bar, view);
    const int x = bar.left() + bar.width() / 2;
    for (int y = bar.top(); y < bar.top() + bar.height(); y += 7) {
        ASSERT_EQ(Pixel(image, x, y), ContourColour(m.ValueAtPixel(y), -0.5, 1.5)) << "row " << y;
    }
    // The top row is near the high end (dark red), the bottom near the low end (dark blue).
    EXPECT_EQ(qBlue(Pixel(image, x, bar.top())), 0);
    EXPECT_GT(qRed(Pixel(image, x, bar.top())), 120);
    EXPECT_EQ(qRed(Pixel(image, x, bar.bottom())), 0);
    EXPECT_LT(qBlue(Pixel(image, x, bar.bottom())), 140);
    EXPECT_EQ(LegendTickLabel(0.5, 0.5), QString(" 0.5"));
    EXPECT_EQ(LegendTickLabel(20.0, 10.0), QString("  20"));
    EXPECT_EQ(LegendTitle(view, 0), QString("Velocity (ft/s)"));
}

TEST(ScaleChecks, StepFirstThenRangeWithTheGraphsName) {
    EXPECT_EQ(CheckContourScale(0.0, 1.0, 0.0).message, "Contour step size must be greater than zero");
    EXPECT_FALSE(CheckContourScale(1.0, 1.0, 0.1).ok);
    EXPECT_TRUE(CheckContourScale(0.0, 1.0, 0.1).ok);
    for (const char* name : {kLeftProfileGraph, kCenterProfileGraph, kRightProfileGraph}) {
        EXPECT_EQ(CheckProfileGraphScale(name, 2.0, 1.0, -1.0).message,
                  std::string(name) + ": Step size must be greater than zero");
        EXPECT_EQ(CheckProfileGraphScale(name, 2.0, 2.0, 1.0).message,
                  std::string(name) + ": Maximum value must be greater than minimum value");
        EXPECT_TRUE(CheckProfileGraphScale(name, -1.0, 2.0, 0.5).ok);
    }
    EXPECT_DOUBLE_EQ(RoundStep(7.3, 4), 2.0);
    EXPECT_DOUBLE_EQ(RoundStep(0.3, 3), 0.1);
}

}  // namespace
}  // namespace rm
