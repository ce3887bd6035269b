#pragma once
// What the picture tests share: a recording of the virtual river opened in a document, the
// Qt application, and pixel helpers.

#include <memory>
#include <string>

#include <QImage>

#include "app/app_settings.h"
#include "app/survey_document.h"
#include "data/user_prompt.h"
#include "sim/river_scenario.h"

namespace rm::displaytest {

class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    std::string File(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

// A recording of the default virtual river (60 m wide, 4 m deep, flowing north) crossed in
// `profiles` profiles, opened with every profile in the window; `count` < profiles loads only
// the first `count` of them.
struct RiverDocument {
    ScratchFolder folder;
    AppSettings app{UserFolders{folder.File(""), folder.File("")}};
    RecordingPrompt prompt;
    std::unique_ptr<CSurveyKVRDoc> document;
    std::string path;
};
std::unique_ptr<RiverDocument> OpenRiver(int profiles, int count = 0, void (*adjust)(sim::RiverScenario&) = nullptr);

// The application for fonts and painting; made once.
void NeedGuiApplication();

// An image of `width` x `height` filled with a colour no picture uses, so that what is not
// painted shows.
QImage BlankImage(int width, int height);
// The colour at (x, y) without alpha.
QRgb Pixel(const QImage& image, int x, int y);

}  // namespace rm::displaytest
