#pragma once
// The contour's colour legend: a vertical bar of one-pixel strips from the lowest value of the
// range at the bottom to the highest at the top, each strip in the colour that the contour's
// colour rule gives its value, with tick labels at the legend's step ("%4.1f", or "%4.0f" for
// whole steps) and a title naming the variable, its unit and its component.

#include <QPainter>
#include <QRect>
#include <QString>

#include "display/contour_view.h"
#include "display/pixel_mapping.h"

namespace rm {

// "Velocity (m/s)", "Amplitude (counts)", "SNR (dB)", "Velocity-3D (ft/s)".
QString LegendTitle(const ContourViewState& view, int unitSystem);
// " Beam2/Y/N" and the others; empty for Velocity-3D, which has no component.
QString LegendComponent(const ContourViewState& view);
// The text of a tick label.
QString LegendTickLabel(double value, double step);

// Where the bar of the legend lies in `area` (the title above it, the labels to its right).
QRect LegendBar(const QRect& area, int fontPixels);
// The mapping of the bar's rows: the top row shows the highest value.
AxisMapping LegendMapping(const QRect& bar, const ContourViewState& view);

void PaintContourLegend(QPainter& painter, const QRect& area, const ContourViewState& view, int unitSystem,
                        int fontPixels);

}  // namespace rm
