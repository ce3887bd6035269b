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

// The pixel columns of every profile shown, computed once for a paint: the column of its X (the
// bed's and the side-lobe limit's points) and its strip. Index 0 is the first item.
struct ContourPicture::Columns {
    int first = 1;
    std::vector<int> x;                     // pixel of the item's X
    std::vector<std::pair<int, int>> strip; // first column and one past the last
    int endX = 0;                           // pixel where the newest strip ends
    bool monotonic = true;                  // X never decreases from one profile to the next
};

void ContourPicture::PaintBand(QPainter& painter, const QRect& rect, const PlotMapping& m, int left,
                               int right) const {
    const QRect band(left, rect.top(), right - left, rect.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setClipRect(band);
    painter.fillRect(band, view_.colours.background);
    if (m.Valid() && !window_.Empty()) {
        Columns c;
        c.first = window_.FirstItem();
        const int count = window_.LastItem() - c.first + 1;
        c.x.resize(static_cast<size_t>(count));
        c.strip.resize(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i) {
            const int item = c.first + i;
            c.x[static_cast<size_t>(i)] = m.x.ToPixel(X(item));
            c.strip[static_cast<size_t>(i)] = StripOf(m, item);
            if (i > 0 && c.x[static_cast<size_t>(i)] < c.x[static_cast<size_t>(i - 1)]) c.monotonic = false;
        }
        c.endX = m.x.ToPixel(StripEnd(window_.LastItem(), true));
        if (c.endX < c.x.back()) c.monotonic = false;
        PaintCells(painter, rect, m, c, left, right);
        if (view_.showBottom) PaintBottom(painter, rect, m, c, left, right);
        if (view_.showCutOff) PaintCutOff(painter, m, c, left, right);
    }
    painter.restore();
}

void ContourPicture::PaintCells(QPainter& painter, const QRect& rect, const PlotMapping& m, const Columns& c,
                                int left, int right) const {
    if (view_.colour1 == view_.colour0) return;
    const int width = right - left, height = rect.height(), top = rect.top();
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(view_.colours.background.rgb());
    uchar* const bits = image.bits();
    const qsizetype bytesPerLine = image.bytesPerLine();
    const QRgb missing = ContourColour(MissingValue, view_.colour0, view_.colour1);
    const bool velocity =
        view_.variable == DisplayVariable::Velocity || view_.variable == DisplayVariable::Velocity3D;

    // The rows of a cell whose edges lie at these depths (relative to the top, within the
    // rectangle); none when both edges lie above or both below the range.
    auto rows = [&](double upper, double lower) -> std::pair<int, int> {
        if (lower < view_.y0 || upper > view_.y1) return {0, 0};
        return {std::max(m.y.ToPixel(upper) - top, 0), std::min(m.y.ToPixel(lower) - top, height)};
    };
    // Every profile has the cells of the file: their rows are the same for all.
    int cells = 0;
    bool uniform = true;
    for (int item = window_.FirstItem(); item <= window_.LastItem(); ++item) {
        const int n = std::min(window_.Raw(item).cells, kMaxCells);
        if (item > window_.FirstItem() && n != cells) uniform = false;
        cells = std::max(cells, n);
    }
    std::vector<std::pair<int, int>> cellRows(static_cast<size_t>(cells));
    for (int i = 0; i < cells; ++i) cellRows[static_cast<size_t>(i)] = rows(CellTop(i), CellBottom(i));
    const std::pair<int, int> shallowRows = rows(CellTop(0), window_.ShallowCellEnd());

    // A newer profile drawn over an older one covers it wholly where it is drawn, when all have
    // the same cells and the shallow-water cell ends within them: then each column is painted
    // once, by the newest profile whose strip holds it, and older profiles hidden by newer ones
    // are not read at all. Otherwise every profile is painted, oldest first.
    const bool newestOnly = uniform && (cells == 0 || window_.ShallowCellEnd() <= CellBottom(cells - 1));
    std::vector<char> painted(static_cast<size_t>(width), 0);
    std::vector<std::pair<int, int>> runs;  // the columns an item paints
    CellColumn values;

    auto paintItem = [&](int item) {
        window_.ReadColumn(item, view_.variable, view_.component, values);
        auto fill = [&](std::pair<int, int> r, QRgb colour) {
            for (int y = r.first; y < r.second; ++y) {
                QRgb* line = reinterpret_cast<QRgb*>(bits + y * bytesPerLine) - left;
                for (const std::pair<int, int>& run : runs) std::fill(line + run.first, line + run.second, colour);
            }
        };
        if (velocity && window_.UsedShallowCell(item)) {
            const double v = values.shallow;
            fill(shallowRows, v < MissingValue ? ContourColour(v, view_.colour0, view_.colour1) : missing);
        }
        const int valid = window_.ValidCells(item);
        for (int i = 0; i < values.cells; ++i) {
            const double v = values.value[static_cast<size_t>(i)];
            const bool good = i < valid && v < MissingValue;
            fill(cellRows[static_cast<size_t>(i)], good ? ContourColour(v, view_.colour0, view_.colour1) : missing);
        }
    };

    const int count = static_cast<int>(c.strip.size());
    int remaining = width;
    for (int k = 0; k < count && remaining > 0; ++k) {
        const int i = newestOnly ? count - 1 - k : k;
        const int x0 = std::max(c.strip[static_cast<size_t>(i)].first, left);
        const int x1 = std::min(c.strip[static_cast<size_t>(i)].second, right);
        runs.clear();
        for (int x = x0; x < x1; ++x) {
            if (newestOnly && painted[static_cast<size_t>(x - left)]) continue;
            if (!runs.empty() && runs.back().second == x) ++runs.back().second;
            else runs.emplace_back(x, x + 1);
            if (newestOnly) {
                painted[static_cast<size_t>(x - left)] = 1;
                --remaining;
            }
        }
        if (!runs.empty()) paintItem(c.first + i);
    }
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(QPoint(left, top), image);
    painter.restore();
}

namespace {
// The items [from, to] whose segments to the next point may reach into the columns [left, right):
// with X never decreasing, those from the last segment ending left of the band to the first
// starting right of it. `xs` holds the points' columns, the last one the end of the newest strip.
std::pair<int, int> SegmentsNear(const std::vector<int>& xs, int left, int right) {
    const int n = static_cast<int>(xs.size());
    int from = 0, to = n - 1;
    while (from + 1 < n && xs[static_cast<size_t>(from + 1)] < left - kBandMargin) ++from;
    while (to - 1 > from && xs[static_cast<size_t>(to - 1)] > right + kBandMargin) --to;
    return {from, to};
}
}  // namespace

void ContourPicture::PaintBottom(QPainter& painter, const QRect& rect, const PlotMapping& m, const Columns& c,
                                 int left, int right) const {
    const int first = window_.FirstItem(), count = static_cast<int>(c.x.size());
    // The points of the bed, and the end of the newest strip at the newest profile's depth.
    std::vector<int> xs(c.x);
    xs.push_back(c.endX);
    // With X never decreasing, the part of the bed under the columns drawn is that of the
    // segments near them: the polygon of those segments, closed below the rectangle, fills and
    // outlines those columns as the whole polygon does. A track that turns back takes it whole.
    std::pair<int, int> span{0, count};
    if (c.monotonic) span = SegmentsNear(xs, left, right);
    QPolygon bed;
    bed.reserve(span.second - span.first + 3);
    for (int i = span.first; i <= span.second; ++i) {
        const int item = first + std::min(i, count - 1);
        bed << QPoint(xs[static_cast<size_t>(i)], m.y.ToPixel(window_.BottomDepth(item)));
    }
    // The polygon closes just below the rectangle, so that its bottom edge is clipped away.
    const int below = rect.top() + rect.height();
    bed << QPoint(bed.back().x(), below) << QPoint(bed.front().x(), below);

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
    for (int i = span.first; i < span.second && i < count; ++i) {
        if (!window_.BadBottomTrack(first + i)) continue;
        const int at = i - span.first;
        painter.drawLine(bed[at], bed[at + 1]);
    }
}

void ContourPicture::PaintCutOff(QPainter& painter, const PlotMapping& m, const Columns& c, int left,
                                 int right) const {
    painter.setPen(QPen(view_.colours.cutOff, kCutOffPenWidth, Qt::SolidLine, Qt::FlatCap));
    const int first = window_.FirstItem(), count = static_cast<int>(c.x.size());
    std::vector<int> xs(c.x);
    xs.push_back(c.endX);
    std::pair<int, int> span{0, count};
    if (c.monotonic) span = SegmentsNear(xs, left, right);
    const int last = std::min(span.second, count - 1);
    double depth = window_.CutOffDepth(first + span.first);
    for (int i = span.first; i <= last; ++i) {
        const int item = first + i;
        const bool newest = i == count - 1;
        const double next = newest ? depth : window_.CutOffDepth(item + 1);
        if (depth < MissingValue && next < MissingValue) {  // otherwise a gap
            painter.drawLine(QPoint(xs[static_cast<size_t>(i)], m.y.ToPixel(depth)),
                             QPoint(xs[static_cast<size_t>(i + 1)], m.y.ToPixel(next)));
        }
        depth = next;
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
