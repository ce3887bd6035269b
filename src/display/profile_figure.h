#pragma once
// The profile graphs of one profile side by side in one rectangle, as `plot` and printing show
// them: a title line, the vertical axis at the left (shared: the graphs have one vertical
// axis kind), then each graph with its value axis and its line legend under it.

#include <vector>

#include <QPainter>
#include <QRect>
#include <QString>

#include "display/profile_graph.h"

namespace rm {

void PaintProfileFigure(QPainter& painter, const QRect& area, const ProcessedWindow& window,
                        const std::vector<ProfileGraphState>& graphs, int item, const QString& title);

}  // namespace rm
