// The contour of a virtual-river recording, probed pixel by pixel at positions computed from
// the mapping, against the processing accessor and the colour rule.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include <QPainter>

#include "display/contour_colour.h"
#include "display/contour_picture.h"
#include "display/contour_texts.h"
#include "display_test_support.h"
#include "processing/processing_steps.h"

namespace rm {
namespace {

using displaytest::BlankImage;
using displaytest::OpenRiver;
using displaytest::Pixel;

constexpr int kNorth = 1;  // the virtual river flows north

class Contour : public ::testing::Test {
protected:
    void SetUp() override { river = OpenRiver(40); }

    // The velocity of a cell as the processing accessor gives it, in m/s.
    double AccessorVelocity(const ProcessedWindow& w, int item, int cell, int component) const {
        const double v = GetProfileValue(w.Context(), 1, component, w.CoordinateSystem(), w.VelocityReference(),
                                         w.SlotOf(item), cell);
        return v < MissingValue ? v * 0.01 : v;
    }
    QImage Draw(const ProcessedWindow& w, const ContourViewState& view, const QRect& area) const {
        QImage image = BlankImage(area.right() + 6, area.bottom() + 6);
        QPainter painter(&image);
        ContourPicture(w, view).Paint(painter, area);
        return image;
    }

    std::unique_ptr<displaytest::RiverDocument> river;
    const QRect rect{5, 5, 400, 240};
};

TEST_F(Contour, CellsHaveTheColourOfTheAccessorsValueAndInvalidCellsThatOf32767) {
    const ProcessedWindow w(*river->document);
    ContourViewState view = DefaultContourView(w, DisplayVariable::Velocity, kNorth, XAxisMode::Profiles);
    view.showBottom = false;
    view.showCutOff = false;
    ASSERT_DOUBLE_EQ(view.x0, 1.0);
    ASSERT_DOUBLE_EQ(view.x1, 41.0);  // 10 pixels a profile
    const QImage image = Draw(w, view, rect);
    const ContourPicture picture(w, view);
    const PlotMapping m = picture.Mapping(rect);
    const QRgb missing = ContourColour(MissingValue, view.colour0, view.colour1);
    int valid = 0, invalid = 0;
    for (int item : {3, 20, 37}) {
        const int x = m.x.ToPixel(item + 0.5);
        for (int cell = 0; cell < w.Raw(item).cells; ++cell) {
            const int top = m.y.ToPixel(picture.CellTop(cell)), bottom = m.y.ToPixel(picture.CellBottom(cell));
            if (bottom > rect.bottom() || bottom - top < 1) continue;
            const bool good = cell < w.ValidCells(item);
            const double v = AccessorVelocity(w, item, cell, kNorth);
            const QRgb expected = good && v < MissingValue ? ContourColour(v, view.colour0, view.colour1) : missing;
            EXPECT_EQ(Pixel(image, x, (top + bottom) / 2), expected) << "profile " << item << " cell " << cell;
            (good ? valid : invalid)++;
        }
    }
    EXPECT_GT(valid, 20);
    EXPECT_GT(invalid, 5);
    // Above the first cell the background stays.
    EXPECT_EQ(Pixel(image, m.x.ToPixel(20.5), rect.top()), view.colours.background.rgb() | 0xFF000000u);
}

TEST_F(Contour, TheBedIsHatchedAtFortyFiveDegreesAndOutlined) {
    const ProcessedWindow w(*river->document);
    ContourViewState view = DefaultContourView(w, DisplayVariable::Velocity, kComponentMagnitude, XAxisMode::Profiles);
    view.showCutOff = false;
    const QImage image = Draw(w, view, rect);
    const PlotMapping m = ContourPicture(w, view).Mapping(rect);
    const QRgb hatch = view.colours.hatch.rgb() | 0xFF000000u, background = view.colours.background.rgb() | 0xFF000000u;
    const int item = 20;
    const int bed = m.y.ToPixel(w.BottomDepth(item));
    ASSERT_LT(bed + 20, rect.bottom());
    int hatched = 0, plain = 0;
    for (int y = bed + 3; y <= rect.bottom(); ++y) {
        for (int x = m.x.ToPixel(item) + 1; x < m.x.ToPixel(item + 1) - 1; ++x) {
            const QRgb p = Pixel(image, x, y);
            ASSERT_TRUE(p == hatch || p == background) << x << "," << y;
            if (p != hatch) {
                ++plain;
                continue;
            }
            ++hatched;
            // Every hatch pixel lies on a diagonal line of hatch pixels.
            const bool diagonal = Pixel(image, x + 1, y + 1) == hatch || Pixel(image, x - 1, y - 1) == hatch ||
                                  Pixel(image, x + 1, y - 1) == hatch || Pixel(image, x - 1, y + 1) == hatch;
            EXPECT_TRUE(diagonal) << x << "," << y;
        }
    }
    EXPECT_GT(hatched, 10);
    EXPECT_GT(plain, hatched);
    // Above the bed: cells, no hatch; on it, the black outline.
    EXPECT_NE(Pixel(image, m.x.ToPixel(item + 0.5), bed - 4), hatch);
    bool outline = false;
    for (int dy = -1; dy <= 1; ++dy) outline |= Pixel(image, m.x.ToPixel(item), bed + dy) == qRgb(0, 0, 0);
    EXPECT_TRUE(outline);
}

TEST_F(Contour, TheSideLobeLimitRunsAtNinetyPercentOfTheWaterBelowTheTransducer) {
    const ProcessedWindow w(*river->document);
    ContourViewState view = DefaultContourView(w, DisplayVariable::Velocity, kNorth, XAxisMode::Profiles);
    const QImage image = Draw(w, view, rect);
    const PlotMapping m = ContourPicture(w, view).Mapping(rect);
    const double t = w.Context().data.user.SensorDepth * 0.01;  // the default discard: 10 %
    for (int item : {8, 20, 31}) {
        const double cut = t + (w.Results(item).minDepth - t) * 0.9;
        const int x = m.x.ToPixel(item);
        bool found = false;
        for (int dy = -2; dy <= 2; ++dy) found |= Pixel(image, x, m.y.ToPixel(cut) + dy) == qRgb(255, 0, 255);
        EXPECT_TRUE(found) << "profile " << item;
        EXPECT_LT(m.y.ToPixel(cut), m.y.ToPixel(w.BottomDepth(item)));
    }
}

TEST_F(Contour, ACellCutByTheTopOfTheWindowIsDrawnInTheFirstRow) {
    const ProcessedWindow w(*river->document);
    ContourViewState view = DefaultContourView(w, DisplayVariable::Velocity, kNorth, XAxisMode::Profiles);
    const ContourPicture picture(w, view);
    const int cell = 3;
    view.y0 = picture.CellTop(cell) + 0.4 * w.CellSize();  // its top above the range, its bottom inside
    const QImage image = Draw(w, view, rect);
    const int item = 20;
    ASSERT_LT(cell, w.ValidCells(item));
    const int x = picture.Mapping(rect).x.ToPixel(item + 0.5);
    const QRgb expected = ContourColour(AccessorVelocity(w, item, cell, kNorth), view.colour0, view.colour1);
    EXPECT_EQ(Pixel(image, x, rect.top()), expected);
    EXPECT_EQ(Pixel(image, x, rect.top() - 1), qRgb(1, 2, 3));  // nothing outside the rectangle
}

TEST_F(Contour, TwoProfilesOnOneColumnAreBothFilledTheNewerOnTop) {
    const ProcessedWindow w(*river->document);
    ContourViewState view = DefaultContourView(w, DisplayVariable::Velocity, kNorth, XAxisMode::Profiles);
    view.showBottom = false;
    view.showCutOff = false;
    view.x0 = 1.0;
    view.x1 = 9.0;  // four columns for eight profiles: profiles 1 and 2 both map to column 0
    view.y0 = 0.0;
    view.y1 = 3.0;
    const QRect narrow(0, 0, 4, 120);
    QImage image = BlankImage(4, 120);
    {
        QPainter painter(&image);
        ContourPicture(w, view).Paint(painter, narrow);
    }
    const ContourPicture picture(w, view);
    const PlotMapping m = picture.Mapping(narrow);
    ASSERT_EQ(m.x.ToPixel(1.0), m.x.ToPixel(2.0));
    const int cell = 2;
    const int y = (m.y.ToPixel(picture.CellTop(cell)) + m.y.ToPixel(picture.CellBottom(cell))) / 2;
    for (int column = 0; column < 4; ++column) {
        const int newer = 2 * column + 2;
        EXPECT_EQ(picture.ItemAt(narrow, column), newer);
        EXPECT_EQ(Pixel(image, column, y),
                  ContourColour(AccessorVelocity(w, newer, cell, kNorth), view.colour0, view.colour1))
            << "column " << column;
    }
}

TEST(ContourAppend, AddingTheNewestProfileShowsWhatTheWholeRedrawShows) {
    auto before = OpenRiver(40, 39);
    auto after = OpenRiver(40);
    const ProcessedWindow w0(*before->document), w1(*after->document);
    ASSERT_EQ(w0.LastItem(), 39);
    ASSERT_EQ(w1.LastItem(), 40);
    const QRect rect(3, 4, 300, 160);
    for (XAxisMode mode : {XAxisMode::Profiles, XAxisMode::FixedDistance}) {
        ContourViewState view = DefaultContourView(w1, DisplayVariable::Velocity, kComponentMagnitude, mode);
        view.profilesDisplayed = 40;
        view.distanceDisplayed = 50.0;
        SetXRange(w1, view);
        QImage incremental = BlankImage(310, 170), whole = BlankImage(310, 170);
        QRect repainted;
        {
            QPainter painter(&incremental);
            ContourPicture(w0, view).Paint(painter, rect);
            repainted = ContourPicture(w1, view).PaintAppended(painter, rect, 40);
        }
        {
            QPainter painter(&whole);
            ContourPicture(w1, view).Paint(painter, rect);
        }
        EXPECT_LT(repainted.width(), rect.width() / 4) << "a small band, not the whole picture";
        EXPECT_GT(repainted.width(), 0);
        int differing = 0;
        for (int y = 0; y < whole.height(); ++y)
            for (int x = 0; x < whole.width(); ++x) differing += Pixel(whole, x, y) != Pixel(incremental, x, y);
        EXPECT_EQ(differing, 0) << XAxisModeName(mode);
    }
}

TEST_F(Contour, StatusLineAndToolTipInMetricAndEnglish) {
    for (int units : {1, 0}) {
        river->app.Set(app_keys::UnitSystem, static_cast<int16_t>(units));
        river->document->SettingsChanged();
        const ProcessedWindow w(*river->document);
        const ContourViewState view = DefaultContourView(w, DisplayVariable::Velocity, kNorth, XAxisMode::Profiles);
        const ContourPicture picture(w, view);
        const PlotMapping m = picture.Mapping(rect);
        const int item = 17, cell = 4;
        const QPoint point(m.x.ToPixel(item + 0.5),
                           (m.y.ToPixel(picture.CellTop(cell)) + m.y.ToPixel(picture.CellBottom(cell))) / 2);
        const std::optional<ContourPoint> at = ContourPointAt(picture, rect, point);
        ASSERT_TRUE(at);
        ASSERT_EQ(at->item, item);
        ASSERT_EQ(at->cell, cell);
        // The accessor in display units: cm/s in metric (shown as m/s), ft/s in English.
        const ProcessingContext& ctx = w.Context();
        const int slot = w.SlotOf(item);
        double vel = GetProfileValue(ctx, 1, kNorth, w.CoordinateSystem(), w.VelocityReference(), slot, cell);
        if (units == 1) vel *= 0.01;
        const double dir = GetProfileValue(ctx, 1, 6, w.CoordinateSystem(), w.VelocityReference(), slot, cell);
        const double depth = view.y0 + (point.y() + 0.5 - rect.top()) * (view.y1 - view.y0) / rect.height();
        char expected[200];
        std::snprintf(expected, sizeof expected,
                      units == 1 ? "Profile #: %d  Depth: %.2f (m)   Vel: %.2f (m/s)  Dir: %.1f"
                                 : "Profile #: %d  Depth: %.2f(ft)   Vel: %.2f (ft/s)  Dir: %.1f",
                      item, depth, vel, dir);
        EXPECT_EQ(ContourStatusText(w, view, *at), expected);
        const std::string tip = ContourToolTipText(w, view, *at);
        // From the transducer to the middle of the cell: blanking and cell + 1 cell sizes.
        const UserSetup& setup = ctx.data.user;
        const double range = (setup.BlankDistance * 0.01 + (cell + 1) * setup.CellSizeCm * 0.01) *
                             (units == 1 ? 1.0 : 3.280839895);
        char rangeText[64];
        std::snprintf(rangeText, sizeof rangeText, units == 1 ? "\nRange: %.2f (m)\n" : "\nRange: %.2f (ft)\n", range);
        EXPECT_EQ(tip.rfind("Profile: 17\nDate/Time: ", 0), 0u) << tip;
        EXPECT_NE(tip.find(std::string("\nCell: 5") + rangeText), std::string::npos) << tip;
        char velText[64];
        std::snprintf(velText, sizeof velText, units == 1 ? "Vel: %.2f (m/s)\nDir: %.1f" : "Vel: %.2f (ft/s)\nDir: %.1f",
                      vel, dir);
        EXPECT_NE(tip.find(velText), std::string::npos) << tip;
    }
    // Amplitude and SNR speak their own units; outside the cells only the position is told.
    const ProcessedWindow w(*river->document);
    ContourViewState amp = DefaultContourView(w, DisplayVariable::Amplitude, 0, XAxisMode::Profiles);
    const ContourPoint onCell{10, 1.0, 2};
    EXPECT_NE(ContourStatusText(w, amp, onCell).find("Amp: "), std::string::npos);
    EXPECT_NE(ContourStatusText(w, amp, onCell).find(" (counts)"), std::string::npos);
    amp.variable = DisplayVariable::Snr;
    EXPECT_NE(ContourStatusText(w, amp, onCell).find(" (dB)"), std::string::npos);
    EXPECT_EQ(ContourStatusText(w, amp, ContourPoint{10, 0.1, std::nullopt}),
              "Profile #: 10  Depth: 0.10(ft)   ");
}

}  // namespace
}  // namespace rm
