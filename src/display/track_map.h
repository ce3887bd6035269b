#pragma once
// The track map: the plan view of a transect drawn with a QPainter into a rectangle of any
// paint device. Layers, bottom to top:
//   1. background;
//   2. grid lines at the spacing of the view (automatic: the round spacing of the shorter
//      visible side, in display length units);
//   3. per profile in order: the line from the previous position in the track pen (the
//      shallow-water pen for a profile that used the shallow-water ping, when the view asks for
//      it), then the vector of the depth-averaged water velocity from the position, of
//      speed x vector scale pixels (speed in m/s, or ft/s in English units);
//   4. waypoints: the connection line in order, the icon of each type and its label (only when
//      the track has a GPS origin, since waypoints are positions in degrees);
//   5. the grid labels along the bottom and left edges: longitude and latitude when the track
//      has a GPS origin, else track coordinates in display units;
//   6. the scale bar: "1.0 m/s" or "1.0 ft/s" in "Univers" over a bar as long as one unit of
//      velocity at the vector scale, and the grid spacing.
// Layer 3 is drawn in three batches (the track, the shallow-water track over it, the vectors over
// both), which is what keeps a track of 10 000 profiles within a few milliseconds. A new profile
// is added by repainting, clipped to the box of its line and vector, every layer of what meets
// that box: the picture is then the one a whole redraw gives.

#include <QPainter>
#include <QRect>
#include <string>

#include "data/waypoints.h"
#include "display/track_series.h"
#include "display/track_view.h"

namespace rm {

// The whole picture of `series` with `waypoints` (may be null).
void PaintTrack(QPainter& painter, const QRect& rect, const TrackView& view, const TrackSeries& series,
                const WaypointList* waypoints);
// Adds the sample at `index` of `series` to a picture that PaintTrack made of the samples
// before it, with the same view, rectangle and waypoints; returns the rectangle repainted. An
// empty rectangle, with nothing drawn, when the view fits the track (scale 0: the fit moves with
// every profile, so the caller redraws), the index is out of range, or the new profile lies
// wholly outside the rectangle (the caller moves the view and redraws).
QRect PaintTrackSample(QPainter& painter, const QRect& rect, const TrackView& view, const TrackSeries& series,
                      size_t index, const WaypointList* waypoints);

// The positions a fitting view shows: every sample, and the waypoints when the origin is known.
std::vector<TrackPosition> TrackPositions(const TrackSeries& series, const WaypointList* waypoints);
// The mapping that PaintTrack uses.
TrackMapping TrackMappingOf(const QRect& rect, const TrackView& view, const TrackSeries& series,
                            const WaypointList* waypoints);
// A view that keeps showing what `mapping` shows (its centre and scale), with the other fields
// of `base`: a fitted picture held while new profiles are drawn over it.
TrackView HeldTrackView(const TrackMapping& mapping, const TrackView& base);
// The grid spacing that PaintTrack uses, in metres (0: no grid).
double TrackGridSpacingMetres(const TrackMapping& mapping, const TrackView& view, int unitSystem);

// What lies under a pixel. The hit radius is kTrackHitRadius pixels.
constexpr int kTrackHitRadius = 6;
// The index of the sample nearest to `pixel` within the radius, -1 when none (the later one of
// two at the same distance).
int TrackSampleAt(const TrackSeries& series, const TrackMapping& mapping, PixelPoint pixel);
// The hover text of the sample under `pixel` (TrackHoverText), empty when there is none.
std::string TrackHoverTextAt(const TrackSeries& series, const TrackMapping& mapping, PixelPoint pixel);
// The index of the waypoint under `pixel`, -1 when none or when the origin is not known.
int WaypointAt(const WaypointList& waypoints, const TrackOrigin& origin, const TrackMapping& mapping,
               PixelPoint pixel);
// The position in degrees under a pixel (for a waypoint added by a click); false without origin.
bool GeoPositionAt(const TrackOrigin& origin, const TrackMapping& mapping, PixelPoint pixel, double& longitude,
                   double& latitude);

// The map of a document: reads the window at every call.
class TrackMap {
public:
    explicit TrackMap(const CSurveyKVRDoc& doc, const WaypointList* waypoints = nullptr)
        : doc_(doc), waypoints_(waypoints) {}
    void Paint(QPainter& painter, const QRect& rect, const TrackView& view) const;
    // Profile `item`, just taken into the window, over the picture of the profiles before it
    // (PaintTrackSample).
    QRect PaintNewProfile(QPainter& painter, const QRect& rect, const TrackView& view, int item) const;
    TrackMapping Mapping(const QRect& rect, const TrackView& view) const;
    std::string HoverTextAt(const QRect& rect, const TrackView& view, PixelPoint pixel) const;

private:
    const CSurveyKVRDoc& doc_;
    const WaypointList* waypoints_;
};

}  // namespace rm
