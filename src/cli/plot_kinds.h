#pragma once
// The pictures that `ripplemark-cli plot --what KIND` draws. Each kind is one entry of the
// table PlotKinds(): its name and a function that checks the kind's options against the
// opened document and returns what paints the picture. A new kind is one function and one
// line in plot_kinds.cpp; the command (cmd_plot.cpp) does the rest: options, opening the
// recording with the processing options of `process`, the file format, the size and writing.

#include <functional>
#include <string>
#include <vector>

#include "app/survey_document.h"
#include "cli/processing_session.h"
#include "display/picture_file.h"

namespace rm::cli {

struct PlotOptions {
    ProcessingOptions processing;
    std::string what = "contour";
    std::string variable;   // empty: the kind's default
    std::string component;  // empty: the variable's default
    int profile = 0;        // 0: the kind's default
    std::string xAxis = "profiles";
    double distance = 0.0;  // "Distance Displayed" for --x-axis fixed; 0: the whole track
    std::string yAxis = "depth";
    std::string size = "1200x700";
    std::string output;
};

// What a kind makes of the options: a painter, or an exit status with its message.
struct PlotPreparation {
    int status = 0;  // kExitOk, or kExitUsage / kExitFailure with `message`
    std::string message;
    PaintFunction paint;
};

struct PlotKind {
    std::string name;
    std::string help;
    // Called with the processed document, which outlives the painter.
    std::function<PlotPreparation(const CSurveyKVRDoc& document, const PlotOptions& options)> prepare;
};

const std::vector<PlotKind>& PlotKinds();

// The kinds (plot_contour.cpp, plot_profiles.cpp).
PlotPreparation PrepareContourPlot(const CSurveyKVRDoc& document, const PlotOptions& options);
PlotPreparation PrepareProfilePlot(const CSurveyKVRDoc& document, const PlotOptions& options);

// Shared by the kinds: the component of --component ("beam1".."beam4", "x", "y", "z", "e",
// "n", "u", "1".."4", "mean", "speed", "direction"), nothing when unknown; and the title's
// first part, the recording's file name.
std::optional<int> ParseComponent(const std::string& text);
std::string PlotFileName(const CSurveyKVRDoc& document);

}  // namespace rm::cli
