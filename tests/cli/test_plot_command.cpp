// `ripplemark-cli plot` on a recording of the virtual river: the pictures come out at the size
// asked, in the three formats, and the contour shows what a hydrographer expects of the river:
// the fastest water in the middle near the surface, slower water toward the banks and the bed,
// and the bed hatched.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include <QImage>

#include "cli/sim_recording.h"
#include "display/contour_figure.h"

namespace rm::test {
namespace {

std::string Head(const std::string& path, size_t bytes) {
    std::ifstream in(path, std::ios::binary);
    std::string text(bytes, '\0');
    in.read(text.data(), static_cast<std::streamsize>(bytes));
    text.resize(static_cast<size_t>(in.gcount()));
    return text;
}

// Where a colour of the contour's rule lies on it, from 0 (dark blue, the low end) over cyan,
// green and yellow to 1020 (dark red, the high end): the bands read backwards.
int Warmth(QRgb c) {
    const int r = qRed(c), g = qGreen(c), b = qBlue(c);
    if (r == 0 && g == 0) return b - 127;
    if (r == 0) return 128 + g;
    if (g == 255) return 383 + r;
    if (r == 255) return 638 + (255 - g);
    return 893 + (255 - r);
}

TEST(PlotCommand, ContourOfTheRiverShowsFastWaterInTheMiddleNearTheSurfaceAndTheBedHatched) {
    TempDir dir;
    const SimRecording river = RecordRiver(dir, "RIVER", {"--profiles", "120", "--boat-speed", "0.4", "--cells", "25",
                                                           "--cell-size-cm", "20", "--internal-gps"});
    const std::string png = dir.File("contour.png");
    const ProcessResult run = RunCli({"plot", river.path, "--what", "contour", "--size", "600x360", "-o", png});
    ASSERT_EQ(run.exitStatus, 0) << run.Describe();
    EXPECT_EQ(run.out, png + "\n");
    QImage image(QString::fromStdString(png));
    ASSERT_FALSE(image.isNull());
    ASSERT_EQ(image.size(), QSize(600, 360));

    const QRect contour = LayoutContourFigure(QRect(0, 0, 600, 360)).contour;
    // Rows of the upper and the lower water: the river is 4 m deep in the middle, the depth axis
    // of the default view runs from 0 to 5 m.
    const int nearSurface = contour.top() + contour.height() * 15 / 100;  // 0.75 m
    const int deep = contour.top() + contour.height() * 60 / 100;         // 3.0 m
    const int middle = contour.left() + contour.width() / 2;
    const int nearBank = contour.left() + contour.width() * 15 / 100;
    const QRgb surfaceMiddle = image.pixel(middle, nearSurface);
    EXPECT_GT(Warmth(surfaceMiddle), Warmth(image.pixel(nearBank, nearSurface)));
    EXPECT_GT(Warmth(surfaceMiddle), Warmth(image.pixel(middle, deep)));
    EXPECT_GT(Warmth(surfaceMiddle), 700) << "the fastest water is red";

    // Under the middle of the bed (deeper than 4 m) the hatch: its grey next to the background.
    int hatch = 0, white = 0;
    for (int y = contour.top() + contour.height() * 85 / 100; y < contour.bottom(); ++y) {
        for (int x = middle - 10; x < middle + 10; ++x) {
            const QRgb c = image.pixel(x, y) | 0xFF000000u;
            hatch += c == qRgb(96, 96, 96);
            white += c == qRgb(255, 255, 255);
        }
    }
    EXPECT_GT(hatch, 20);
    EXPECT_GT(white, hatch);
}

TEST(PlotCommand, ProfilesAndVectorFormatsWithTheProcessingOptions) {
    TempDir dir;
    const SimRecording river = RecordRiver(dir, "RIVER", {"--profiles", "30"});
    const std::string svg = dir.File("profiles.svg"), pdf = dir.File("contour.pdf"), png = dir.File("p.png");
    ASSERT_EQ(RunCli({"plot", river.path, "--what", "profiles", "--profile", "15", "--variable", "velocity,stddev",
                      "--y-axis", "cell", "--units", "english", "-o", svg})
                  .exitStatus,
              0);
    const std::string text = Head(svg, 1 << 20);
    EXPECT_NE(text.find("<svg"), std::string::npos);
    EXPECT_NE(text.find("Velocity (ft/s)"), std::string::npos);
    EXPECT_NE(text.find("Std Dev (ft/s)"), std::string::npos);
    EXPECT_NE(text.find("Cell No."), std::string::npos);
    ASSERT_EQ(RunCli({"plot", river.path, "--x-axis", "fixed", "--distance", "40", "--coords", "beam",
                      "--component", "beam3", "-o", pdf})
                  .exitStatus,
              0);
    EXPECT_EQ(Head(pdf, 5), "%PDF-");
    ASSERT_EQ(RunCli({"plot", river.path, "--variable", "velocity-3d", "--size", "300x200", "-o", png}).exitStatus, 0);
    EXPECT_EQ(QImage(QString::fromStdString(png)).size(), QSize(300, 200));
}

}  // namespace
}  // namespace rm::test
