#include "sim/geo_offset.h"

#include <cmath>

#include "data/gps_velocity.h"

namespace rm::sim {

namespace {
constexpr double kDegToRad = 0.0174532925199433;
}

std::string ValidateGeoReference(const GeoReference& r) {
    if (!std::isfinite(r.latitudeDeg) || std::fabs(r.latitudeDeg) > 80.0)
        return "the latitude must be within 80 degrees";
    if (!std::isfinite(r.longitudeDeg) || std::fabs(r.longitudeDeg) > 180.0)
        return "the longitude must be within 180 degrees";
    return {};
}

GeoPoint ToGeographic(const GeoReference& r, EnVector local) {
    const EnVector d = local - r.origin;
    GeoPoint p{r.latitudeDeg, r.longitudeDeg};
    // The displacement depends on the mean latitude of the two points; a few rounds of fixed
    // point iteration settle it to the last bit for offsets of kilometres.
    for (int round = 0; round < 6; ++round) {
        const double mean = 0.5 * (r.latitudeDeg + p.latitudeDeg);
        const double radius = GpsEarthRadius(mean);
        p.latitudeDeg = r.latitudeDeg + d.north / (radius * kDegToRad);
        p.longitudeDeg = r.longitudeDeg + d.east / (std::cos(mean * kDegToRad) * radius * kDegToRad);
    }
    return p;
}

}  // namespace rm::sim
