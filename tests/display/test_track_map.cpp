// The track map drawn into small images, probed at pixels computed from the mapping: the grid,
// the track and shallow-water pens, the velocity vectors and their scale, the scale bar, the
// waypoints, what lies under the cursor, and a new profile drawn over the picture.

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstdlib>

#include "data/gps_velocity.h"
#include "display/track_map.h"
#include "display/track_texts.h"

namespace rm {
namespace {

void EnsureGui() {
    if (QGuiApplication::instance() != nullptr) return;
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    static int argc = 1;
    static char name[] = "test";
    static char* argv[] = {name, nullptr};
    new QGuiApplication(argc, argv);
}

uint32_t Rgb(const QImage& image, PixelPoint p) { return image.pixel(p.x, p.y) & 0xFFFFFF; }

// A fixed view: 2 pixels a metre, centred on the origin, grid every 25 m, vectors 50 pixels
// per m/s, in colours that differ from each other.
TrackView FixedView() {
    TrackView v;
    v.pixelsPerMetre = 2.0;
    v.automaticGrid = false;
    v.gridSpacing = 25.0;
    return v;
}

TrackSample Sample(int profile, double east, double north, float waterEast = MissingValueF,
                   float waterNorth = MissingValueF, bool shallow = false) {
    TrackSample s;
    s.profile = profile;
    s.east = east;
    s.north = north;
    s.waterEast = waterEast;
    s.waterNorth = waterNorth;
    s.shallow = shallow;
    return s;
}

class TrackMapPixels : public ::testing::Test {
protected:
    void SetUp() override { EnsureGui(); }

    QImage Draw(const TrackSeries& series, const TrackView& view, const WaypointList* waypoints = nullptr) {
        QImage image(kSize.width(), kSize.height(), QImage::Format_RGB32);
        image.fill(Qt::black);
        QPainter painter(&image);
        PaintTrack(painter, kRect, view, series, waypoints);
        return image;
    }
    TrackMapping Mapping(const TrackView& view, const TrackSeries& series = {}) const {
        return TrackMappingOf(kRect, view, series, nullptr);
    }

