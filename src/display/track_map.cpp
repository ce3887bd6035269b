#include "display/track_map.h"

#include <QFont>
#include <QFontMetrics>
#include <QPen>
#include <QPolygon>
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "data/gps_velocity.h"
#include "display/track_grid.h"
#include "display/track_texts.h"
#include "processing/display_units.h"
#include "processing/vector_direction.h"

namespace rm {

namespace {

constexpr int kLabelPixels = 11;      // grid and waypoint labels
constexpr int kScaleBarPixels = 12;   // the scale bar's text
constexpr int kLabelPadding = 2;
constexpr int kIconRadius = 5;
constexpr int kMostGridLines = 400;   // more lines than this at a spacing: no grid drawn

QColor Colour(uint32_t rgb) { return QColor(int((rgb >> 16) & 0xFF), int((rgb >> 8) & 0xFF), int(rgb & 0xFF)); }
QPoint ToQPoint(PixelPoint p) { return QPoint(p.x, p.y); }
PixelRect ToPixelRect(const QRect& r) { return PixelRect{r.left(), r.top(), r.width(), r.height()}; }
double LengthFactor(int unitSystem) { return IsEnglish(unitSystem) ? kFeetPerMetre : 1.0; }

QFont LabelFont() {
    QFont font(QStringLiteral("arial"));
    font.setPixelSize(kLabelPixels);
    font.setWeight(QFont::Normal);
    return font;
}

// A text on an opaque box of the background colour; `anchor` is the box's top-left corner.
void DrawBoxedText(QPainter& painter, const QRect& box, const QString& text, const TrackView& view) {
    painter.fillRect(box, Colour(view.style.background));
    painter.setPen(Colour(view.style.text));
    painter.drawText(box, Qt::AlignCenter, text);
}

QRect TextBox(const QFontMetrics& metrics, const QString& text) {
    return QRect(0, 0, metrics.horizontalAdvance(text) + 2 * kLabelPadding, metrics.height());
}

// Pixel end of the water velocity vector drawn from `from`.
PixelPoint VectorEnd(const TrackSample& s, PixelPoint from, const TrackView& view, int unitSystem) {
    // cm/s to m/s, then to ft/s in English units; then pixels per unit of velocity.
    const double k = 0.01 * LengthFactor(unitSystem) * view.vectorScale;
    return PixelPoint{from.x + static_cast<int>(std::lround(s.waterEast * k)),
                      from.y - static_cast<int>(std::lround(s.waterNorth * k))};
}

struct Pens {
    QPen track, shallow, vector;
    explicit Pens(const TrackView& view) {
        track = QPen(Colour(view.style.track), view.style.trackWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
        shallow = track;
        shallow.setColor(Colour(view.style.shallowTrack));
        vector = QPen(Colour(view.style.vector), view.style.vectorWidth, Qt::SolidLine, Qt::FlatCap);
    }
};

// Layer 3 as three batches of lines: the track in its pen, the track of shallow-water
// profiles in theirs (over it), then every vector. A track of one profile is a point. With
// `cull`, only the lines whose box meets it are kept.
struct TrackLines {
    std::vector<QLine> track, shallow, vectors;
    bool single = false;
    QPoint singlePoint;
};

bool Meets(const QLine& line, const QRect* cull) {
    if (cull == nullptr) return true;
    const QRect box = QRect(line.p1(), line.p2()).normalized().adjusted(-3, -3, 3, 3);
    return box.intersects(*cull);
}

TrackLines LinesOf(const TrackSeries& series, size_t count, const TrackMapping& m, const TrackView& view,
                   const QRect* cull) {
    TrackLines lines;
    count = std::min(count, series.samples.size());
    if (cull == nullptr) {
        lines.track.reserve(count);
        lines.vectors.reserve(count);
    }
    QPoint previous;
    for (size_t i = 0; i < count; ++i) {
        const TrackSample& s = series.samples[i];
        const PixelPoint atPixel = m.PixelOf(s.east, s.north);
        const QPoint at = ToQPoint(atPixel);
        if (i > 0) {
            const QLine line(previous, at);
            if (Meets(line, cull)) (view.drawShallowWaterPingTrack && s.shallow ? lines.shallow : lines.track).push_back(line);
        }
        if (s.HasWaterVelocity()) {
            const QLine vector(at, ToQPoint(VectorEnd(s, atPixel, view, series.unitSystem)));
            if (Meets(vector, cull)) lines.vectors.push_back(vector);
        }
        previous = at;
    }
    if (count == 1) {
        lines.single = true;
        lines.singlePoint = previous;
    }
    return lines;
}

void DrawTrackLines(QPainter& painter, const TrackLines& lines, const TrackView& view, bool firstShallow) {
    const Pens pens(view);
    if (lines.single) {
        painter.setPen(firstShallow && view.drawShallowWaterPingTrack ? pens.shallow : pens.track);
        painter.drawPoint(lines.singlePoint);
    }
    painter.setPen(pens.track);
    if (!lines.track.empty()) painter.drawLines(lines.track.data(), static_cast<int>(lines.track.size()));
    painter.setPen(pens.shallow);
    if (!lines.shallow.empty()) painter.drawLines(lines.shallow.data(), static_cast<int>(lines.shallow.size()));
    painter.setPen(pens.vector);
    if (!lines.vectors.empty()) painter.drawLines(lines.vectors.data(), static_cast<int>(lines.vectors.size()));
}

QColor WaypointColour(WaypointType type, const TrackStyle& style) {
    switch (type) {
        case WaypointType::Hazard: return Colour(style.hazard);
        case WaypointType::Marker: return Colour(style.marker);
        case WaypointType::Waypoint: break;
    }
    return Colour(style.waypoint);
}

PixelPoint WaypointPixel(const Waypoint& w, const TrackOrigin& origin, const TrackMapping& m) {
    const GpsDisplacement d = DisplacementBetween(origin.latitude, origin.longitude, w.y, w.x);
    return m.PixelOf(d.east, d.north);
}

// Layer 4.
void DrawWaypoints(QPainter& painter, const TrackMapping& m, const TrackView& view, const TrackOrigin& origin,
                   const WaypointList* waypoints) {
    if (waypoints == nullptr || waypoints->Empty() || !origin.known) return;
    std::vector<QPoint> points;
    for (const Waypoint& w : waypoints->Items()) points.push_back(ToQPoint(WaypointPixel(w, origin, m)));
    if (view.drawWayPointConnection && points.size() > 1) {
        painter.setPen(QPen(Colour(view.style.text), 1, Qt::DashLine));
        painter.drawPolyline(points.data(), static_cast<int>(points.size()));
    }
    painter.setFont(LabelFont());
    const QFontMetrics metrics(painter.font());
    for (size_t i = 0; i < points.size(); ++i) {
        const Waypoint& w = waypoints->Items()[i];
        const QPoint p = points[i];
        const QColor colour = WaypointColour(w.type, view.style);
        painter.setPen(QPen(Colour(view.style.text), 1));
        painter.setBrush(colour);
        const int r = kIconRadius;
        switch (w.type) {
            case WaypointType::Waypoint: painter.drawEllipse(p, r, r); break;
            case WaypointType::Hazard:
                painter.drawPolygon(QPolygon({QPoint(p.x(), p.y() - r - 1), QPoint(p.x() + r + 1, p.y() + r),
                                              QPoint(p.x() - r - 1, p.y() + r)}));
                break;
            case WaypointType::Marker: painter.drawRect(QRect(p.x() - r, p.y() - r, 2 * r, 2 * r)); break;
        }
        painter.setBrush(Qt::NoBrush);
        if (!w.label.empty()) {
            const QString label = QString::fromStdString(w.label);
            QRect box = TextBox(metrics, label);
            box.moveTopLeft(QPoint(p.x() + r + 3, p.y() - box.height() / 2));
            DrawBoxedText(painter, box, label, view);
        }
    }
}

struct GridLines {
    double spacing = 0.0;  // m
    std::vector<double> easts, norths;
};

GridLines GridOf(const TrackMapping& m, const TrackView& view, int unitSystem) {
    GridLines g;
    g.spacing = TrackGridSpacingMetres(m, view, unitSystem);
    if (!(g.spacing > 0.0)) return g;
    const double firstEast = std::ceil(m.WestEdge() / g.spacing), lastEast = std::floor(m.EastEdge() / g.spacing);
    const double firstNorth = std::ceil(m.SouthEdge() / g.spacing), lastNorth = std::floor(m.NorthEdge() / g.spacing);
    if (lastEast - firstEast > kMostGridLines || lastNorth - firstNorth > kMostGridLines) {
        g.spacing = 0.0;
        return g;
    }
    for (double k = firstEast; k <= lastEast; ++k) g.easts.push_back(k * g.spacing);
    for (double k = firstNorth; k <= lastNorth; ++k) g.norths.push_back(k * g.spacing);
    return g;
}

// Layer 2.
void DrawGridLines(QPainter& painter, const TrackMapping& m, const TrackView& view, const GridLines& g) {
    const PixelRect& r = m.Rect();
    painter.setPen(QPen(Colour(view.style.grid), 1));
    for (double e : g.easts) {
        const int x = m.PixelOf(e, 0.0).x;
        painter.drawLine(x, r.top, x, r.top + r.height - 1);
    }
    for (double n : g.norths) {
        const int y = m.PixelOf(0.0, n).y;
        painter.drawLine(r.left, y, r.left + r.width - 1, y);
    }
}

QString EastLabel(double east, const TrackMapping& m, const TrackOrigin& origin, double spacingDisplay,
                  int unitSystem) {
    if (origin.known) {
        const double north = (m.SouthEdge() + m.NorthEdge()) * 0.5;
        return QString::fromStdString(
            LatLonLabel(PositionFrom(origin.latitude, origin.longitude, east, north).longitude));
    }
    return QString::fromStdString(TrackAxisLabel(east * LengthFactor(unitSystem), spacingDisplay));
}

QString NorthLabel(double north, const TrackOrigin& origin, double spacingDisplay, int unitSystem) {
    if (origin.known)
        return QString::fromStdString(LatLonLabel(PositionFrom(origin.latitude, origin.longitude, 0.0, north).latitude));
    return QString::fromStdString(TrackAxisLabel(north * LengthFactor(unitSystem), spacingDisplay));
}

// Layer 5: labels under each vertical line at the bottom edge and beside each horizontal line
// at the left edge; a label that would overlap the one before or leave the rectangle is left out.
void DrawGridLabels(QPainter& painter, const TrackMapping& m, const TrackView& view, const TrackOrigin& origin,
                    const GridLines& g, int unitSystem) {
    if (!(g.spacing > 0.0)) return;
    const PixelRect& r = m.Rect();
    const QRect bounds(r.left, r.top, r.width, r.height);
    const double spacingDisplay = g.spacing * LengthFactor(unitSystem);
    painter.setFont(LabelFont());
    const QFontMetrics metrics(painter.font());
    int lastRight = r.left - 1;
    for (double e : g.easts) {
        const QString text = EastLabel(e, m, origin, spacingDisplay, unitSystem);
        QRect box = TextBox(metrics, text);
        box.moveCenter(QPoint(m.PixelOf(e, 0.0).x, 0));
        box.moveBottom(r.top + r.height - 1);
        if (box.left() <= lastRight + 4 || !bounds.contains(box)) continue;
        DrawBoxedText(painter, box, text, view);
        lastRight = box.right();
    }
    int lastTop = r.top + r.height;
    const int bottomBand = r.top + r.height - metrics.height() - 2;  // keep clear of the east labels
    for (double n : g.norths) {
        const QString text = NorthLabel(n, origin, spacingDisplay, unitSystem);
        QRect box = TextBox(metrics, text);
        box.moveCenter(QPoint(0, m.PixelOf(0.0, n).y));
        box.moveLeft(r.left);
        if (box.bottom() >= lastTop - 2 || box.bottom() >= bottomBand || !bounds.contains(box)) continue;
        DrawBoxedText(painter, box, text, view);
        lastTop = box.top();
    }
}

QString GridSpacingText(double spacingMetres, int unitSystem) {
    char text[64];
    std::snprintf(text, sizeof text, "Grid %g %s", spacingMetres * LengthFactor(unitSystem),
                  IsEnglish(unitSystem) ? "ft" : "m");
    return QString::fromLatin1(text);
}

// Layer 6, in the top right corner.
void DrawScaleBar(QPainter& painter, const TrackMapping& m, const TrackView& view, const GridLines& g,
                  int unitSystem) {
    const PixelRect& r = m.Rect();
    QFont font(QStringLiteral("Univers"));
    font.setPixelSize(kScaleBarPixels);
    const QFontMetrics metrics(font);
    const QString label = QString::fromStdString(ScaleBarText(unitSystem));
    const QString grid = g.spacing > 0.0 ? GridSpacingText(g.spacing, unitSystem) : QString();
    const int bar = std::max(1, static_cast<int>(std::lround(view.vectorScale)));
    const int pad = 4;
    const int textWidth = std::max(metrics.horizontalAdvance(label), grid.isEmpty() ? 0 : metrics.horizontalAdvance(grid));
    const int width = std::max(bar, textWidth) + 2 * pad;
    const int lines = grid.isEmpty() ? 1 : 2;
    const int height = lines * metrics.height() + 8 + 2 * pad;
    const QRect box(r.left + r.width - width - 2, r.top + 2, width, height);
    painter.fillRect(box, Colour(view.style.background));
    painter.setPen(QPen(Colour(view.style.text), 1));
    painter.drawRect(box.adjusted(0, 0, -1, -1));
    painter.setFont(font);
    const QRect textRow(box.left() + pad, box.top() + pad, box.width() - 2 * pad, metrics.height());
    painter.drawText(textRow, Qt::AlignHCenter | Qt::AlignVCenter, label);
    const int barY = textRow.bottom() + 5;
    const int barLeft = box.left() + (box.width() - bar) / 2;
    painter.setPen(QPen(Colour(view.style.vector), std::max(1, view.style.vectorWidth), Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(barLeft, barY, barLeft + bar, barY);
    painter.drawLine(barLeft, barY - 3, barLeft, barY + 3);
    painter.drawLine(barLeft + bar, barY - 3, barLeft + bar, barY + 3);
    if (!grid.isEmpty()) {
        painter.setPen(QPen(Colour(view.style.text), 1));
        painter.drawText(QRect(textRow.left(), barY + 5, textRow.width(), metrics.height()),
                         Qt::AlignHCenter | Qt::AlignVCenter, grid);
    }
}

void PrepareCommon(QPainter& painter, const QRect& rect) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    painter.setClipRect(rect);
}

// Layers 4 to 6.
void DrawOverlays(QPainter& painter, const TrackMapping& m, const TrackView& view, const TrackOrigin& origin,
                  const GridLines& g, int unitSystem, const WaypointList* waypoints) {
    DrawWaypoints(painter, m, view, origin, waypoints);
    DrawGridLabels(painter, m, view, origin, g, unitSystem);
    DrawScaleBar(painter, m, view, g, unitSystem);
}

}  // namespace

double TrackGridSpacingMetres(const TrackMapping& mapping, const TrackView& view, int unitSystem) {
    if (!view.automaticGrid) return view.gridSpacing > 0.0 ? view.gridSpacing : 0.0;
    const PixelRect& r = mapping.Rect();
    const double shorterSide = std::min(r.width, r.height) / mapping.PixelsPerMetre();
    const double L = LengthFactor(unitSystem);
    return AutomaticGridSpacing(shorterSide * L) / L;
}

TrackView HeldTrackView(const TrackMapping& mapping, const TrackView& base) {
    TrackView view = base;
    const TrackPosition centre{(mapping.WestEdge() + mapping.EastEdge()) * 0.5,
                               (mapping.SouthEdge() + mapping.NorthEdge()) * 0.5};
    view.centreEast = centre.east;
    view.centreNorth = centre.north;
    view.pixelsPerMetre = mapping.PixelsPerMetre();
    return view;
}

std::vector<TrackPosition> TrackPositions(const TrackSeries& series, const WaypointList* waypoints) {
    std::vector<TrackPosition> positions;
    positions.reserve(series.samples.size() + (waypoints != nullptr ? waypoints->Items().size() : 0));
    for (const TrackSample& s : series.samples) positions.push_back(TrackPosition{s.east, s.north});
    if (waypoints != nullptr && series.origin.known) {
        for (const Waypoint& w : waypoints->Items()) {
            const GpsDisplacement d = DisplacementBetween(series.origin.latitude, series.origin.longitude, w.y, w.x);
            positions.push_back(TrackPosition{d.east, d.north});
        }
    }
    return positions;
}

TrackMapping TrackMappingOf(const QRect& rect, const TrackView& view, const TrackSeries& series,
                            const WaypointList* waypoints) {
    if (view.pixelsPerMetre > 0.0) return MappingOf(view, {}, ToPixelRect(rect));
    return MappingOf(view, TrackPositions(series, waypoints), ToPixelRect(rect));
}

namespace {
// Every layer of the first `count` samples; with `dirty` only what meets that rectangle, and
// nothing outside it is touched.
void PaintLayers(QPainter& painter, const QRect& rect, const TrackMapping& m, const TrackView& view,
                 const TrackSeries& series, size_t count, const WaypointList* waypoints, const QRect* dirty) {
    painter.save();
    PrepareCommon(painter, dirty != nullptr ? *dirty : rect);
    painter.fillRect(dirty != nullptr ? *dirty : rect, Colour(view.style.background));
    const GridLines g = GridOf(m, view, series.unitSystem);
    DrawGridLines(painter, m, view, g);
    const bool firstShallow = !series.samples.empty() && series.samples.front().shallow;
    DrawTrackLines(painter, LinesOf(series, count, m, view, dirty), view, firstShallow);
    DrawOverlays(painter, m, view, series.origin, g, series.unitSystem, waypoints);
    painter.restore();
}
}  // namespace

void PaintTrack(QPainter& painter, const QRect& rect, const TrackView& view, const TrackSeries& series,
                const WaypointList* waypoints) {
    if (rect.isEmpty()) return;
    const TrackMapping m = TrackMappingOf(rect, view, series, waypoints);
    PaintLayers(painter, rect, m, view, series, series.samples.size(), waypoints, nullptr);
}

QRect PaintTrackSample(QPainter& painter, const QRect& rect, const TrackView& view, const TrackSeries& series,
                       size_t index, const WaypointList* waypoints) {
    if (!(view.pixelsPerMetre > 0.0) || rect.isEmpty() || index >= series.samples.size()) return QRect();
    const TrackMapping m = MappingOf(view, {}, ToPixelRect(rect));
    // The box of the new line and vector, with room for the pen.
    const TrackSample& s = series.samples[index];
    const PixelPoint at = m.PixelOf(s.east, s.north);
    QRect box(ToQPoint(at), ToQPoint(at));
    if (index > 0) {
        const TrackSample& p = series.samples[index - 1];
        box |= QRect(ToQPoint(m.PixelOf(p.east, p.north)), QSize(1, 1));
    }
    if (s.HasWaterVelocity()) box |= QRect(ToQPoint(VectorEnd(s, at, view, series.unitSystem)), QSize(1, 1));
    const int pad = std::max(view.style.trackWidth, view.style.vectorWidth) + 1;
    const QRect dirty = box.normalized().adjusted(-pad, -pad, pad, pad) & rect;
    if (dirty.isEmpty()) return QRect();
    PaintLayers(painter, rect, m, view, series, index + 1, waypoints, &dirty);
    return dirty;
}

int TrackSampleAt(const TrackSeries& series, const TrackMapping& mapping, PixelPoint pixel) {
    int best = -1;
    long bestDistance = static_cast<long>(kTrackHitRadius) * kTrackHitRadius;
    for (size_t i = 0; i < series.samples.size(); ++i) {
        const PixelPoint p = mapping.PixelOf(series.samples[i].east, series.samples[i].north);
        const long dx = p.x - pixel.x, dy = p.y - pixel.y;
        const long d = dx * dx + dy * dy;
        if (d <= bestDistance) {
            bestDistance = d;
            best = static_cast<int>(i);
        }
    }
    return best;
}

std::string TrackHoverTextAt(const TrackSeries& series, const TrackMapping& mapping, PixelPoint pixel) {
    const int index = TrackSampleAt(series, mapping, pixel);
    if (index < 0) return std::string();
    const TrackSample& s = series.samples[static_cast<size_t>(index)];
    double speed = MissingValue, direction = 0.0;
    if (s.HasWaterVelocity()) {
        speed = ToDisplayUnits(std::hypot(double(s.waterEast), double(s.waterNorth)) * 0.01, Quantity::Speed,
                               series.unitSystem);
        direction = VectorDirection(s.waterEast, s.waterNorth);
    }
    return TrackHoverText(s.profile, speed, direction, series.unitSystem);
}

int WaypointAt(const WaypointList& waypoints, const TrackOrigin& origin, const TrackMapping& mapping,
               PixelPoint pixel) {
    if (!origin.known) return -1;
    int best = -1;
    long bestDistance = static_cast<long>(kTrackHitRadius) * kTrackHitRadius;
    for (int i = 0; i < waypoints.Count(); ++i) {
        const PixelPoint p = WaypointPixel(waypoints.At(i), origin, mapping);
        const long dx = p.x - pixel.x, dy = p.y - pixel.y;
        const long d = dx * dx + dy * dy;
        if (d <= bestDistance) {
            bestDistance = d;
            best = i;
        }
    }
    return best;
}

bool GeoPositionAt(const TrackOrigin& origin, const TrackMapping& mapping, PixelPoint pixel, double& longitude,
                   double& latitude) {
    if (!origin.known) return false;
    const TrackPosition p = mapping.PositionOf(pixel);
    const GpsPosition g = PositionFrom(origin.latitude, origin.longitude, p.east, p.north);
    longitude = g.longitude;
    latitude = g.latitude;
    return true;
}

// --- the document's map ---

void TrackMap::Paint(QPainter& painter, const QRect& rect, const TrackView& view) const {
    PaintTrack(painter, rect, view, TrackSeriesOf(doc_), waypoints_);
}

QRect TrackMap::PaintNewProfile(QPainter& painter, const QRect& rect, const TrackView& view, int item) const {
    TrackSeries series = TrackSeriesOf(doc_);
    // The samples up to the new profile; it must be one of them.
    while (!series.samples.empty() && series.samples.back().profile > item) series.samples.pop_back();
    if (series.samples.empty() || series.samples.back().profile != item) return QRect();
    return PaintTrackSample(painter, rect, view, series, series.samples.size() - 1, waypoints_);
}

TrackMapping TrackMap::Mapping(const QRect& rect, const TrackView& view) const {
    return TrackMappingOf(rect, view, TrackSeriesOf(doc_), waypoints_);
}

std::string TrackMap::HoverTextAt(const QRect& rect, const TrackView& view, PixelPoint pixel) const {
    const TrackSeries series = TrackSeriesOf(doc_);
    return TrackHoverTextAt(series, TrackMappingOf(rect, view, series, waypoints_), pixel);
}

}  // namespace rm
