#include "display/track_view.h"

#include <algorithm>
#include <cmath>

namespace rm {

namespace {
constexpr double kMarginShare = 0.1;
constexpr double kSmallestSpan = 10.0;  // m
}  // namespace

TrackMapping::TrackMapping(const PixelRect& rect, double centreEast, double centreNorth, double pixelsPerMetre)
    : rect_(rect), centreEast_(centreEast), centreNorth_(centreNorth), scale_(pixelsPerMetre) {}

PixelPoint TrackMapping::PixelOf(double east, double north) const {
    const double x = rect_.left + rect_.width * 0.5 + (east - centreEast_) * scale_;
    const double y = rect_.top + rect_.height * 0.5 - (north - centreNorth_) * scale_;
    // Far points are held to a range that the painter's integer coordinates can take.
    constexpr double kFar = 1.0e7;
    return PixelPoint{static_cast<int>(std::floor(std::clamp(x, -kFar, kFar))),
                      static_cast<int>(std::floor(std::clamp(y, -kFar, kFar)))};
}

TrackPosition TrackMapping::PositionOf(PixelPoint pixel) const {
    return TrackPosition{centreEast_ + (pixel.x + 0.5 - rect_.left - rect_.width * 0.5) / scale_,
                         centreNorth_ - (pixel.y + 0.5 - rect_.top - rect_.height * 0.5) / scale_};
}

double TrackMapping::WestEdge() const { return centreEast_ - rect_.width * 0.5 / scale_; }
double TrackMapping::EastEdge() const { return centreEast_ + rect_.width * 0.5 / scale_; }
double TrackMapping::SouthEdge() const { return centreNorth_ - rect_.height * 0.5 / scale_; }
double TrackMapping::NorthEdge() const { return centreNorth_ + rect_.height * 0.5 / scale_; }

TrackView FittedTrackView(const std::vector<TrackPosition>& positions, const PixelRect& rect, const TrackView& base) {
    TrackView view = base;
    double west = 0.0, east = 0.0, south = 0.0, north = 0.0;
    bool any = false;
    for (const TrackPosition& p : positions) {
        if (!std::isfinite(p.east) || !std::isfinite(p.north)) continue;
        if (!any) {
            west = east = p.east;
            south = north = p.north;
            any = true;
        }
        west = std::min(west, p.east);
        east = std::max(east, p.east);
        south = std::min(south, p.north);
        north = std::max(north, p.north);
    }
    view.centreEast = (west + east) * 0.5;
    view.centreNorth = (south + north) * 0.5;
    const double usableWidth = std::max(1.0, rect.width * (1.0 - 2.0 * kMarginShare));
    const double usableHeight = std::max(1.0, rect.height * (1.0 - 2.0 * kMarginShare));
    const double spanEast = std::max(east - west, kSmallestSpan);
    const double spanNorth = std::max(north - south, kSmallestSpan);
    view.pixelsPerMetre = std::min(usableWidth / spanEast, usableHeight / spanNorth);
    return view;
}

TrackMapping MappingOf(const TrackView& view, const std::vector<TrackPosition>& positions, const PixelRect& rect) {
    const TrackView shown = view.pixelsPerMetre > 0.0 ? view : FittedTrackView(positions, rect, view);
    return TrackMapping(rect, shown.centreEast, shown.centreNorth, shown.pixelsPerMetre);
}

}  // namespace rm
