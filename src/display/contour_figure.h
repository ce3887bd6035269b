#pragma once
// The contour with its pieces arranged in one rectangle, as `plot`, the reports and printing
// show it: a title line, the depth axis at the left, the contour in a 3-D frame, the
// horizontal axis under it and the legend at the right. The desktop program arranges the same
// pieces in widgets of its own instead.

#include <QPainter>
#include <QRect>
#include <QString>

#include "display/contour_view.h"
#include "display/processed_window.h"

namespace rm {

struct ContourFigureLayout {
    QRect title, yAxis, contour, xAxis, legend;
    int fontPixels = 12;
};
ContourFigureLayout LayoutContourFigure(const QRect& area);

// "Profiles", or "Distance (m)" / "Distance (ft)".
QString XAxisTitle(XAxisMode mode, int unitSystem);
// "Depth (m)" or "Depth (ft)".
QString DepthAxisTitle(int unitSystem);

// A sunken 3-D frame just outside `inner` (the frame does not cover the picture).
void PaintFrame3d(QPainter& painter, const QRect& inner);

void PaintContourFigure(QPainter& painter, const QRect& area, const ProcessedWindow& window,
                        const ContourViewState& view, const QString& title);

}  // namespace rm
