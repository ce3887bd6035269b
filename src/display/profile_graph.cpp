#include "display/profile_graph.h"

#include <algorithm>
#include <cmath>

#include <QFontMetrics>
#include <QPolygon>

#include "display/contour_view.h"
#include "display/display_font.h"
#include "display/plot_axis.h"

namespace rm {

namespace {
constexpr int kMarkRadius = 2;
constexpr int kLegendSample = 24;
}  // namespace

QString GraphYAxisTitle(GraphYAxis axis, int unitSystem) {
    const QString unit = QString::fromStdString(LengthUnitText(unitSystem));
    switch (axis) {
        case GraphYAxis::Depth: return QStringLiteral("Depth (%1)").arg(unit);
        case GraphYAxis::CellNumber: return QStringLiteral("Cell No.");
        case GraphYAxis::Range: return QStringLiteral("Range (%1)").arg(unit);
    }
    return QString();
}

DialogCheck CheckProfileGraphScale(const std::string& graphName, double minimum, double maximum, double step) {
    if (!(step > 0.0)) return DialogCheck::Fail("Step", graphName + ": Step size must be greater than zero");
    if (!(maximum > minimum))
        return DialogCheck::Fail("Maximum", graphName + ": Maximum value must be greater than minimum value");
    return DialogCheck::Pass();
}

std::vector<GraphLine> ProfileGraph::Lines(int item) const {
    std::vector<GraphLine> lines;
    if (!window_.Holds(item)) return lines;
    CellColumn column;
    auto add = [&](int component, const QString& name) {
        window_.ReadColumn(item, state_.variable, component, column);
        GraphLine line{name, std::vector<double>(column.value.begin(), column.value.begin() + column.cells)};
        lines.push_back(std::move(line));
    };
    if (state_.variable == DisplayVariable::Velocity3D) {
        add(0, QStringLiteral(" Speed 3D"));
        return lines;
    }
    const int beams = std::min(static_cast<int>(window_.Raw(item).beams), 4);
    for (int b = 0; b < beams; ++b) add(b, QString::fromStdString(ComponentName(b)));
    return lines;
}

double ProfileGraph::YOfCell(int cell) const {
    switch (state_.yAxis) {
        case GraphYAxis::Depth: return window_.CellDepth(cell);
        case GraphYAxis::CellNumber: return cell + 1;
        case GraphYAxis::Range: return window_.CellRange(cell);
    }
    return 0.0;
}

PlotMapping ProfileGraph::Mapping(const QRect& rect) const {
    return PlotMapping::Of(rect, state_.minimum, state_.maximum, state_.y0, state_.y1);
}

QString ProfileGraph::ValueAxisTitle() const {
    return QString::fromStdString(GraphVariableName(state_.variable) + " (" +
                                  ValueUnitText(state_.variable, 0, window_.UnitSystem()) + ")");
}

void ProfileGraph::Paint(QPainter& painter, const QRect& rect, int item) const {
    painter.save();
    painter.setClipRect(rect);
    painter.fillRect(rect, state_.background);
    const PlotMapping m = Mapping(rect);
    if (!m.Valid()) {
        painter.restore();
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(state_.grid, 1, Qt::DotLine));
    const Ticks across = TicksOf(m.x, 4);
    for (int i = 0; i < across.count; ++i) {
        const int x = m.x.ToPixel(across.At(i));
        painter.drawLine(x, rect.top(), x, rect.bottom());
    }
    if (state_.minimum < 0.0 && state_.maximum > 0.0) {
        painter.setPen(QPen(state_.text, 1));
        const int x = m.x.ToPixel(0.0);
        painter.drawLine(x, rect.top(), x, rect.bottom());
    }
    const std::vector<GraphLine> lines = Lines(item);
    for (size_t l = 0; l < lines.size(); ++l) {
        const QColor colour = state_.lineColours[l % state_.lineColours.size()];
        const std::vector<double>& v = lines[l].values;
        painter.setPen(QPen(colour, 1));
        painter.setBrush(Qt::NoBrush);
        for (size_t i = 0; i + 1 < v.size(); ++i) {
            if (v[i] >= MissingValue || v[i + 1] >= MissingValue) continue;  // a gap
            painter.drawLine(m.ToPixel(v[i], YOfCell(static_cast<int>(i))),
                             m.ToPixel(v[i + 1], YOfCell(static_cast<int>(i + 1))));
        }
        for (size_t i = 0; i < v.size(); ++i) {
            if (v[i] >= MissingValue) continue;
            painter.drawEllipse(m.ToPixel(v[i], YOfCell(static_cast<int>(i))), kMarkRadius, kMarkRadius);
        }
    }
    painter.restore();
}

void ProfileGraph::PaintLineLegend(QPainter& painter, const QRect& area, int item, int fontPixels) const {
    painter.save();
    const QFont font = DisplayFont(fontPixels);
    painter.setFont(font);
    const QFontMetrics metrics(font, painter.device());
    int x = area.left();
    int top = area.top();
    const std::vector<GraphLine> lines = Lines(item);
    for (size_t l = 0; l < lines.size(); ++l) {
        const int w = metrics.horizontalAdvance(lines[l].name);
        // Entries that do not fit on the row go to the next one.
        if (x > area.left() && x + kLegendSample + 2 + w > area.left() + area.width()) {
            x = area.left();
            top += metrics.height() + 2;
        }
        const int y = top + metrics.height() / 2;
        painter.setPen(QPen(state_.lineColours[l % state_.lineColours.size()], 2));
        // The sample is made of short lines, as the graph's lines are.
        painter.drawLine(x, y, x + kLegendSample / 2, y);
        painter.drawLine(x + kLegendSample / 2, y, x + kLegendSample, y);
        painter.setPen(state_.text);
        painter.drawText(QRect(x + kLegendSample + 2, top, w + 2, metrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
                         lines[l].name);
        x += kLegendSample + w + fontPixels;
    }
    painter.restore();
}

ProfileGraphState DefaultProfileGraph(const ProcessedWindow& window, const std::string& name, DisplayVariable variable,
                                      GraphYAxis yAxis, int item) {
    ProfileGraphState state;
    state.name = name;
    state.variable = variable;
    state.yAxis = yAxis;
    const ProfileGraph graph(window, state);
    const int cells = window.Holds(item) ? window.Raw(item).cells : 0;
    if (yAxis == GraphYAxis::CellNumber) {
        state.y0 = 0.0;
        state.y1 = cells + 1;
    } else {
        state.y0 = 0.0;
        const double far = cells > 0 ? graph.YOfCell(cells - 1) + window.CellSize() : 1.0;
        state.y1 = std::ceil(far / RoundStep(far, 5) - 1e-9) * RoundStep(far, 5);
    }
    double low = MissingValue, high = -MissingValue;
    for (const GraphLine& line : graph.Lines(item)) {
        for (double v : line.values) {
            if (v >= MissingValue) continue;
            low = std::min(low, v);
            high = std::max(high, v);
        }
    }
    if (high < low) {
        low = 0.0;
        high = 1.0;
    }
    if (variable == DisplayVariable::Velocity || variable == DisplayVariable::Velocity3D || variable == DisplayVariable::StdDev) {
        low = std::min(low, 0.0);
        high = std::max(high, 0.0);
    }
    state.step = RoundStep(high - low, 4);
    state.minimum = std::floor(low / state.step + 1e-9) * state.step;
    state.maximum = std::ceil(high / state.step - 1e-9) * state.step;
    if (state.maximum <= state.minimum) state.maximum = state.minimum + state.step;
    return state;
}

}  // namespace rm
