#pragma once
// Latitude and longitude of local metric positions, so that the flat-earth displacement that
// processing computes between two fixes (data/gps_velocity.h) gives the local offsets back.
//
// The reference point sits at `origin` in the local frame. A position is placed by solving
// DisplacementBetween(reference, position) = position - origin, so the GPS track of processing,
// which starts at the first fix, reproduces the local track exactly when the reference is the
// boat's first position.

#include <string>

#include "sim/virtual_river.h"

namespace rm::sim {

struct GeoReference {
    double latitudeDeg = 45.0;
    double longitudeDeg = 7.0;
    EnVector origin;  // the local position of the reference point
};

struct GeoPoint {
    double latitudeDeg = 0.0;
    double longitudeDeg = 0.0;
};

// Empty when the reference is usable (latitude within 80 degrees, longitude within 180).
std::string ValidateGeoReference(const GeoReference& reference);

GeoPoint ToGeographic(const GeoReference& reference, EnVector local);

}  // namespace rm::sim
