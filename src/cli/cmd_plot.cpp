// ripplemark-cli plot FILE.kvr --what contour|profiles [--variable V] [--component C]
// [--profile N] [--size WxH] -o OUT.png|.svg|.pdf: opens and processes a recording as `process`
// does (the same processing options) and draws one of the pictures into a file, so that a
// recording can be looked at on a machine without a display.

#include <cstdio>
#include <exception>
#include <memory>
#include <regex>
#include <string>

#include "cli/command.h"
#include "cli/plot_kinds.h"
#include "cli/processing_session.h"

namespace rm::cli {
namespace {

constexpr int kLargestSide = 20000;

bool ParseSize(const std::string& text, QSize& size) {
    static const std::regex kSize("([0-9]{1,6})x([0-9]{1,6})");
    std::smatch match;
    if (!std::regex_match(text, match, kSize)) return false;
    size = QSize(std::stoi(match[1]), std::stoi(match[2]));
    return size.width() >= 1 && size.height() >= 1 && size.width() <= kLargestSide && size.height() <= kLargestSide;
}

const PlotKind* FindKind(const std::string& name) {
    for (const PlotKind& kind : PlotKinds())
        if (kind.name == name) return &kind;
    return nullptr;
}

int RunPlot(const PlotOptions& options) {
    QSize size;
    if (!ParseSize(options.size, size)) {
        std::fprintf(stderr, "--size: WIDTHxHEIGHT in pixels, each from 1 to %d (got \"%s\")\n", kLargestSide,
                     options.size.c_str());
        return kExitUsage;
    }
    if (!PictureFormatOf(options.output)) {
        std::fprintf(stderr, "-o: the picture must be a .png, .svg or .pdf file (got \"%s\")\n", options.output.c_str());
        return kExitUsage;
    }
    const PlotKind* kind = FindKind(options.what);
    if (kind == nullptr) return kExitUsage;  // CLI11 checked the name already
    try {
        ProcessingSession session;
        const int opened = OpenProcessingSession(options.processing, session);
        if (opened != kExitOk) return opened;
        CSurveyKVRDoc& doc = *session.document;
        if (!doc.Recompute()) {
            std::fprintf(stderr, "%s: the data file could not be read\n", options.processing.path.c_str());
            return kExitFailure;
        }
        const PlotPreparation prepared = kind->prepare(doc, options);
        if (prepared.status != kExitOk) {
            std::fprintf(stderr, "%s\n", prepared.message.c_str());
            return prepared.status;
        }
        std::string error;
        if (!WritePicture(options.output, size, prepared.paint, error)) {
            std::fprintf(stderr, "%s\n", error.c_str());
            return kExitFailure;
        }
        std::printf("%s\n", options.output.c_str());
        return kExitOk;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s: %s\n", options.processing.path.c_str(), e.what());
        return kExitBadFile;
    }
}

const CommandRegistration registration{Command{
    "plot",
    "Draw a picture of a data file (.kvr) into a PNG, SVG or PDF file",
    [](CLI::App& sub) -> std::function<int()> {
        auto o = std::make_shared<PlotOptions>();
        AddProcessingOptions(sub, o->processing);
        std::vector<std::string> names;
        std::string help = "What to draw:";
        for (const PlotKind& kind : PlotKinds()) {
            names.push_back(kind.name);
            help += " " + kind.name + " (" + kind.help + ");";
        }
        sub.add_option("--what", o->what, help)->check(CLI::IsMember(names))->capture_default_str();
        sub.add_option("--variable", o->variable,
                       "contour: velocity, amplitude, snr or velocity-3d; profiles: one to three of velocity, "
                       "amplitude, stddev, snr, velocity-3d separated by commas");
        sub.add_option("--component", o->component,
                       "contour: beam1..beam4 (or x/e, y/n, z/u, 1..4), mean, speed or direction");
        sub.add_option("--profile", o->profile, "profiles: the profile to draw, from 1 (default: the middle one)")
            ->check(CLI::PositiveNumber);
        sub.add_option("--x-axis", o->xAxis, "contour: profiles, dynamic (distance) or fixed (distance)")
            ->capture_default_str();
        sub.add_option("--distance", o->distance, "contour with --x-axis fixed: the distance displayed, m or ft")
            ->check(CLI::PositiveNumber);
        sub.add_option("--y-axis", o->yAxis, "profiles: depth, cell or range")->capture_default_str();
        sub.add_option("--size", o->size, "picture size in pixels, WIDTHxHEIGHT")->capture_default_str();
        sub.add_option("-o,--output", o->output, "the picture to write: .png, .svg or .pdf")->required();
        return [o] { return RunPlot(*o); };
    }}};

}  // namespace
}  // namespace rm::cli
