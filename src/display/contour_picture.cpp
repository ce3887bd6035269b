#include "display/contour_picture.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include <QImage>
#include <QPolygon>

#include "display/contour_colour.h"

namespace rm {

namespace {
constexpr int kBadBottomPenWidth = 3;
constexpr int kCutOffPenWidth = 2;
constexpr QRgb kUnset = 0;
// Columns added on each side of an appended band: the closing edge of the bed at the end of
// the newest strip and the width of the pens reach that far beyond the strips.
constexpr int kBandMargin = 4;  // a row of a strip that no cell covers (opaque colours have alpha 255)
}  // namespace

PlotMapping ContourPicture::Mapping(const QRect& rect) const {
    return PlotMapping::Of(rect, view_.x0, view_.x1, view_.y0, view_.y1);
}

double ContourPicture::StripEnd(int item, bool assumeNewest) const {
    if (!assumeNewest && window_.Holds(item + 1)) return X(item + 1);
    if (view_.xAxis == XAxisMode::Profiles) return item + 1;
    if (window_.Holds(item - 1)) return X(item) + (X(item) - X(item - 1));
    return X(item);
}

std::pair<int, int> ContourPicture::StripPixels(const PlotMapping& m, int item, bool assumeNewest) const {
    const int a = m.x.ToPixel(X(item));
    const int b = m.x.ToPixel(StripEnd(item, assumeNewest));
    const int lo = std::min(a, b), hi = std::max(a, b);
    return {lo, hi > lo ? hi : lo + 1};
}

std::pair<int, int> ContourPicture::StripOf(const PlotMapping& m, int item) const {
    return StripPixels(m, item, item == window_.LastItem());
}

void ContourPicture::Paint(QPainter& painter, const QRect& rect) const {
    const PlotMapping m = Mapping(rect);
    PaintBand(painter, rect, m, rect.left(), rect.left() + rect.width());
}

QRect ContourPicture::PaintAppended(QPainter& painter, const QRect& rect, int item) const {
    const PlotMapping m = Mapping(rect);
    if (!window_.Holds(item) || !m.Valid()) {
        Paint(painter, rect);
        return rect;
    }
    // The new strip, the previous profile's strip now, and as it was while it was the newest.
    std::pair<int, int> band = StripPixels(m, item, true);
    if (window_.Holds(item - 1)) {
        for (bool newest : {false, true}) {
            const std::pair<int, int> s = StripPixels(m, item - 1, newest);
            band.first = std::min(band.first, s.first);
            band.second = std::max(band.second, s.second);
        }
    }
    const int left = std::max(band.first - kBandMargin, rect.left());
    const int right = std::min(band.second + kBandMargin, rect.left() + rect.width());
    if (right <= left) return QRect();
    PaintBand(painter, rect, m, left, right);
    return QRect(left, rect.top(), right - left, rect.height());
}

void ContourPicture::PaintBand(QPainter& painter, const QRect& rect, const PlotMapping& m, int left,
                               int right) const {
    const QRect band(left, rect.top(), right - left, rect.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setClipRect(band);
    painter.fillRect(band, view_.colours.background);
    if (m.Valid() && !window_.Empty()) {
        PaintCells(painter, rect, m, left, right);
        if (view_.showBottom) PaintBottom(painter, rect, m);
        if (view_.showCutOff) PaintCutOff(painter, m);
    }
    painter.restore();
}

void ContourPicture::PaintCells(QPainter& painter, const QRect& rect, const PlotMapping& m, int left,
                                int right) const {
    if (view_.colour1 == view_.colour0) return;
    const int width = right - left, height = rect.height(), top = rect.top();
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(view_.colours.background.rgb());
    const QRgb missing = ContourColour(MissingValue, view_.colour0, view_.colour1);
    std::vector<QRgb> column(static_cast<size_t>(height));
    CellColumn values;
    const bool velocity =
        view_.variable == DisplayVariable::Velocity || view_.variable == DisplayVariable::Velocity3D;

    // Sets rows [upper, lower) of the column for a cell whose edges lie at those depths.
    int covered0 = height, covered1 = 0;
    auto cell = [&](double upper, double lower, QRgb colour) {
        if (lower < view_.y0 || upper > view_.y1) return;  // both edges above or both below the range
        const int y0 = std::max(m.y.ToPixel(upper) - top, 0);
        const int y1 = std::min(m.y.ToPixel(lower) - top, height);
        for (int y = y0; y < y1; ++y) column[static_cast<size_t>(y)] = colour;
        if (y0 < y1) {
            covered0 = std::min(covered0, y0);
            covered1 = std::max(covered1, y1);
        }
    };

    for (int item = window_.FirstItem(); item <= window_.LastItem(); ++item) {
        const std::pair<int, int> strip = StripOf(m, item);
        const int x0 = std::max(strip.first, left), x1 = std::min(strip.second, right);
        if (x1 <= x0) continue;
        window_.ReadColumn(item, view_.variable, view_.component, values);
        std::fill(column.begin(), column.end(), kUnset);
        covered0 = height;
        covered1 = 0;
        if (velocity && window_.UsedShallowCell(item)) {
            const double v = values.shallow;
            cell(CellTop(0), window_.ShallowCellEnd(),
                 v < MissingValue ? ContourColour(v, view_.colour0, view_.colour1) : missing);
        }
        const int valid = window_.ValidCells(item);
        for (int i = 0; i < values.cells; ++i) {
            const double v = values.value[static_cast<size_t>(i)];
            const bool good = i < valid && v < MissingValue;
            cell(CellTop(i), CellBottom(i), good ? ContourColour(v, view_.colour0, view_.colour1) : missing);
        }
        for (int y = covered0; y < covered1; ++y) {
            const QRgb colour = column[static_cast<size_t>(y)];
            if (colour == kUnset) continue;
            QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            std::fill(line + (x0 - left), line + (x1 - left), colour);
        }
    }
    painter.drawImage(QPoint(left, top), image);
}

void ContourPicture::PaintBottom(QPainter& painter, const QRect& rect, const PlotMapping& m) const {
    const int first = window_.FirstItem(), last = window_.LastItem();
    QPolygon bed;
    bed.reserve(last - first + 4);
    for (int item = first; item <= last; ++item) bed << m.ToPixel(X(item), window_.BottomDepth(item));
    // The newest profile's bed reaches to the end of its strip; the polygon closes just below
    // the rectangle, so that its bottom edge is clipped away.
    const int endX = m.x.ToPixel(StripEnd(last, true));
    const int below = rect.top() + rect.height();
    bed << QPoint(endX, bed.back().y()) << QPoint(endX, below) << QPoint(bed.front().x(), below);

    painter.setPen(Qt::NoPen);
    painter.setBrush(view_.colours.background);
    painter.drawPolygon(bed);
    painter.setBrush(QBrush(view_.colours.hatch, Qt::DiagCrossPattern));
    painter.drawPolygon(bed);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(view_.colours.bottomOutline, 1));
    painter.drawPolygon(bed);

    if (!view_.showBadBottomTrack) return;
    painter.setPen(QPen(view_.colours.badBottomTrack, kBadBottomPenWidth, Qt::SolidLine, Qt::FlatCap));
    for (int item = first; item <= last; ++item) {
        if (!window_.BadBottomTrack(item)) continue;
        const size_t i = static_cast<size_t>(item - first);
        painter.drawLine(bed[static_cast<int>(i)], bed[static_cast<int>(i + 1)]);
    }
}

void ContourPicture::PaintCutOff(QPainter& painter, const PlotMapping& m) const {
    painter.setPen(QPen(view_.colours.cutOff, kCutOffPenWidth, Qt::SolidLine, Qt::FlatCap));
    const int first = window_.FirstItem(), last = window_.LastItem();
    double previous = window_.CutOffDepth(first);
    for (int item = first; item <= last; ++item) {
        const double depth = previous;
        const bool newest = item == last;
        const double next = newest ? depth : window_.CutOffDepth(item + 1);
        previous = next;
        if (depth >= MissingValue || next >= MissingValue) continue;  // a gap
        const double nextX = newest ? StripEnd(item, true) : X(item + 1);
        painter.drawLine(m.ToPixel(X(item), depth), m.ToPixel(nextX, next));
    }
}

std::optional<int> ContourPicture::ItemAt(const QRect& rect, int x) const {
    const PlotMapping m = Mapping(rect);
    if (!m.Valid() || x < rect.left() || x >= rect.left() + rect.width()) return std::nullopt;
    for (int item = window_.LastItem(); item >= window_.FirstItem(); --item) {
        const std::pair<int, int> strip = StripOf(m, item);
        if (x >= strip.first && x < strip.second) return item;
    }
    return std::nullopt;
}

double ContourPicture::DepthAt(const QRect& rect, int y) const { return Mapping(rect).y.ValueAtPixel(y); }

std::optional<int> ContourPicture::CellAt(int item, double depth) const {
    if (!window_.Holds(item) || !(window_.CellSize() > 0.0)) return std::nullopt;
    const int cell = static_cast<int>(std::floor((depth - window_.CellOffset()) / window_.CellSize() - 0.5));
    if (cell < 0 || cell >= window_.Raw(item).cells) return std::nullopt;
    return cell;
}

}  // namespace rm
