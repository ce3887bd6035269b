// plot --what contour: the contour figure of the whole recording as loaded.

#include <memory>

#include "cli/command.h"
#include "cli/plot_kinds.h"
#include "display/contour_figure.h"

namespace rm::cli {

namespace {
std::optional<DisplayVariable> ContourVariable(const std::string& name) {
    if (name.empty() || name == "velocity") return DisplayVariable::Velocity;
    if (name == "amplitude") return DisplayVariable::Amplitude;
    if (name == "snr") return DisplayVariable::Snr;
    if (name == "velocity-3d") return DisplayVariable::Velocity3D;
    return std::nullopt;
}

std::optional<XAxisMode> AxisMode(const std::string& name) {
    if (name == "profiles") return XAxisMode::Profiles;
    if (name == "dynamic") return XAxisMode::DynamicDistance;
    if (name == "fixed") return XAxisMode::FixedDistance;
    return std::nullopt;
}
}  // namespace

PlotPreparation PrepareContourPlot(const CSurveyKVRDoc& document, const PlotOptions& options) {
    PlotPreparation p;
    const std::optional<DisplayVariable> variable = ContourVariable(options.variable);
    if (!variable) {
        p.status = kExitUsage;
        p.message = "--variable: unknown contour variable \"" + options.variable +
                    "\" (velocity, amplitude, snr or velocity-3d)";
        return p;
    }
    int component = *variable == DisplayVariable::Velocity ? kComponentMagnitude : kComponentMean;
    if (!options.component.empty()) {
        const std::optional<int> c = ParseComponent(options.component);
        if (!c || !ComponentAllowed(*variable, *c)) {
            p.status = kExitUsage;
            p.message = "--component: \"" + options.component + "\" is no component of this variable";
            return p;
        }
        component = *c;
    }
    const std::optional<XAxisMode> mode = AxisMode(options.xAxis);
    if (!mode) {
        p.status = kExitUsage;
        p.message = "--x-axis: profiles, dynamic or fixed";
        return p;
    }
    const ProcessedWindow window(document);
    if (window.Empty()) {
        p.status = kExitFailure;
        p.message = "the recording has no profiles to draw";
        return p;
    }
    auto view = std::make_shared<ContourViewState>(DefaultContourView(window, *variable, component, *mode));
    if (*mode == XAxisMode::FixedDistance && options.distance > 0.0) {
        view->distanceDisplayed = options.distance;
        SetXRange(window, *view);
    }
    const QString title = QString::fromStdString(PlotFileName(document)) +
                          QStringLiteral("   Profiles %1 to %2").arg(window.FirstItem()).arg(window.LastItem());
    p.paint = [&document, view, title](QPainter& painter, const QRect& area) {
        const ProcessedWindow w(document);
        PaintContourFigure(painter, area, w, *view, title);
    };
    return p;
}

}  // namespace rm::cli
