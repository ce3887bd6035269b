#include "display_test_support.h"

#include <filesystem>
#include <stdexcept>

#include "qt_gui/gui_application.h"
#include "sim/recording_writer.h"

namespace rm::displaytest {

ScratchFolder::ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "rm_display_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot make a scratch folder");
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::unique_ptr<RiverDocument> OpenRiver(int profiles, int count, void (*adjust)(sim::RiverScenario&)) {
    auto r = std::make_unique<RiverDocument>();
    r->path = r->folder.File("river.kvr");
    sim::RiverScenario s;
    s.crossing.profiles = profiles;
    s.crossing.boatSpeedMs = 50.0 / profiles;  // a 50 m crossing, centred between the banks
    s.outputPath = r->path;
    if (adjust) adjust(s);
    RecordingPrompt prompt;
    const sim::RecordingResult result = sim::WriteRiverRecording(s, prompt);
    if (!result.ok) throw std::runtime_error("recording failed: " + result.error);
    CSurveyKVRDoc::Options options;
    options.profilesHeld = profiles;
    r->document = std::make_unique<CSurveyKVRDoc>(r->app, r->prompt, kModePlayback, options);
    LoadFields load;
    if (count > 0) {
        load.start = 1;
        load.end = count;
        load.count = count;
        load.valid = 1;
    }
    if (r->document->OpenDocument(r->path, load) != 1) throw std::runtime_error("cannot open " + r->path);
    return r;
}

void NeedGuiApplication() { EnsureGuiApplication(); }

QImage BlankImage(int width, int height) {
    NeedGuiApplication();
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(qRgb(1, 2, 3));
    return image;
}

QRgb Pixel(const QImage& image, int x, int y) { return image.pixel(x, y) | 0xFF000000u; }

}  // namespace rm::displaytest
