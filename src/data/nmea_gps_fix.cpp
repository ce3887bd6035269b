#include "data/nmea_gps_fix.h"

#include <cmath>

#include "data/nmea_sentences.h"

namespace rm {

namespace {

// Raw angles beyond this cannot be NMEA positions and would not survive the truncation to an
// integer; they are refused like a bad hemisphere.
constexpr double kLargestRawAngle = 1e15;

int FieldToInt(const std::string& text) {
    double value = std::trunc(NmeaFieldToDouble(text));
    if (!(value > -2147483648.0)) return 0;  // also NaN
    if (value > 2147483647.0) return 2147483647;
    return static_cast<int>(value);
}

// Time and position from fields 0 to 4, which GGA and GXP share.
bool DecodeTimeAndPosition(const NodeRef& fields, GpsFix& fix) {
    double latitudeRaw = NmeaFieldToDouble(SentenceField(fields, 1));
    double longitudeRaw = NmeaFieldToDouble(SentenceField(fields, 3));
    if (latitudeRaw == 0.0 || longitudeRaw == 0.0) return false;
    if (!NmeaAngleToDegrees(latitudeRaw, SentenceField(fields, 2), "S", "N", fix.Latitude)) return false;
    if (!NmeaAngleToDegrees(longitudeRaw, SentenceField(fields, 4), "W", "E", fix.Longitude)) return false;
    fix.Time = NmeaFieldToDouble(SentenceField(fields, 0));
    return true;
}

}  // namespace

bool NmeaAngleToDegrees(double raw, const std::string& hemisphere, const char* negative, const char* positive,
                        double& degrees) {
    bool isNegative = hemisphere == negative;
    if (!isNegative && hemisphere != positive) return false;
    if (!std::isfinite(raw) || std::fabs(raw) >= kLargestRawAngle) return false;
    long long whole = static_cast<long long>(raw);  // truncated toward zero
    double value = static_cast<double>(whole / 100) +
                   ((raw - static_cast<double>(whole)) + static_cast<double>(whole % 100)) * 0.016666666666666666;
    degrees = isNegative ? -value : value;
    return true;
}

int DecodeGga(const NodeRef& fields, GpsFix& fix) {
    if (SentenceFieldCount(fields) < 10) return 0;
    GpsFix decoded;
    if (!DecodeTimeAndPosition(fields, decoded)) return 0;
    decoded.Satellites = FieldToInt(SentenceField(fields, 6));
    decoded.Hdop = NmeaFieldToDouble(SentenceField(fields, 7));
    decoded.Altitude = NmeaFieldToDouble(SentenceField(fields, 8));
    fix = decoded;
    return 1;
}

int DecodeGxp(const NodeRef& fields, GpsFix& fix) {
    if (SentenceFieldCount(fields) < 5) return 0;
    GpsFix decoded;
    if (!DecodeTimeAndPosition(fields, decoded)) return 0;
    fix = decoded;
    return 1;
}

int TakeNewestFix(const NodeRef& sentences, GpsFix& fix, GpsFixSource* source) {
    if (sentences.ItemCount() == 0) return 0;
    NodeRef gga = FindSentence(sentences, "GGA");
    if (!gga.IsNull()) {
        if (source) *source = GpsFixSource::Gga;
        return DecodeGga(gga, fix);
    }
    NodeRef gxp = FindSentence(sentences, "GXP");
    if (!gxp.IsNull()) {
        if (source) *source = GpsFixSource::Gxp;
        return DecodeGxp(gxp, fix);
    }
    return 0;
}

int DeclinationFromSentences(const NodeRef& sentences, double& degrees) {
    NodeRef rmc = FindSentence(sentences, "RMC");
    if (SentenceFieldCount(rmc) < 11) return 0;
    double variation = 0.0;
    if (!IsNmeaNumber(SentenceField(rmc, 9), &variation)) return 0;
    degrees = SentenceField(rmc, 10) == "W" ? -variation : variation;
    return 1;
}

}  // namespace rm
