// Speed of the contour: a window of 3000 profiles of 128 cells (3 beams, ENU, internal GPS, a
// 40 m deep river so that the cells reach the bed) drawn into a 1600 x 900 image.
//   BM_ContourWholeRedraw: the whole redraw of the contour (background, every cell through the
//     velocity chain and the colour rule, the hatched bed, the side-lobe limit). Goal: 20 ms.
//   BM_ContourFigure: the same with the axes, the legend and the title around it.
//   BM_ContourAppend: the repaint after the newest profile joined the window, the view
//     unchanged (the acquisition case), onto the finished picture. Goal: 1 ms.
// The argument is the horizontal axis: 0 profiles, 2 fixed distance.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <QImage>
#include <QPainter>

#include "app/app_settings.h"
#include "app/survey_document.h"
#include "display/contour_figure.h"
#include "display/contour_picture.h"
#include "qt_gui/gui_application.h"
#include "sim/recording_writer.h"

namespace {

constexpr int kProfiles = 3000;
constexpr int kCells = 128;
const QSize kImage(1600, 900);

struct Window {
    std::string dir;
    std::unique_ptr<rm::AppSettings> app;
    rm::StderrPrompt prompt;
    std::unique_ptr<rm::CSurveyKVRDoc> document;

    Window() {
        rm::EnsureGuiApplication();
        std::string pattern = (std::filesystem::temp_directory_path() / "rm-bench-XXXXXX").string();
        std::vector<char> buffer(pattern.begin(), pattern.end());
        buffer.push_back('\0');
        if (::mkdtemp(buffer.data()) == nullptr) std::abort();
        dir = buffer.data();
        const std::string path = dir + "/CONTOUR.kvr";
        rm::sim::RiverScenario s;
        s.river.widthM = 600.0;
        s.river.maxDepthM = 40.0;
        s.crossing.profiles = kProfiles;
        s.crossing.boatSpeedMs = 0.18;
        s.instrument.cells = kCells;
        s.instrument.beams = 3;  // four beams of 128 cells make a record larger than a reader takes in
        s.instrument.cellSizeCm = 30;
        s.gps = rm::sim::GpsSource::Internal;
        s.velocityNoiseCms = 2.0;
        s.outputPath = path;
        const rm::sim::RecordingResult recorded = rm::sim::WriteRiverRecording(s, prompt);
        if (!recorded.ok) {
            std::fprintf(stderr, "bench_contour: %s\n", recorded.error.c_str());
            std::abort();
        }
        app = std::make_unique<rm::AppSettings>(rm::UserFolders{dir, dir});
        rm::CSurveyKVRDoc::Options options;
        options.profilesHeld = kProfiles;
        document = std::make_unique<rm::CSurveyKVRDoc>(*app, prompt, rm::kModePlayback, options);
        if (document->OpenDocument(path) != 1 || document->WindowEnd() != kProfiles) {
            std::fprintf(stderr, "bench_contour: cannot open the recording with all its profiles\n");
            std::abort();
        }
    }
    ~Window() {
        document.reset();
        std::error_code ignored;
        std::filesystem::remove_all(dir, ignored);
    }
};

Window& TheWindow() {
    static Window window;
    return window;
}

rm::ContourViewState View(const rm::ProcessedWindow& window, int mode) {
    rm::ContourViewState view = rm::DefaultContourView(window, rm::DisplayVariable::Velocity, rm::kComponentMagnitude,
                                                       static_cast<rm::XAxisMode>(mode));
    view.distanceDisplayed = 600.0;
    rm::SetXRange(window, view);
    return view;
}

void BM_ContourWholeRedraw(benchmark::State& state) {
    const rm::ProcessedWindow window(*TheWindow().document);
    const rm::ContourViewState view = View(window, static_cast<int>(state.range(0)));
    QImage image(kImage, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    const rm::ContourPicture picture(window, view);
    for (auto _ : state) {
        picture.Paint(painter, QRect(QPoint(0, 0), kImage));
        benchmark::DoNotOptimize(image.constBits());
    }
}
BENCHMARK(BM_ContourWholeRedraw)->Arg(0)->Arg(2)->Unit(benchmark::kMillisecond);

void BM_ContourFigure(benchmark::State& state) {
    const rm::ProcessedWindow window(*TheWindow().document);
    const rm::ContourViewState view = View(window, 0);
    QImage image(kImage, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    for (auto _ : state) {
        rm::PaintContourFigure(painter, QRect(QPoint(0, 0), kImage), window, view, QStringLiteral("CONTOUR.kvr"));
        benchmark::DoNotOptimize(image.constBits());
    }
}
BENCHMARK(BM_ContourFigure)->Unit(benchmark::kMillisecond);

void BM_ContourAppend(benchmark::State& state) {
    const rm::ProcessedWindow window(*TheWindow().document);
    const rm::ContourViewState view = View(window, static_cast<int>(state.range(0)));
    QImage image(kImage, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    const rm::ContourPicture picture(window, view);
    const QRect rect(QPoint(0, 0), kImage);
    picture.Paint(painter, rect);
    int columns = 0;
    for (auto _ : state) {
        columns = picture.PaintAppended(painter, rect, kProfiles).width();
        benchmark::DoNotOptimize(image.constBits());
    }
    state.counters["columns_repainted"] = columns;
}
BENCHMARK(BM_ContourAppend)->Arg(0)->Arg(2)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
