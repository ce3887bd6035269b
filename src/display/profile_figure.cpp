#include "display/profile_figure.h"

#include <algorithm>

#include "display/contour_figure.h"
#include "display/display_font.h"
#include "display/plot_axis.h"

namespace rm {

void PaintProfileFigure(QPainter& painter, const QRect& area, const ProcessedWindow& window,
                        const std::vector<ProfileGraphState>& graphs, int item, const QString& title) {
    painter.fillRect(area, Qt::white);
    if (graphs.empty()) return;
    const int f = FontPixelsFor(area.height());
    const int titleHeight = 4 * f;  // the title, then the graphs' names
    const int yAxisWidth = 6 * f;
    const int xAxisHeight = 3 * f + 8;
    const int legendHeight = 3 * f + 6;  // two rows of line samples
    const int gap = 2 * f;
    const int count = static_cast<int>(graphs.size());
    const int top = area.top() + titleHeight;
    const int height = std::max(1, area.height() - titleHeight - xAxisHeight - legendHeight - gap);
    const int width = std::max(1, (area.width() - yAxisWidth - gap * (count + 1)) / count);

    AxisStyle style;
    style.fontPixels = f;
    for (int g = 0; g < count; ++g) {
        const ProfileGraphState& state = graphs[static_cast<size_t>(g)];
        const ProfileGraph graph(window, state);
        const QRect plot(area.left() + yAxisWidth + gap + g * (width + gap), top, width, height);
        graph.Paint(painter, plot, item);
        PaintFrame3d(painter, plot);
        const PlotMapping m = graph.Mapping(plot);
        if (g == 0) {
            PaintVerticalAxis(painter, QRect(area.left(), top, yAxisWidth, height), m.y,
                              GraphYAxisTitle(state.yAxis, window.UnitSystem()), style);
        }
        PaintHorizontalAxis(painter, QRect(plot.left(), plot.bottom() + 1 + gap / 2, width, xAxisHeight), m.x,
                            graph.ValueAxisTitle(), style);
        graph.PaintLineLegend(painter, QRect(plot.left(), plot.bottom() + 1 + gap / 2 + xAxisHeight, width, legendHeight),
                              item, f);
        painter.save();
        painter.setFont(DisplayFont(f));
        painter.setPen(state.text);
        painter.drawText(QRect(plot.left(), area.top() + titleHeight / 2, width, titleHeight / 2), Qt::AlignHCenter | Qt::AlignVCenter,
                         QString::fromStdString(state.name));
        painter.restore();
    }
    painter.save();
    painter.setFont(DisplayFont(f + 1));
    painter.setPen(Qt::black);
    painter.drawText(QRect(area.left() + yAxisWidth + gap, area.top(), area.width() - yAxisWidth - gap, titleHeight / 2),
                     Qt::AlignLeft | Qt::AlignVCenter, title);
    painter.restore();
}

}  // namespace rm
