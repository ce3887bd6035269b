#include "data/gps_velocity.h"

#include <cmath>
#include <limits>

namespace rm {

namespace {

constexpr double kRadiansPerDegree = 0.0174532925199433;
constexpr double kSecondsPerDay = 86400.0;
// Times beyond this are not NMEA times and would not survive the truncation to an integer.
constexpr double kLargestTime = 1e15;

}  // namespace

double GpsEarthRadius(double meanLatitudeDegrees) { return 6378137.0 - std::fabs(meanLatitudeDegrees) * 237.611; }

double NmeaTimeToSeconds(double hhmmss) {
    if (!std::isfinite(hhmmss) || std::fabs(hhmmss) >= kLargestTime) return std::numeric_limits<double>::quiet_NaN();
    long long whole = static_cast<long long>(hhmmss);
    long long hours = whole / 10000;
    long long minutes = (whole / 100) % 100;
    long long seconds = whole % 100;
    return static_cast<double>(hours * 3600 + minutes * 60 + seconds) + (hhmmss - static_cast<double>(whole));
}

GpsDisplacement DisplacementBetween(double lat0, double lon0, double lat1, double lon1) {
    double meanLatitude = (lat0 + lat1) * 0.5;
    double radius = GpsEarthRadius(meanLatitude);
    GpsDisplacement d;
    d.east = (lon1 - lon0) * std::cos(meanLatitude * kRadiansPerDegree) * radius * kRadiansPerDegree;
    d.north = (lat1 - lat0) * radius * kRadiansPerDegree;
    return d;
}

GpsPosition PositionFrom(double lat0, double lon0, double east, double north) {
    // The radius depends on the mean latitude, which depends on the answer: a few rounds of
    // substitution settle it (each round gains a factor of about 1e-5).
    double latitude = lat0;
    for (int round = 0; round < 4; ++round)
        latitude = lat0 + north / (GpsEarthRadius((lat0 + latitude) * 0.5) * kRadiansPerDegree);
    const double meanLatitude = (lat0 + latitude) * 0.5;
    const double perDegreeEast =
        std::cos(meanLatitude * kRadiansPerDegree) * GpsEarthRadius(meanLatitude) * kRadiansPerDegree;
    return GpsPosition{latitude, lon0 + east / perDegreeEast};
}

GpsVelocity ComputeGpsVelocity(const GpsBlock& block) {
    GpsVelocity velocity;
    double dt = NmeaTimeToSeconds(block.endTime) - NmeaTimeToSeconds(block.startTime);
    if (dt < 0.0) dt += kSecondsPerDay;
    if (!(dt >= 1.0)) return velocity;  // also a time that is not a number
    GpsDisplacement d = DisplacementBetween(block.startLatitude, block.startLongitude, block.endLatitude,
                                            block.endLongitude);
    velocity.east = static_cast<float>(std::round(d.east * 10000.0 / dt) * 0.1);
    velocity.north = static_cast<float>(std::round(d.north * 10000.0 / dt) * 0.1);
    return velocity;
}

GpsTrackPoint LostProfileTrackPoint(double firstLat, double firstLon, double endLat, double endLon,
                                    const GpsTrackPoint* previous) {
    GpsDisplacement d = DisplacementBetween(firstLat, firstLon, endLat, endLon);
    GpsTrackPoint point;
    point.East = d.east;
    point.North = d.north;
    if (previous == nullptr) {
        point.Distance = std::hypot(d.east, d.north);
    } else {
        point.Distance = previous->Distance + std::hypot(d.east - previous->East, d.north - previous->North);
    }
    return point;
}

}  // namespace rm
