// plot --what profiles: the profile graphs (up to three variables side by side) of one profile.

#include <cstdio>
#include <memory>
#include <sstream>

#include "cli/command.h"
#include "cli/plot_kinds.h"
#include "data/kvr_data.h"
#include "display/profile_figure.h"

namespace rm::cli {

namespace {
std::optional<DisplayVariable> GraphVariable(const std::string& name) {
    if (name == "velocity") return DisplayVariable::Velocity;
    if (name == "amplitude") return DisplayVariable::Amplitude;
    if (name == "stddev") return DisplayVariable::StdDev;
    if (name == "snr") return DisplayVariable::Snr;
    if (name == "velocity-3d") return DisplayVariable::Velocity3D;
    return std::nullopt;
}

std::optional<GraphYAxis> YAxis(const std::string& name) {
    if (name == "depth") return GraphYAxis::Depth;
    if (name == "cell") return GraphYAxis::CellNumber;
    if (name == "range") return GraphYAxis::Range;
    return std::nullopt;
}
}  // namespace

PlotPreparation PrepareProfilePlot(const CSurveyKVRDoc& document, const PlotOptions& options) {
    PlotPreparation p;
    std::vector<DisplayVariable> variables;
    std::stringstream list(options.variable.empty() ? "velocity,amplitude,snr" : options.variable);
    for (std::string name; std::getline(list, name, ',');) {
        const std::optional<DisplayVariable> v = GraphVariable(name);
        if (!v) {
            p.status = kExitUsage;
            p.message = "--variable: unknown profile graph variable \"" + name +
                        "\" (velocity, amplitude, stddev, snr or velocity-3d)";
            return p;
        }
        variables.push_back(*v);
    }
    if (variables.empty() || variables.size() > 3) {
        p.status = kExitUsage;
        p.message = "--variable: one to three profile graph variables, separated by commas";
        return p;
    }
    const std::optional<GraphYAxis> yAxis = YAxis(options.yAxis);
    if (!yAxis) {
        p.status = kExitUsage;
        p.message = "--y-axis: depth, cell or range";
        return p;
    }
    const ProcessedWindow window(document);
    if (window.Empty()) {
        p.status = kExitFailure;
        p.message = "the recording has no profiles to draw";
        return p;
    }
    // Without --profile the middle profile of the transect: the current profile after the
    // processing is the last, usually at the bank with hardly a cell.
    const int item = options.profile > 0 ? options.profile : (window.FirstItem() + window.LastItem()) / 2;
    if (!window.Holds(item)) {
        p.status = kExitUsage;
        p.message = "--profile must lie between " + std::to_string(window.FirstItem()) + " and " +
                    std::to_string(window.LastItem());
        return p;
    }
    static const char* const kNames[] = {kLeftProfileGraph, kCenterProfileGraph, kRightProfileGraph};
    auto graphs = std::make_shared<std::vector<ProfileGraphState>>();
    for (size_t g = 0; g < variables.size(); ++g)
        graphs->push_back(DefaultProfileGraph(window, kNames[g], variables[g], *yAxis, item));

    const ProfileTime t = TimeOfHeader(window.Raw(item).header);
    char when[64];
    std::snprintf(when, sizeof when, "%04d/%02d/%02d %02d:%02d:%02d", t.year, t.month, t.day, t.hour, t.minute, t.second);
    const QString title = QString::fromStdString(PlotFileName(document)) +
                          QStringLiteral("   Profile %1   %2").arg(item).arg(QString::fromLatin1(when));
    p.paint = [&document, graphs, item, title](QPainter& painter, const QRect& area) {
        const ProcessedWindow w(document);
        PaintProfileFigure(painter, area, w, *graphs, item, title);
    };
    return p;
}

}  // namespace rm::cli
