#include "display/contour_figure.h"

#include <QFontMetrics>

#include "display/contour_legend.h"
#include "display/contour_picture.h"
#include "display/display_font.h"
#include "display/plot_axis.h"

namespace rm {

ContourFigureLayout LayoutContourFigure(const QRect& area) {
    ContourFigureLayout l;
    const int f = FontPixelsFor(area.height());
    l.fontPixels = f;
    const int titleHeight = 2 * f;
    const int yAxisWidth = 6 * f;
    const int xAxisHeight = 3 * f + 8;
    const int legendWidth = 11 * f;
    const int gap = f / 2 + 2;
    l.title = QRect(area.left(), area.top(), area.width(), titleHeight);
    const int top = area.top() + titleHeight;
    const int plotHeight = std::max(1, area.height() - titleHeight - xAxisHeight - gap);
    const int plotWidth = std::max(1, area.width() - yAxisWidth - legendWidth - 2 * gap);
    l.yAxis = QRect(area.left(), top, yAxisWidth, plotHeight);
    l.contour = QRect(area.left() + yAxisWidth + gap, top, plotWidth, plotHeight);
    l.xAxis = QRect(l.contour.left(), l.contour.bottom() + 1 + gap, plotWidth, xAxisHeight);
    l.legend = QRect(l.contour.right() + 1 + 2 * gap, top, legendWidth - gap, plotHeight);
    return l;
}

QString XAxisTitle(XAxisMode mode, int unitSystem) {
    if (mode == XAxisMode::Profiles) return QStringLiteral("Profiles");
    return QStringLiteral("Distance (%1)").arg(QString::fromStdString(LengthUnitText(unitSystem)));
}

QString DepthAxisTitle(int unitSystem) {
    return QStringLiteral("Depth (%1)").arg(QString::fromStdString(LengthUnitText(unitSystem)));
}

void PaintFrame3d(QPainter& painter, const QRect& inner) {
    painter.save();
    const QRect r = inner.adjusted(-1, -1, 0, 0);
    painter.setPen(QColor(128, 128, 128));
    painter.drawLine(r.left(), r.top(), r.right(), r.top());
    painter.drawLine(r.left(), r.top(), r.left(), r.bottom());
    painter.setPen(QColor(224, 224, 224));
    painter.drawLine(r.left(), r.bottom() + 1, r.right() + 1, r.bottom() + 1);
    painter.drawLine(r.right() + 1, r.top(), r.right() + 1, r.bottom() + 1);
    painter.restore();
}

void PaintContourFigure(QPainter& painter, const QRect& area, const ProcessedWindow& window,
                        const ContourViewState& view, const QString& title) {
    const ContourFigureLayout l = LayoutContourFigure(area);
    painter.fillRect(area, Qt::white);
    const ContourPicture contour(window, view);
    contour.Paint(painter, l.contour);
    PaintFrame3d(painter, l.contour);
    const PlotMapping m = contour.Mapping(l.contour);
    AxisStyle style;
    style.fontPixels = l.fontPixels;
    style.text = view.colours.text;
    PaintVerticalAxis(painter, l.yAxis, m.y, DepthAxisTitle(window.UnitSystem()), style);
    PaintHorizontalAxis(painter, l.xAxis, m.x, XAxisTitle(view.xAxis, window.UnitSystem()), style);
    PaintContourLegend(painter, l.legend, view, window.UnitSystem(), l.fontPixels);
    painter.save();
    painter.setFont(DisplayFont(l.fontPixels + 1));
    painter.setPen(view.colours.text);
    painter.drawText(l.title.adjusted(l.contour.left() - area.left(), 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter, title);
    painter.restore();
}

}  // namespace rm
