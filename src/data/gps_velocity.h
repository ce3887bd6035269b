#pragma once
// The boat's velocity over ground from the two GPS fixes of one profile, and the track point
// of a fix relative to the first fix of the track. Both use a flat earth around the mean
// latitude with the radius 6378137.0 - |mean latitude| x 237.611 metres. The live link and the
// processing of recorded files call these same functions.

#include "data/profile_record.h"

namespace rm {

// Marks a velocity that could not be computed.
constexpr float kGpsNoVelocity = 32767.0f;

// Boat velocity in mm/s to a tenth, east and north.
struct GpsVelocity {
    float east = kGpsNoVelocity;
    float north = kGpsNoVelocity;
    bool IsValid() const { return east != kGpsNoVelocity && north != kGpsNoVelocity; }
};

// Metres east and north from one position to another.
struct GpsDisplacement {
    double east = 0.0;
    double north = 0.0;
};

// A point of the GPS track in metres from the track's first fix, with the distance travelled.
struct GpsTrackPoint {
    double East = 0.0;
    double North = 0.0;
    double Distance = 0.0;
};

// Earth radius in metres used at a mean latitude given in degrees.
double GpsEarthRadius(double meanLatitudeDegrees);

// Seconds of the day from an NMEA time hhmmss.ss: hours x 3600 + minutes x 60 + seconds plus
// the fraction. A time that is not a finite number gives NaN.
double NmeaTimeToSeconds(double hhmmss);

// Displacement from (lat0, lon0) to (lat1, lon1), degrees, around their mean latitude.
GpsDisplacement DisplacementBetween(double lat0, double lon0, double lat1, double lon1);

// The position (latitude, longitude, degrees) that lies `east` and `north` metres from
// (lat0, lon0): the inverse of DisplacementBetween, so that DisplacementBetween(lat0, lon0, the
// result) gives back east and north to well below a millimetre over a river's width.
struct GpsPosition {
    double latitude = 0.0;
    double longitude = 0.0;
};
GpsPosition PositionFrom(double lat0, double lon0, double east, double north);

// Velocity over the profile's GPS block: displacement from the start fix to the end fix over
// the time between them (a negative time step means midnight passed and gains 86400 s). Under
// one second, both components are kGpsNoVelocity. Otherwise each is d x 10000 / dt rounded
// half away from zero, times 0.1, as float.
GpsVelocity ComputeGpsVelocity(const GpsBlock& block);

// The track point of the fix (endLat, endLon) against the track's first fix. Its distance is
// the straight distance for the first point (`previous` null), else the previous distance plus
// the step from the previous point. Used for a profile that was lost in transmission.
GpsTrackPoint LostProfileTrackPoint(double firstLat, double firstLon, double endLat, double endLon,
                                    const GpsTrackPoint* previous);

}  // namespace rm
