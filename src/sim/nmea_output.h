#pragma once
// NMEA 0183 sentences of a simulated GPS receiver and echo sounder, complete with "$", the
// checksum and no line end. Angles carry seven decimals of minutes (about 2 mm), so that fixes
// decoded from the text move the boat by the simulated distance to well under a millimetre.

#include <string>

#include "sim/geo_offset.h"
#include "sim/sim_clock.h"

namespace rm::sim {

// "ddmm.mmmmmmm" (or "dddmm.mmmmmmm" with three degree digits) and the hemisphere letter.
struct NmeaAngle {
    std::string value;
    std::string hemisphere;
};
NmeaAngle FormatNmeaLatitude(double degrees);
NmeaAngle FormatNmeaLongitude(double degrees);

// The talker of a GPS receiver's sentences unless told otherwise.
constexpr const char* kDefaultGpsTalker = "GP";

// GGA with fix quality 1, 10 satellites, HDOP 0.8 and an antenna height of 12.0 m.
std::string GgaSentence(const CivilTime& time, const GeoPoint& position, const std::string& talker = kDefaultGpsTalker);
// RMC, status "A", speed over ground in knots, course in degrees, magnetic variation 0.0 E.
std::string RmcSentence(const CivilTime& time, const GeoPoint& position, double speedMs, double courseDeg,
                        const std::string& talker = kDefaultGpsTalker);
// DPT: depth below the sounder's transducer, metres with two decimals, offset 0.0.
std::string DptSentence(double depthM);
// DBT: the same depth in feet, metres and fathoms.
std::string DbtSentence(double depthM);

}  // namespace rm::sim
