// Speed of the track map: a 10 000-profile crossing of the virtual river with GPS, processed by
// the document with every profile held in its window, drawn whole with its velocity vectors
// into a 1600 x 900 image (the track read from the window, fitted, grid, labels, scale bar),
// and one new profile drawn over the picture, as during acquisition. The time is wall time of
// the paint alone; the recording is made and processed once before. Goal: the whole track in
// at most 10 ms.

#include <benchmark/benchmark.h>

#include <QImage>
#include <QPainter>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "app/survey_document.h"
#include "display/track_map.h"
#include "qt_gui/gui_application.h"
#include "sim/recording_writer.h"

namespace {

constexpr int kProfiles = 10000;

struct Document {
    std::string dir;
    rm::AppSettings app{rm::UserFolders{}};
    rm::StderrPrompt prompt;
    std::unique_ptr<rm::CSurveyKVRDoc> doc;

    Document() {
        std::string pattern = (std::filesystem::temp_directory_path() / "rm-bench-XXXXXX").string();
        std::vector<char> buffer(pattern.begin(), pattern.end());
        buffer.push_back('\0');
        if (::mkdtemp(buffer.data()) == nullptr) std::abort();
        dir = buffer.data();
        rm::sim::RiverScenario s;
        s.river.widthM = 3000.0;
        s.river.maxDepthM = 10.0;
        s.crossing.profiles = kProfiles;
        s.crossing.boatSpeedMs = 0.25;
        s.crossing.headingWobbleDeg = 5.0;
        s.instrument.cells = 40;
        s.gps = rm::sim::GpsSource::Internal;
        s.velocityNoiseCms = 2.0;
        s.outputPath = dir + "/TRACK.kvr";
        if (!rm::sim::WriteRiverRecording(s, prompt).ok) std::abort();
        rm::CSurveyKVRDoc::Options options;
        options.profilesHeld = kProfiles;
        doc = std::make_unique<rm::CSurveyKVRDoc>(app, prompt, rm::kModePlayback, options);
        if (doc->OpenDocument(s.outputPath) != 1 || !doc->Recompute()) std::abort();
        if (doc->WindowEnd() - doc->WindowStart() + 1 != kProfiles) std::abort();
        doc->SetTrackReference(rm::kTrackRefGps);
    }
    ~Document() {
        doc.reset();
        std::error_code ignored;
        std::filesystem::remove_all(dir, ignored);
    }
};

const Document& TheDocument() {
    static const Document d;
    return d;
}

void BM_TrackWholeRedraw(benchmark::State& state) {
    rm::EnsureGuiApplication();
    const Document& d = TheDocument();
    const rm::TrackMap map(*d.doc);
    QImage image(1600, 900, QImage::Format_RGB32);
    const QRect rect(0, 0, 1600, 900);
    const rm::TrackView view;  // fitted to the track
    for (auto _ : state) {
        QPainter painter(&image);
        map.Paint(painter, rect, view);
        painter.end();
        benchmark::DoNotOptimize(image.constBits());
    }
    state.SetItemsProcessed(state.iterations() * kProfiles);
}
BENCHMARK(BM_TrackWholeRedraw)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_TrackNewProfile(benchmark::State& state) {
    rm::EnsureGuiApplication();
    const Document& d = TheDocument();
    const rm::TrackMap map(*d.doc);
    QImage image(1600, 900, QImage::Format_RGB32);
    const QRect rect(0, 0, 1600, 900);
    // The fit of the whole track, held: a new profile is drawn over the picture.
    const rm::TrackView view = rm::HeldTrackView(map.Mapping(rect, rm::TrackView{}), rm::TrackView{});
    {
        QPainter painter(&image);
        map.Paint(painter, rect, view);
    }
    int item = kProfiles / 2;
    for (auto _ : state) {
        QPainter painter(&image);
        if (map.PaintNewProfile(painter, rect, view, item).isEmpty()) std::abort();
        painter.end();
        benchmark::DoNotOptimize(image.constBits());
        item = item % kProfiles + 1;
    }
}
BENCHMARK(BM_TrackNewProfile)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
