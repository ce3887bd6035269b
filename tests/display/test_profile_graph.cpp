// The profile graphs: the lines of each beam at the mapped positions of the accessor's values,
// gaps at missing cells, and the vertical axis kinds.

#include <gtest/gtest.h>

#include <QPainter>

#include "display/profile_graph.h"
#include "display_test_support.h"
#include "processing/processing_steps.h"

namespace rm {
namespace {

using displaytest::BlankImage;
using displaytest::OpenRiver;
using displaytest::Pixel;

bool NearColour(const QImage& image, QPoint p, QRgb colour) {
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            if (Pixel(image, p.x() + dx, p.y() + dy) == (colour | 0xFF000000u)) return true;
    return false;
}

TEST(ProfileGraph, EachBeamIsALineThroughTheAccessorsValuesWithGapsAtMissingCells) {
    auto river = OpenRiver(30);
    const ProcessedWindow w(*river->document);
    const int item = 15;
    const ProfileGraphState state =
        DefaultProfileGraph(w, kCenterProfileGraph, DisplayVariable::Amplitude, GraphYAxis::CellNumber, item);
    const ProfileGraph graph(w, state);
    const std::vector<GraphLine> lines = graph.Lines(item);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[1].name, QString(" Beam2/Y/N"));
    const QRect rect(10, 10, 300, 400);
    QImage image = BlankImage(320, 420);
    {
        QPainter painter(&image);
        graph.Paint(painter, rect, item);
    }
    const PlotMapping m = graph.Mapping(rect);
    EXPECT_DOUBLE_EQ(graph.YOfCell(0), 1.0);
    for (int beam = 0; beam < 4; ++beam) {
        for (int cell = 0; cell < w.Raw(item).cells; cell += 3) {
            const double v = GetProfileValue(w.Context(), 2, beam, 0, 0, w.SlotOf(item), cell);  // counts
            ASSERT_LT(v, MissingValue);
            const QPoint p = m.ToPixel(v, cell + 1);
            if (!rect.contains(p)) continue;
            // The point mark (or a line of a beam drawn later over it) lies there.
            bool any = false;
            for (const QColor& c : state.lineColours) any |= NearColour(image, p, c.rgb());
            EXPECT_TRUE(any) << "beam " << beam << " cell " << cell;
        }
    }
    // Missing cells leave gaps: a velocity line stops where the cells end.
    ProfileGraphState velocity = DefaultProfileGraph(w, kLeftProfileGraph, DisplayVariable::Velocity, GraphYAxis::Depth, item);
    const std::vector<GraphLine> v = ProfileGraph(w, velocity).Lines(item);
    ASSERT_FALSE(v.empty());
    EXPECT_EQ(ProfileGraph(w, velocity).ValueAxisTitle(), QString("Velocity (m/s)"));
    EXPECT_DOUBLE_EQ(ProfileGraph(w, velocity).YOfCell(0), w.CellOffset() + w.CellSize());
}

TEST(ProfileGraph, AxisTitlesNameTheirUnits) {
    EXPECT_EQ(GraphYAxisTitle(GraphYAxis::Depth, 1), QString("Depth (m)"));
    EXPECT_EQ(GraphYAxisTitle(GraphYAxis::Range, 0), QString("Range (ft)"));
    EXPECT_EQ(GraphYAxisTitle(GraphYAxis::CellNumber, 1), QString("Cell No."));
    EXPECT_EQ(GraphVariableName(DisplayVariable::Velocity3D), "Velocity - 3D");
    EXPECT_EQ(GraphVariableName(DisplayVariable::StdDev), "Std Dev");
    EXPECT_EQ(ContourVariableName(DisplayVariable::Velocity3D), std::optional<std::string>("Velocity-3D"));
    EXPECT_FALSE(ContourVariableName(DisplayVariable::StdDev));
}

}  // namespace
}  // namespace rm
