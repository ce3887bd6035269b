#pragma once
// Values to pixels and back. Along one axis a value u maps to
//   pixel = trunc((u - v0) * (p1 - p0) / (v1 - v0) + p0)
// where v0..v1 is the range shown and p0..p1 the pixel edges of the drawing rectangle: p0 its
// first pixel, p1 the one just past its last (left + width, top + height), so that the whole
// range fills the rectangle. Depth grows downward: the depth axis maps v0 to the top.
//
// A range of zero width has no mapping (Valid() is false); the ranges are checked where they
// are entered, and pictures draw nothing for an invalid mapping rather than divide by zero.

#include <QPoint>
#include <QRect>

namespace rm {

struct AxisMapping {
    double v0 = 0.0, v1 = 1.0;  // the range shown
    int p0 = 0, p1 = 1;         // first pixel, and the pixel past the last

    bool Valid() const { return v1 != v0 && p1 != p0; }
    // The pixel of value u; values far outside the range are held within +-1e6 pixels.
    int ToPixel(double u) const;
    // The value at the left (or top) edge of pixel `pixel`.
    double ToValue(double pixel) const;
    // The value at the centre of pixel `pixel`: what the person points at.
    double ValueAtPixel(int pixel) const { return ToValue(pixel + 0.5); }
};

// The two axes of a picture's drawing rectangle: x over the horizontal range, y over depth.
struct PlotMapping {
    AxisMapping x, y;

    static PlotMapping Of(const QRect& rect, double x0, double x1, double y0, double y1);
    bool Valid() const { return x.Valid() && y.Valid(); }
    QPoint ToPixel(double u, double depth) const { return QPoint(x.ToPixel(u), y.ToPixel(depth)); }
};

}  // namespace rm
