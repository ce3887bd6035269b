#include "display/contour_view.h"

#include <algorithm>
#include <cmath>

namespace rm {

namespace {
constexpr double kDepthMargin = 1.05;  // room below the deepest bed

double RoundUp(double value, double step) { return std::ceil(value / step - 1e-9) * step; }
double RoundDown(double value, double step) { return std::floor(value / step + 1e-9) * step; }
}  // namespace

double RoundStep(double span, int divisions) {
    span = std::fabs(span);
    if (!(span > 0.0) || !std::isfinite(span) || divisions < 1) return 1.0;
    const double raw = span / divisions;
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    for (double m : {1.0, 2.0, 5.0}) {
        if (raw <= m * power * (1.0 + 1e-9)) return m * power;
    }
    return 10.0 * power;
}

void SetXRange(const ProcessedWindow& window, ContourViewState& view) {
    if (window.Empty()) {
        view.x0 = 0.0;
        view.x1 = 1.0;
        return;
    }
    const int first = window.FirstItem(), last = window.LastItem();
    switch (view.xAxis) {
        case XAxisMode::Profiles: {
            const int shown = std::max(1, view.profilesDisplayed);
            const int start = last - first + 1 <= shown ? first : last - shown + 1;
            view.x0 = start;
            view.x1 = start + shown;
            return;
        }
        case XAxisMode::FixedDistance:
            view.x0 = window.XPosition(first, view.xAxis);
            view.x1 = view.x0 + (view.distanceDisplayed > 0.0 ? view.distanceDisplayed : 1.0);
            return;
        case XAxisMode::DynamicDistance: {
            view.x0 = window.XPosition(first, view.xAxis);
            double far = view.x0;
            for (int item = first; item <= last; ++item) far = std::max(far, window.XPosition(item, view.xAxis));
            view.x1 = far > view.x0 ? far : view.x0 + 1.0;
            return;
        }
    }
}

ContourViewState DefaultContourView(const ProcessedWindow& window, DisplayVariable variable, int component,
                                    XAxisMode mode) {
    ContourViewState view;
    view.variable = variable;
    view.component = component;
    view.xAxis = mode;
    if (!window.Empty()) view.profilesDisplayed = window.LastItem() - window.FirstItem() + 1;
    SetXRange(window, view);

    double deepest = 0.0;
    double low = MissingValue, high = -MissingValue;
    CellColumn column;
    for (int item = window.FirstItem(); item <= window.LastItem(); ++item) {
        const double bed = window.BottomDepth(item);
        if (bed < MissingValue) deepest = std::max(deepest, bed);
        window.ReadColumn(item, variable, component, column);
        const int valid = std::min(window.ValidCells(item), column.cells);
        for (int i = 0; i < valid; ++i) {
            const double v = column.value[static_cast<size_t>(i)];
            if (v >= MissingValue) continue;
            low = std::min(low, v);
            high = std::max(high, v);
        }
    }
    if (!(deepest > 0.0)) deepest = window.CellOffset() + (window.CellCount() + 0.5) * window.CellSize();
    if (!(deepest > 0.0)) deepest = 1.0;
    const double depthStep = RoundStep(deepest * kDepthMargin, 5);
    view.y0 = 0.0;
    view.y1 = RoundUp(deepest * kDepthMargin, depthStep);

    const bool speed = variable == DisplayVariable::Velocity3D ||
                       (variable == DisplayVariable::Velocity && component == kComponentMagnitude);
    if (variable == DisplayVariable::Velocity && component == kComponentDirection) {
        view.colour0 = 0.0;
        view.colour1 = 360.0;
        view.colourStep = 45.0;
    } else if (high < low) {
        view.colour0 = 0.0;
        view.colour1 = 1.0;
        view.colourStep = 0.1;
    } else {
        if (speed) low = 0.0;
        const double step = RoundStep(high - low, 8);
        view.colour0 = RoundDown(low, step);
        view.colour1 = RoundUp(high, step);
        if (view.colour1 <= view.colour0) view.colour1 = view.colour0 + step;
        view.colourStep = RoundStep(view.colour1 - view.colour0, 8);
    }
    return view;
}

void ApplyStoredChoices(const CfgDisplay& display, const AppSettings& app, ContourViewState& view) {
    if (const std::optional<DisplayVariable> v = ContourVariableOfCode(display.contourDisplayVariable)) view.variable = *v;
    if (ComponentAllowed(view.variable, display.contourDisplayComponent)) view.component = display.contourDisplayComponent;
    if (display.showXAxisAs <= static_cast<uint8_t>(XAxisMode::FixedDistance))
        view.xAxis = static_cast<XAxisMode>(display.showXAxisAs);
    view.showBottom = app.Get(app_keys::ShowBottomDepth) != 0;
    view.showCutOff = app.Get(app_keys::ShowCutOffDepth) != 0;
    view.showBadBottomTrack = app.Get(app_keys::ShowBadBottomTrack) != 0;
}

DialogCheck CheckContourScale(double minimum, double maximum, double step) {
    if (!(step > 0.0)) return DialogCheck::Fail("Step", kContourStepMessage);
    if (!(maximum > minimum)) return DialogCheck::Fail("Maximum", kContourRangeMessage);
    return DialogCheck::Pass();
}

}  // namespace rm
