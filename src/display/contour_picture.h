#pragma once
// The contour: one variable over profiles and depth as a field of coloured cells, with the bed
// drawn over it and the side-lobe limit. It paints itself onto any QPainter within a given
// rectangle from a ContourViewState and the document's window; it keeps no data.
//
// Whole redraw, in order: the background; the cells of every profile shown, each profile in
// the strip from its own X to the next profile's X (the last profile: to X + 1 by profile
// number, else as wide as the strip before it), a strip of no width being one pixel wide, the
// shallow-water cell first, missing and invalid cells in the colour of 32767.0; the bed as a
// polygon closed along the bottom of the rectangle, filled with the background and a 45-degree
// cross hatch, outlined in a 1 pixel black pen, with the profiles of bad bottom track marked
// along it; the side-lobe limit as a line from profile to profile with gaps where a profile has
// none. Nothing is drawn outside the rectangle. The frame, axes and legend are separate pieces
// (contour_figure.h).
//
// The cells are set pixel by pixel into an image of the band being drawn, which the painter
// then draws: a window of 3000 profiles has more profiles than a screen has pixel columns, and
// filling each cell as a rectangle through the painter would cost twenty times more. Lines and
// the bed polygon are drawn through the painter (vectors in an SVG or PDF).

#include <optional>
#include <utility>

#include <QPainter>
#include <QRect>

#include "display/contour_view.h"
#include "display/pixel_mapping.h"
#include "display/processed_window.h"

namespace rm {

class ContourPicture {
public:
    ContourPicture(const ProcessedWindow& window, const ContourViewState& view) : window_(window), view_(view) {}

    // The mapping of the view's ranges onto `rect`.
    PlotMapping Mapping(const QRect& rect) const;

    // The whole redraw into `rect`.
    void Paint(QPainter& painter, const QRect& rect) const;
    // The repaint after `item` joined the window as its newest profile, with the view's ranges
    // unchanged since the last paint (otherwise a whole redraw is due): repaints only the
    // columns that the new profile changes (its strip and the previous profile's) and returns
    // them. What it shows equals the whole redraw.
    QRect PaintAppended(QPainter& painter, const QRect& rect, int item) const;

    // What is under a pixel of `rect`: the profile drawn in column x (the newest whose strip
    // holds it), the depth at row y, the cell of a profile at a depth (nothing outside its cells).
    std::optional<int> ItemAt(const QRect& rect, int x) const;
    double DepthAt(const QRect& rect, int y) const;
    std::optional<int> CellAt(int item, double depth) const;
    // The pixel columns of an item's strip: first, and one past the last.
    std::pair<int, int> StripOf(const PlotMapping& mapping, int item) const;
    // The depths of the upper and lower edge of cell i.
    double CellTop(int cell) const { return (cell + 0.5) * window_.CellSize() + window_.CellOffset(); }
    double CellBottom(int cell) const { return (cell + 1.5) * window_.CellSize() + window_.CellOffset(); }

private:
    struct Columns;  // the pixel columns of every profile for one paint

    double X(int item) const { return window_.XPosition(item, view_.xAxis); }
    // The X where the item's strip ends; `assumeNewest` treats the item as the newest one.
    double StripEnd(int item, bool assumeNewest) const;
    std::pair<int, int> StripPixels(const PlotMapping& m, int item, bool assumeNewest) const;
    void PaintBand(QPainter& painter, const QRect& rect, const PlotMapping& m, int left, int right) const;
    void PaintCells(QPainter& painter, const QRect& rect, const PlotMapping& m, const Columns& c, int left,
                    int right) const;
    void PaintBottom(QPainter& painter, const QRect& rect, const PlotMapping& m, const Columns& c, int left,
                     int right) const;
    void PaintCutOff(QPainter& painter, const PlotMapping& m, const Columns& c, int left, int right) const;

    const ProcessedWindow& window_;
    const ContourViewState& view_;
};

}  // namespace rm
