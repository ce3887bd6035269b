// The track map reads the document's window: positions by the track reference, the GPS origin
// and the depth-averaged water velocity, compared with the virtual river the recording came from.

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <unistd.h>
#include <string>

#include "app/survey_document.h"
#include "display/track_map.h"
#include "sim/recording_writer.h"

namespace rm {
namespace {

struct River {
    std::filesystem::path folder;
    sim::RiverScenario scenario;
    sim::RecordingResult recording;

    River() {
        folder = std::filesystem::temp_directory_path() / ("rm_track_" + std::to_string(::getpid()));
        std::filesystem::create_directories(folder);
        scenario.crossing.profiles = 80;
        scenario.crossing.boatSpeedMs = 0.5;
        scenario.gps = sim::GpsSource::Internal;
        scenario.latitudeDeg = 47.25;
        scenario.longitudeDeg = 8.5;
        scenario.outputPath = (folder / "TRACK.kvr").string();
        RecordingPrompt prompt;
        recording = sim::WriteRiverRecording(scenario, prompt);
    }
    ~River() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    // Where the boat was at the end of profile n (from 1), metres from where it started.
    sim::EnVector TrueEnd(int n) const {
        const sim::EnVector start = recording.plan.profiles.front().startPosition;
        const sim::EnVector end = recording.plan.profiles[static_cast<size_t>(n - 1)].endPosition;
        return {end.east - start.east, end.north - start.north};
    }
};

class TrackOfADocument : public ::testing::Test {
protected:
    static void SetUpTestSuite() { river_ = new River; }
    static void TearDownTestSuite() { delete river_; }
    void SetUp() override {
        ASSERT_TRUE(river_->recording.ok) << river_->recording.error;
        app_ = std::make_unique<AppSettings>(UserFolders{river_->folder.string(), river_->folder.string()});
        doc_ = std::make_unique<CSurveyKVRDoc>(*app_, prompt_);
        ASSERT_EQ(doc_->OpenDocument(river_->recording.kvrPath), 1);
    }
    static River* river_;
    RecordingPrompt prompt_;
    std::unique_ptr<AppSettings> app_;
    std::unique_ptr<CSurveyKVRDoc> doc_;
};
River* TrackOfADocument::river_ = nullptr;

TEST_F(TrackOfADocument, PositionsFollowTheBoatByEitherTrackReference) {
    for (int reference : {kTrackRefGps, kTrackRefBottomTrack}) {
        doc_->SetTrackReference(reference);
        const TrackSeries series = TrackSeriesOf(*doc_);
        ASSERT_EQ(series.samples.size(), 80u) << reference;
        for (const TrackSample& s : series.samples) {
            const sim::EnVector truth = river_->TrueEnd(s.profile);
            EXPECT_NEAR(s.east, truth.east, 0.3) << reference << " profile " << s.profile;
            EXPECT_NEAR(s.north, truth.north, 0.3) << reference << " profile " << s.profile;
        }
        // The crossing runs 40 m east, across the river flowing north.
        EXPECT_NEAR(series.samples.back().east, 40.0, 0.3);
        // The GPS origin is where the boat started.
        EXPECT_TRUE(series.origin.known);
        EXPECT_NEAR(series.origin.latitude, 47.25, 1e-6);
        EXPECT_NEAR(series.origin.longitude, 8.5, 1e-6);
    }
}

TEST_F(TrackOfADocument, VectorsAreTheDepthAveragedWaterVelocity) {
    const TrackSeries series = TrackSeriesOf(*doc_);
    const sim::VirtualRiver& river = river_->scenario.river;
    int compared = 0;
    for (const TrackSample& s : series.samples) {
        const double y = river_->recording.plan.profiles[static_cast<size_t>(s.profile - 1)].y;
        if (river.Depth(y) < 1.5) continue;  // few cells near the banks
        ASSERT_TRUE(s.HasWaterVelocity()) << s.profile;
        const sim::EnVector truth = river.MeanVelocityVector(y);
        EXPECT_NEAR(s.waterEast * 0.01, truth.east, 0.03) << s.profile;
        EXPECT_NEAR(s.waterNorth * 0.01, truth.north, 0.03) << s.profile;
        ++compared;
    }
    EXPECT_GT(compared, 40);
}

TEST_F(TrackOfADocument, HoverTextAndPictureOfTheDocument) {
    if (QGuiApplication::instance() == nullptr) {
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
        static int argc = 1;
        static char name[] = "test";
        static char* argv[] = {name, nullptr};
        new QGuiApplication(argc, argv);
    }
    const TrackMap map(*doc_);
    const QRect rect(0, 0, 300, 200);
    const TrackView view;  // fits the track
    const TrackMapping m = map.Mapping(rect, view);
    const TrackSeries series = TrackSeriesOf(*doc_);
    const TrackSample& middle = series.samples[39];
    const std::string text = map.HoverTextAt(rect, view, m.PixelOf(middle.east, middle.north));
    double speed = 0.0, direction = 0.0;
    int profile = 0;
    ASSERT_EQ(std::sscanf(text.c_str(), "Profile# %d; Speed=%lf m/s; Dir=%lf", &profile, &speed, &direction), 3)
        << text;
    EXPECT_EQ(profile, 40);
    const double y = river_->recording.plan.profiles[39].y;
    EXPECT_NEAR(speed, river_->scenario.river.MeanVelocity(y), 0.03);
    EXPECT_TRUE(direction < 3.0 || direction > 357.0) << direction;  // the river flows north

    QImage image(rect.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    map.Paint(painter, rect, view);
    painter.end();
    // The track's middle lies on the track or under a vector drawn from it.
    const uint32_t at = image.pixel(m.PixelOf(middle.east, middle.north).x, m.PixelOf(middle.east, middle.north).y) &
                        0xFFFFFF;
    EXPECT_TRUE(at == view.style.track || at == view.style.vector) << std::hex << at;
}

}  // namespace
}  // namespace rm
