#include "display/plot_axis.h"

#include <algorithm>
#include <cmath>

#include <QFontMetrics>

#include "display/contour_view.h"
#include "display/display_font.h"

namespace rm {

QString TickLabel(double value, double step) {
    int decimals = 0;
    step = std::fabs(step);
    while (decimals < 3 && std::fabs(step * std::pow(10.0, decimals) - std::round(step * std::pow(10.0, decimals))) > 1e-6)
        ++decimals;
    if (std::fabs(value) < step * 1e-6) value = 0.0;  // no "-0"
    return QString::number(value, 'f', decimals);
}

Ticks TicksOf(const AxisMapping& mapping, int divisions) {
    Ticks t;
    if (!mapping.Valid()) return t;
    const double lo = std::min(mapping.v0, mapping.v1), hi = std::max(mapping.v0, mapping.v1);
    t.step = RoundStep(hi - lo, std::max(divisions, 1));
    t.first = std::ceil(lo / t.step - 1e-9) * t.step;
    t.count = static_cast<int>(std::floor((hi - t.first) / t.step + 1e-9)) + 1;
    if (t.count < 0) t.count = 0;
    return t;
}

int FontPixelsFor(int height) { return std::clamp(height / 50, 10, 16); }

void PaintHorizontalAxis(QPainter& painter, const QRect& area, const AxisMapping& mapping, const QString& title,
                         const AxisStyle& style) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QFont font = DisplayFont(style.fontPixels);
    painter.setFont(font);
    const QFontMetrics metrics(font, painter.device());
    const int y = area.top();
    painter.setPen(QPen(style.line, 1));
    painter.drawLine(mapping.p0, y, mapping.p1 - 1, y);
    const int labelWidth = metrics.horizontalAdvance(QStringLiteral("00000.0"));
    const Ticks ticks = TicksOf(mapping, std::max(2, std::abs(mapping.p1 - mapping.p0) / std::max(labelWidth, 1)));
    for (int i = 0; i < ticks.count; ++i) {
        const double v = ticks.At(i);
        const int x = std::min(mapping.ToPixel(v), std::max(mapping.p0, mapping.p1) - 1);
        painter.setPen(QPen(style.line, 1));
        painter.drawLine(x, y, x, y + style.tickLength);
        painter.setPen(style.text);
        const QString label = TickLabel(v, ticks.step);
        // Centred under the tick, but kept within the axis' own rectangle.
        const int w = metrics.horizontalAdvance(label) + 2;
        const int left = std::clamp(x - w / 2, area.left(), std::max(area.left(), area.right() + 1 - w));
        painter.drawText(QRect(left, y + style.tickLength + 1, w, metrics.height()), Qt::AlignHCenter | Qt::AlignTop,
                         label);
    }
    painter.setPen(style.text);
    painter.drawText(QRect(area.left(), area.bottom() - metrics.height(), area.width(), metrics.height() + 1),
                     Qt::AlignHCenter | Qt::AlignBottom, title);
    painter.restore();
}

void PaintVerticalAxis(QPainter& painter, const QRect& area, const AxisMapping& mapping, const QString& title,
                       const AxisStyle& style) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QFont font = DisplayFont(style.fontPixels);
    painter.setFont(font);
    const QFontMetrics metrics(font, painter.device());
    const int x = area.right();
    painter.setPen(QPen(style.line, 1));
    painter.drawLine(x, mapping.p0, x, mapping.p1 - 1);
    const int divisions = std::max(2, std::abs(mapping.p1 - mapping.p0) / std::max(3 * metrics.height(), 1));
    const Ticks ticks = TicksOf(mapping, divisions);
    for (int i = 0; i < ticks.count; ++i) {
        const double v = ticks.At(i);
        const int y = std::min(mapping.ToPixel(v), std::max(mapping.p0, mapping.p1) - 1);
        painter.setPen(QPen(style.line, 1));
        painter.drawLine(x - style.tickLength, y, x, y);
        painter.setPen(style.text);
        const QString label = TickLabel(v, ticks.step);
        painter.drawText(QRect(area.left(), y - metrics.height() / 2, x - style.tickLength - 2 - area.left(), metrics.height()),
                         Qt::AlignRight | Qt::AlignVCenter, label);
    }
    painter.setPen(style.text);
    painter.translate(area.left(), area.center().y());
    painter.rotate(-90.0);
    painter.drawText(QRect(-area.height() / 2, 0, area.height(), metrics.height() + 1), Qt::AlignHCenter | Qt::AlignTop,
                     title);
    painter.restore();
}

}  // namespace rm
