#pragma once
// The view state of the track map and its mapping from track coordinates to pixels.
//
// The map is a plan view with the same scale on both axes: north up, east to the right. A view
// is its centre in track coordinates (metres from the track's origin) and its scale in pixels
// per metre; a scale of zero asks the map to fit the whole track (and the waypoints) into the
// rectangle. Pixel x of east e is floor(left + width / 2 + (e - centreEast) * scale), pixel y
// of north n is floor(top + height / 2 - (n - centreNorth) * scale).

#include <cstdint>
#include <vector>

namespace rm {

// Colours as 0xRRGGBB, pen widths in pixels.
struct TrackStyle {
    uint32_t background = 0xFFFFFF;
    uint32_t grid = 0xC8C8C8;
    uint32_t text = 0x000000;
    uint32_t track = 0x0000A0;         // "Boat Track"
    uint32_t shallowTrack = 0xE07800;  // profiles that used the shallow-water ping
    uint32_t vector = 0xC00000;        // depth-averaged water velocity
    uint32_t waypoint = 0x008000, hazard = 0xE00000, marker = 0xA000A0;
    int trackWidth = 2;
    int vectorWidth = 1;
};

struct TrackView {
    double centreEast = 0.0, centreNorth = 0.0;  // m
    double pixelsPerMetre = 0.0;                 // 0: fit
    double vectorScale = 50.0;                   // "MapVectorScale": pixels per m/s (ft/s in English)
    bool automaticGrid = true;                   // "AutomaticGridSpacing"
    double gridSpacing = 10.0;                   // "MapGridSpacing", metres, when not automatic
    bool drawShallowWaterPingTrack = true;       // "DrawShallowWaterPingTrack"
    bool drawWayPointConnection = true;          // "DrawWayPointConnection"
    TrackStyle style;
};

struct PixelPoint {
    int x = 0, y = 0;
    bool operator==(const PixelPoint& o) const { return x == o.x && y == o.y; }
};

struct PixelRect {
    int left = 0, top = 0, width = 0, height = 0;
    bool Contains(PixelPoint p) const { return p.x >= left && p.x < left + width && p.y >= top && p.y < top + height; }
};

struct TrackPosition {
    double east = 0.0, north = 0.0;  // m
};

class TrackMapping {
public:
    TrackMapping(const PixelRect& rect, double centreEast, double centreNorth, double pixelsPerMetre);
    PixelPoint PixelOf(double east, double north) const;
    // The track coordinates at the centre of a pixel.
    TrackPosition PositionOf(PixelPoint pixel) const;
    const PixelRect& Rect() const { return rect_; }
    double PixelsPerMetre() const { return scale_; }
    // The track coordinates of the rectangle's edges.
    double WestEdge() const;
    double EastEdge() const;
    double SouthEdge() const;
    double NorthEdge() const;

private:
    PixelRect rect_;
    double centreEast_, centreNorth_, scale_;
};

// The view that shows every position of `positions` with a margin of a tenth of the rectangle
// on each side, at the same scale on both axes; a span under 10 m is shown as 10 m. The other
// fields are those of `base`.
TrackView FittedTrackView(const std::vector<TrackPosition>& positions, const PixelRect& rect, const TrackView& base);

// The mapping of a view; a view that asks to fit gets the fit of `positions`.
TrackMapping MappingOf(const TrackView& view, const std::vector<TrackPosition>& positions, const PixelRect& rect);

}  // namespace rm
