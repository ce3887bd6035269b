#pragma once
// Axes and their labels, shared by the pictures: a horizontal axis under a plot and a vertical
// axis at its left, each drawn in its own rectangle beside the plot's, with ticks at round
// steps of the mapping's range, tick labels, and a title that names the quantity and its unit.

#include <QColor>
#include <QPainter>
#include <QRect>
#include <QString>

#include "display/pixel_mapping.h"

namespace rm {

struct AxisStyle {
    QColor line{0, 0, 0};
    QColor text{0, 0, 0};
    int fontPixels = 12;
    int tickLength = 5;
};

// The text of a tick at `value` for ticks `step` apart: "%.0f" for whole steps, else as many
// decimals as the step needs (at most 3).
QString TickLabel(double value, double step);
// Tick values: the multiples of a round step that lie in the range, about `divisions` of them.
struct Ticks {
    double first = 0.0, step = 1.0;
    int count = 0;
    double At(int i) const { return first + i * step; }
};
Ticks TicksOf(const AxisMapping& mapping, int divisions);

// A horizontal axis in `area`, for a plot whose columns `mapping` maps: the axis line along
// the top of the area, ticks down from it, labels under the ticks, the title at the bottom.
void PaintHorizontalAxis(QPainter& painter, const QRect& area, const AxisMapping& mapping, const QString& title,
                         const AxisStyle& style);
// A vertical axis in `area`, for a plot whose rows `mapping` maps: the axis line along the
// right of the area, ticks to the left, labels left of the ticks, the title turned upright
// along the left edge.
void PaintVerticalAxis(QPainter& painter, const QRect& area, const AxisMapping& mapping, const QString& title,
                       const AxisStyle& style);

// The pixel height of text for a picture of `height` pixels: readable at 300 pixels, not
// oversized at 2000.
int FontPixelsFor(int height);

}  // namespace rm