    const QSize kSize{400, 300};
    const QRect kRect{0, 0, 400, 300};
};

TEST_F(TrackMapPixels, GridLinesLieAtMultiplesOfTheSpacing) {
    const TrackView view = FixedView();
    const QImage image = Draw(TrackSeries{}, view);
    const TrackMapping m = Mapping(view);
    // Vertical lines at east -50, -25, 0, 25, 50; probed halfway between two horizontal lines.
    for (double e : {-50.0, -25.0, 0.0, 25.0, 50.0}) {
        EXPECT_EQ(Rgb(image, m.PixelOf(e, 12.5)), view.style.grid) << e;
        EXPECT_EQ(Rgb(image, m.PixelOf(e + 12.5, 12.5)), view.style.background) << e;
    }
    for (double n : {-25.0, 25.0}) EXPECT_EQ(Rgb(image, m.PixelOf(12.5, n)), view.style.grid) << n;
    // The automatic spacing: the shorter side is 300 px = 150 m, x = 37.5, spacing 20 m.
    TrackView automatic = view;
    automatic.automaticGrid = true;
    EXPECT_DOUBLE_EQ(TrackGridSpacingMetres(m, automatic, 1), 20.0);
    const QImage autoImage = Draw(TrackSeries{}, automatic);
    EXPECT_EQ(Rgb(autoImage, m.PixelOf(40.0, 10.0)), view.style.grid);
    EXPECT_EQ(Rgb(autoImage, m.PixelOf(25.0, 10.0)), view.style.background);
    // In English units the same view spans 492 ft: x = 123, p = 100 and 2p >= x: 100 ft = 30.48 m.
    EXPECT_NEAR(TrackGridSpacingMetres(m, automatic, 0), 30.48, 1e-6);
}

TEST_F(TrackMapPixels, TrackInItsPenAndShallowProfilesInTheirOwn) {
    TrackSeries series;
    series.samples = {Sample(1, -60, -20), Sample(2, -10, -20), Sample(3, 40, -20, MissingValueF, MissingValueF, true),
                      Sample(4, 40, 40)};
    TrackView view = FixedView();
    const TrackMapping m = Mapping(view);
    QImage image = Draw(series, view);
    EXPECT_EQ(Rgb(image, m.PixelOf(-35, -20)), view.style.track);         // profile 2's line
    EXPECT_EQ(Rgb(image, m.PixelOf(15, -20)), view.style.shallowTrack);   // profile 3 used the ping
    EXPECT_EQ(Rgb(image, m.PixelOf(40, 10)), view.style.track);           // profile 4 did not
    EXPECT_EQ(Rgb(image, m.PixelOf(15, -10)), view.style.background);
    view.drawShallowWaterPingTrack = false;
    image = Draw(series, view);
    EXPECT_EQ(Rgb(image, m.PixelOf(15, -20)), view.style.track);
}

TEST_F(TrackMapPixels, VectorsAreSpeedTimesTheVectorScaleLong) {
    // A track running north with the water flowing east at 1 m/s, then west at 0.6 m/s, and one
    // profile without a velocity.
    TrackSeries series;
    series.samples = {Sample(1, -50, -40, 100.0f, 0.0f), Sample(2, -50, 10, -60.0f, 0.0f),
                      Sample(3, -50, 40, MissingValueF, MissingValueF)};
    TrackView view = FixedView();
    const TrackMapping m = Mapping(view);
    const PixelPoint p1 = m.PixelOf(-50, -40), p2 = m.PixelOf(-50, 10), p3 = m.PixelOf(-50, 40);
    QImage image = Draw(series, view);
    // 1 m/s east at 50 pixels per m/s: 50 pixels to the right, and no further.
    EXPECT_EQ(Rgb(image, {p1.x + 45, p1.y}), view.style.vector);
    EXPECT_EQ(Rgb(image, {p1.x + 53, p1.y}), view.style.background);
    // 0.6 m/s west: 30 pixels to the left.
    EXPECT_EQ(Rgb(image, {p2.x - 27, p2.y}), view.style.vector);
    EXPECT_EQ(Rgb(image, {p2.x - 33, p2.y}), view.style.background);
    // No velocity, no vector.
    EXPECT_EQ(Rgb(image, {p3.x + 10, p3.y}), view.style.background);

    // "+" makes them 1.2 times as long: 60 pixels.
    view.vectorScale = IncreasedVectorScale(view.vectorScale);
    image = Draw(series, view);
    EXPECT_EQ(Rgb(image, {p1.x + 57, p1.y}), view.style.vector);
    EXPECT_EQ(Rgb(image, {p1.x + 63, p1.y}), view.style.background);

    // In English units the speed is 3.28 ft/s: 164 pixels at 50 pixels per ft/s.
    series.unitSystem = 0;
    view.vectorScale = 50.0;
    image = Draw(series, view);
    EXPECT_EQ(Rgb(image, {p1.x + 160, p1.y}), view.style.vector);
    EXPECT_EQ(Rgb(image, {p1.x + 168, p1.y}), view.style.background);
}

// The run of vector-coloured pixels of the scale bar, found in the top right quarter.
int LongestVectorRun(const QImage& image, uint32_t colour) {
    int longest = 0;
    for (int y = 0; y < image.height() / 4; ++y) {
        int run = 0;
        for (int x = image.width() / 2; x < image.width(); ++x) {
            run = (image.pixel(x, y) & 0xFFFFFF) == colour ? run + 1 : 0;
            longest = std::max(longest, run);
        }
    }
    return longest;
}

TEST_F(TrackMapPixels, ScaleBarIsOneUnitOfVelocityLong) {
    TrackView view = FixedView();
    for (double scale : {50.0, 60.0, 83.0}) {
        view.vectorScale = scale;
        // The bar's line runs from its left end to its right end, both included.
        EXPECT_EQ(LongestVectorRun(Draw(TrackSeries{}, view), view.style.vector), static_cast<int>(scale) + 1)
            << scale;
    }
}

TEST_F(TrackMapPixels, WaypointsAtTheirPositionWhenTheTrackHasAGpsOrigin) {
    TrackSeries series;
    series.samples = {Sample(1, -60, 0), Sample(2, 60, 0)};
    series.origin = TrackOrigin{true, 45.0, 7.0};
    WaypointList waypoints;
    const GpsPosition hazardAt = PositionFrom(45.0, 7.0, 30.0, 40.0);
    const GpsPosition markerAt = PositionFrom(45.0, 7.0, -40.0, -40.0);
    waypoints.Add(WaypointType::Hazard, hazardAt.longitude, hazardAt.latitude).label = "";
    waypoints.Add(WaypointType::Marker, markerAt.longitude, markerAt.latitude).label = "";
    TrackView view = FixedView();
    const TrackMapping m = Mapping(view);
    QImage image = Draw(series, view, &waypoints);
    EXPECT_EQ(Rgb(image, m.PixelOf(30, 40)), view.style.hazard);
    EXPECT_EQ(Rgb(image, m.PixelOf(-40, -40)), view.style.marker);
    // The dashed connection between them: text-coloured pixels along the line, none without it.
    auto connectionPixels = [&](const QImage& picture) {
        int count = 0;
        for (double t = 0.2; t <= 0.8; t += 0.02) {
            const PixelPoint p = m.PixelOf(-40 + 70 * t, -40 + 80 * t);
            bool near = false;
            for (int dx = -1; dx <= 1; ++dx)
                for (int dy = -1; dy <= 1; ++dy) near = near || Rgb(picture, {p.x + dx, p.y + dy}) == view.style.text;
            count += near ? 1 : 0;
        }
        return count;
    };
    EXPECT_GT(connectionPixels(image), 10);
    view.drawWayPointConnection = false;
    EXPECT_EQ(connectionPixels(Draw(series, view, &waypoints)), 0);
    // Hit testing finds them; without an origin they are neither drawn nor found.
    EXPECT_EQ(WaypointAt(waypoints, series.origin, m, m.PixelOf(30, 40)), 0);
    EXPECT_EQ(WaypointAt(waypoints, series.origin, m, {m.PixelOf(-40, -40).x + 3, m.PixelOf(-40, -40).y - 3}), 1);
    EXPECT_EQ(WaypointAt(waypoints, series.origin, m, m.PixelOf(0, 40)), -1);
    double lon = 0, lat = 0;
    ASSERT_TRUE(GeoPositionAt(series.origin, m, m.PixelOf(30, 40), lon, lat));
    const GpsDisplacement back = DisplacementBetween(45.0, 7.0, lat, lon);
    EXPECT_NEAR(back.east, 30.0, 0.5);  // within a pixel of half a metre
    EXPECT_NEAR(back.north, 40.0, 0.5);
    series.origin.known = false;
    image = Draw(series, view, &waypoints);
    EXPECT_EQ(Rgb(image, m.PixelOf(30, 40)), view.style.background);
    EXPECT_EQ(WaypointAt(waypoints, series.origin, m, m.PixelOf(30, 40)), -1);
    EXPECT_FALSE(GeoPositionAt(series.origin, m, m.PixelOf(30, 40), lon, lat));
}

TEST_F(TrackMapPixels, HoverTextOfTheProfileUnderTheCursor) {
    TrackSeries series;
    series.samples = {Sample(7, 0, 0, 0.0f, -150.0f), Sample(8, 20, 0), Sample(9, 40, 0, 30.0f, 40.0f)};
    const TrackMapping m = Mapping(FixedView());
    const std::string deg = "\u00B0";
    const PixelPoint p7 = m.PixelOf(0, 0), p9 = m.PixelOf(40, 0);
    EXPECT_EQ(TrackHoverTextAt(series, m, p7), "Profile# 7; Speed=1.50 m/s; Dir=180.0" + deg);
    // 0.3 east and 0.4 north: 0.5 m/s toward 36.87 degrees; found 4 pixels off.
    EXPECT_EQ(TrackHoverTextAt(series, m, {p9.x + 4, p9.y - 3}), "Profile# 9; Speed=0.50 m/s; Dir=36.9" + deg);
    EXPECT_EQ(TrackHoverTextAt(series, m, m.PixelOf(20, 0)), "Profile# 8; Speed= -- m/s; Dir= -- " + deg);
    EXPECT_EQ(TrackHoverTextAt(series, m, {p9.x, p9.y + kTrackHitRadius + 1}), "");
    series.unitSystem = 0;
    EXPECT_EQ(TrackHoverTextAt(series, m, p7), "Profile# 7; Speed=4.92 ft/s; Dir=180.0" + deg);
    // Two profiles at one place: the later one.
    series.samples.push_back(Sample(10, 40, 0));
    EXPECT_EQ(TrackSampleAt(series, m, p9), 3);
}

TEST_F(TrackMapPixels, FittingShowsEveryPositionInsideTheMargin) {
    TrackSeries series;
    for (int i = 0; i < 30; ++i) series.samples.push_back(Sample(i + 1, 1000.0 + 7.0 * i, -300.0 + 2.0 * i * i));
    TrackView fit;  // scale 0
    const TrackMapping m = Mapping(fit, series);
    for (const TrackSample& s : series.samples) {
        const PixelPoint p = m.PixelOf(s.east, s.north);
        EXPECT_GE(p.x, 40 - 1);
        EXPECT_LE(p.x, 360);
        EXPECT_GE(p.y, 30 - 1);
        EXPECT_LE(p.y, 270);
    }
    // The same scale on both axes: 870 m north over 240 pixels limits it.
    EXPECT_NEAR(m.PixelsPerMetre(), 240.0 / (2.0 * 29 * 29), 1e-12);
}

TEST_F(TrackMapPixels, ANewProfileDrawnOverThePictureGivesTheWholeRedraw) {
    TrackSeries series;
    series.origin = TrackOrigin{true, -33.9, -70.6};
    for (int i = 0; i < 60; ++i) {
        const double a = i * 0.2;
        series.samples.push_back(Sample(i + 1, 3.0 * i * std::cos(a), 2.0 * i * std::sin(a),
                                        static_cast<float>(80.0 * std::cos(a * 0.5)), 40.0f, i % 7 == 3));
    }
    WaypointList waypoints;
    const GpsPosition at = PositionFrom(-33.9, -70.6, 20.0, -10.0);
    waypoints.Add(WaypointType::Waypoint, at.longitude, at.latitude);
    const GpsPosition at2 = PositionFrom(-33.9, -70.6, -60.0, 30.0);
    waypoints.Add(WaypointType::Hazard, at2.longitude, at2.latitude).label = "Rock";
    TrackView view = FixedView();
    view.automaticGrid = true;
    view.pixelsPerMetre = 1.2;

    const QImage whole = Draw(series, view, &waypoints);
    for (size_t n : {size_t{1}, size_t{37}, series.samples.size()}) {
        TrackSeries before = series;
        before.samples.resize(n - 1);
        QImage image = Draw(before, view, &waypoints);
        {
            QPainter painter(&image);
            const QRect repainted = PaintTrackSample(painter, kRect, view, series, n - 1, &waypoints);
            ASSERT_FALSE(repainted.isEmpty()) << n;
            EXPECT_LT(repainted.width() * repainted.height(), kRect.width() * kRect.height() / 4) << n;
        }
        TrackSeries upTo = series;
        upTo.samples.resize(n);
        EXPECT_TRUE(image == Draw(upTo, view, &waypoints)) << n;
    }
    // A fitting view moves with every profile: the caller redraws instead.
    QImage image = whole;
    QPainter painter(&image);
    EXPECT_TRUE(PaintTrackSample(painter, kRect, TrackView{}, series, 5, &waypoints).isEmpty());
    EXPECT_TRUE(PaintTrackSample(painter, kRect, view, series, series.samples.size(), &waypoints).isEmpty());
    painter.end();
    EXPECT_TRUE(image == whole);
}

}  // namespace
}  // namespace rm
