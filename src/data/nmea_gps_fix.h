#pragma once
// Positions and magnetic declination decoded from the tree of newest GPS sentences
// (see nmea_sentences.h): GGA and GXP give a fix, RMC the magnetic variation.

#include <string>

#include "data/node_tree.h"

namespace rm {

// One decoded position with its time and quality.
struct GpsFix {
    double Time = -1.0;  // UTC as the sentence gives it, hhmmss.ss; -1.0 while no fix is known
    double Latitude = 0.0;   // degrees, negative south
    double Longitude = 0.0;  // degrees, negative west
    int Satellites = 0;      // GGA only
    double Altitude = 0.0;   // GGA only
    double Hdop = 0.0;       // GGA only
};

// Which sentence gave the last fix.
enum class GpsFixSource { Gga = 0, Gxp = 1 };

// Degrees from an NMEA angle written as ddmm.mmmm (dddmm.mmmm for longitude): the whole
// degrees by integer division of the truncated number, plus its minutes over 60. The
// hemisphere must be exactly `negative` or `positive` ("S"/"N" or "W"/"E"); `negative` turns
// the sign. Returns false for any other hemisphere text.
bool NmeaAngleToDegrees(double raw, const std::string& hemisphere, const char* negative, const char* positive,
                        double& degrees);

// GGA: time, latitude, N/S, longitude, E/W, quality (not read), satellites, Hdop, altitude.
// Needs at least 10 fields. A raw latitude or longitude of 0 (an empty field reads as 0) or a
// bad hemisphere gives 0 and leaves `fix` alone; success gives 1.
int DecodeGga(const NodeRef& fields, GpsFix& fix);

// GXP: time, latitude, N/S, longitude, E/W; at least 5 fields; the rules of DecodeGga.
// Satellites, altitude and Hdop are 0.
int DecodeGxp(const NodeRef& fields, GpsFix& fix);

// The fix of a tree of newest sentences: GGA when present, otherwise GXP (a GGA that does not
// decode is not replaced by the GXP). Returns 1 and fills `fix` (and `source` when given) when
// a valid position was there; 0 for an empty or null tree.
int TakeNewestFix(const NodeRef& sentences, GpsFix& fix, GpsFixSource* source = nullptr);

// The magnetic declination from an RMC with at least 11 fields: field 9 in degrees, negated
// when field 10 is exactly "W". Returns 1 and sets `degrees`; 0 without such an RMC or when
// field 9 holds no number (the receiver does not know the variation).
int DeclinationFromSentences(const NodeRef& sentences, double& degrees);

}  // namespace rm
