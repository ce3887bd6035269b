#include "display/contour_legend.h"

#include <cmath>
#include <cstdio>

#include <QFontMetrics>

#include "display/contour_colour.h"
#include "display/display_font.h"

namespace rm {

namespace {
constexpr int kBarWidth = 18;
constexpr int kTick = 4;
}  // namespace

QString LegendTitle(const ContourViewState& view, int unitSystem) {
    const std::string name = ContourVariableName(view.variable).value_or(GraphVariableName(view.variable));
    return QString::fromStdString(name + " (" + ValueUnitText(view.variable, view.component, unitSystem) + ")");
}

QString LegendComponent(const ContourViewState& view) {
    if (view.variable == DisplayVariable::Velocity3D) return QString();
    return QString::fromStdString(ComponentName(view.component));
}

QString LegendTickLabel(double value, double step) {
    const bool whole = std::fabs(step - std::round(step)) < 1e-9 && step >= 1.0;
    if (std::fabs(value) < std::fabs(step) * 1e-6) value = 0.0;
    char text[32];
    std::snprintf(text, sizeof text, whole ? "%4.0f" : "%4.1f", value);
    return QString::fromLatin1(text);
}

QRect LegendBar(const QRect& area, int fontPixels) {
    const int titleHeight = 3 * (fontPixels + 4);
    const int margin = fontPixels;
    return QRect(area.left() + 4, area.top() + titleHeight, kBarWidth,
                 std::max(1, area.height() - titleHeight - margin));
}

AxisMapping LegendMapping(const QRect& bar, const ContourViewState& view) {
    return AxisMapping{view.colour1, view.colour0, bar.top(), bar.top() + bar.height()};
}

void PaintContourLegend(QPainter& painter, const QRect& area, const ContourViewState& view, int unitSystem,
                        int fontPixels) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QFont font = DisplayFont(fontPixels);
    painter.setFont(font);
    const QFontMetrics metrics(font, painter.device());
    const QRect bar = LegendBar(area, fontPixels);
    const AxisMapping m = LegendMapping(bar, view);

    painter.setPen(view.colours.text);
    const QRect titleRect(area.left(), area.top(), area.width(), bar.top() - area.top() - 4);
    painter.drawText(titleRect, Qt::AlignLeft | Qt::AlignBottom | Qt::TextWordWrap,
                     LegendTitle(view, unitSystem) + QLatin1Char('\n') + LegendComponent(view));

    if (m.Valid()) {
        for (int y = bar.top(); y < bar.top() + bar.height(); ++y) {
            painter.setPen(QColor::fromRgb(ContourColour(m.ValueAtPixel(y), view.colour0, view.colour1)));
            painter.drawLine(bar.left(), y, bar.left() + bar.width() - 1, y);
        }
    }
    painter.setPen(QPen(view.colours.text, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(bar.adjusted(-1, -1, 0, 0));

    if (m.Valid() && view.colourStep > 0.0) {
        const double lo = std::min(view.colour0, view.colour1), hi = std::max(view.colour0, view.colour1);
        // Never more labels than the bar has room for.
        double step = view.colourStep;
        while ((hi - lo) / step * metrics.height() > bar.height() * 1.0) step *= 2.0;
        QString previous;
        for (double v = std::ceil(lo / step - 1e-9) * step; v <= hi + step * 1e-9; v += step) {
            const int y = std::min(m.ToPixel(v), bar.top() + bar.height() - 1);
            const int x = bar.left() + bar.width();
            painter.drawLine(x, y, x + kTick, y);
            const QString label = LegendTickLabel(v, step);
            if (label == previous) continue;
            previous = label;
            painter.drawText(QRect(x + kTick + 2, y - metrics.height() / 2, area.right() - x - kTick - 2, metrics.height()),
                             Qt::AlignLeft | Qt::AlignVCenter, label);
        }
    }
    painter.restore();
}

}  // namespace rm
