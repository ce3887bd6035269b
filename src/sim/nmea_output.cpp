#include "sim/nmea_output.h"

#include <cmath>
#include <cstdio>

#include "data/nmea_sentences.h"

namespace rm::sim {

namespace {
constexpr long long kMinuteSteps = 10000000;  // seven decimals of a minute
constexpr double kKnotsPerMs = 3600.0 / 1852.0;
constexpr double kFeetPerMetre = 1.0 / 0.3048;
constexpr double kFathomsPerMetre = 1.0 / 1.8288;

NmeaAngle FormatAngle(double degrees, int degreeDigits, const char* positive, const char* negative) {
    const long long steps = std::llround(std::fabs(degrees) * 60.0 * kMinuteSteps);
    const long long whole = steps / (60 * kMinuteSteps);
    const long long rest = steps % (60 * kMinuteSteps);
    char text[40];
    std::snprintf(text, sizeof text, "%0*lld%02lld.%07lld", degreeDigits, whole, rest / kMinuteSteps,
                  rest % kMinuteSteps);
    return {text, degrees < 0.0 ? negative : positive};
}

std::string TimeField(const CivilTime& t) {
    char text[16];
    std::snprintf(text, sizeof text, "%02d%02d%02d.00", t.hour, t.minute, t.second);
    return text;
}
}  // namespace

NmeaAngle FormatNmeaLatitude(double degrees) { return FormatAngle(degrees, 2, "N", "S"); }
NmeaAngle FormatNmeaLongitude(double degrees) { return FormatAngle(degrees, 3, "E", "W"); }

std::string GgaSentence(const CivilTime& time, const GeoPoint& position, const std::string& talker) {
    const NmeaAngle lat = FormatNmeaLatitude(position.latitudeDeg);
    const NmeaAngle lon = FormatNmeaLongitude(position.longitudeDeg);
    return FormatNmeaSentence(talker + "GGA," + TimeField(time) + "," + lat.value + "," + lat.hemisphere + "," + lon.value +
                              "," + lon.hemisphere + ",1,10,0.8,12.0,M,47.0,M,,");
}

std::string RmcSentence(const CivilTime& time, const GeoPoint& position, double speedMs, double courseDeg,
                        const std::string& talker) {
    const NmeaAngle lat = FormatNmeaLatitude(position.latitudeDeg);
    const NmeaAngle lon = FormatNmeaLongitude(position.longitudeDeg);
    char tail[80];
    std::snprintf(tail, sizeof tail, ",%.2f,%.1f,%02d%02d%02d,0.0,E", speedMs * kKnotsPerMs, courseDeg, time.day,
                  time.month, time.year % 100);
    return FormatNmeaSentence(talker + "RMC," + TimeField(time) + ",A," + lat.value + "," + lat.hemisphere + "," + lon.value +
                              "," + lon.hemisphere + tail);
}

std::string DptSentence(double depthM) {
    char body[48];
    std::snprintf(body, sizeof body, "SDDPT,%.2f,0.0", depthM);
    return FormatNmeaSentence(body);
}

std::string DbtSentence(double depthM) {
    char body[80];
    std::snprintf(body, sizeof body, "SDDBT,%.1f,f,%.2f,M,%.1f,F", depthM * kFeetPerMetre, depthM,
                  depthM * kFathomsPerMetre);
    return FormatNmeaSentence(body);
}

}  // namespace rm::sim
