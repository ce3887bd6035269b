#include "sim/crossing_plan.h"

#include <cmath>
#include <cstdio>

namespace rm::sim {

namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr double kHeadingPeriodS = 30.0;
constexpr double kPitchPeriodS = 6.0;
constexpr double kRollPeriodS = 4.0;

double SpanLength(const CrossingOptions& o) { return o.profiles * static_cast<double>(o.intervalS) * o.boatSpeedMs; }

double StartEdge(const VirtualRiver& river, const CrossingOptions& o) {
    return o.startEdgeM < 0.0 ? 0.5 * (river.widthM - SpanLength(o)) : o.startEdgeM;
}

int16_t Tenths(double degrees) { return static_cast<int16_t>(std::lround(degrees * 10.0)); }

std::string Format(const char* format, double a, double b) {
    char text[200];
    std::snprintf(text, sizeof text, format, a, b);
    return text;
}
}  // namespace

double AzimuthDeg(EnVector v) {
    double a = std::atan2(v.east, v.north) * 180.0 / kPi;
    if (a < 0.0) a += 360.0;
    return a >= 360.0 ? a - 360.0 : a;
}

SpanEnds SpanEndsOf(const VirtualRiver& river, const CrossingOptions& o) {
    const bool fromLeft = o.startBank == StartBank::Left;
    const double edge = StartEdge(river, o);
    SpanEnds ends;
    ends.startY = fromLeft ? edge : river.widthM - edge;
    ends.endY = ends.startY + (fromLeft ? 1.0 : -1.0) * SpanLength(o);
    return ends;
}

std::string ValidateCrossing(const VirtualRiver& river, const CrossingOptions& o) {
    if (o.profiles < 1 || o.profiles > 100000) return "the number of profiles must be 1 to 100000";
    if (o.intervalS < 1 || o.intervalS > 3600) return "the profile interval must be 1 to 3600 seconds";
    if (!std::isfinite(o.boatSpeedMs) || o.boatSpeedMs <= 0.0 || o.boatSpeedMs > 5.0)
        return "the boat speed must be above 0 and at most 5 m/s";
    if (!std::isfinite(o.crabAngleDeg) || std::fabs(o.crabAngleDeg) > 60.0)
        return "the crab angle must be within 60 degrees";
    if (!std::isfinite(o.headingWobbleDeg) || o.headingWobbleDeg < 0.0 || o.headingWobbleDeg > 45.0)
        return "the heading wobble must be 0 to 45 degrees";
    if (!std::isfinite(o.pitchDeg) || o.pitchDeg < 0.0 || o.pitchDeg > 20.0 || !std::isfinite(o.rollDeg) ||
        o.rollDeg < 0.0 || o.rollDeg > 20.0)
        return "pitch and roll must be 0 to 20 degrees";
    if (!std::isfinite(o.startEdgeM)) return "the start edge distance must be a number of metres";
    const double length = SpanLength(o);
    if (length >= river.widthM)
        return Format("the crossing of %.2f m does not fit between the banks, %.2f m apart", length, river.widthM);
    const double edge = StartEdge(river, o);
    if (edge <= 0.0 || edge + length >= river.widthM)
        return Format("with a start edge of %.2f m the crossing of %.2f m reaches a bank", edge, length);
    return {};
}

CrossingPlan PlanCrossing(const VirtualRiver& river, const CrossingOptions& o) {
    CrossingPlan plan;
    const double direction = o.startBank == StartBank::Left ? 1.0 : -1.0;
    const SpanEnds ends = SpanEndsOf(river, o);
    plan.startY = ends.startY;
    plan.endY = ends.endY;

    const EnVector across = river.TowardRightBank();
    const EnVector velocity = (direction * o.boatSpeedMs) * across;
    const double course = AzimuthDeg(velocity);
    const double dt = o.intervalS;
    auto yAt = [&](double t) { return plan.startY + direction * o.boatSpeedMs * t; };

    plan.profiles.reserve(static_cast<size_t>(o.profiles));
    for (int n = 1; n <= o.profiles; ++n) {
        ProfileState s;
        s.number = n;
        s.startS = (n - 1) * dt;
        s.endS = n * dt;
        s.midS = 0.5 * (s.startS + s.endS);
        s.startTime = AddSeconds(o.start, static_cast<int64_t>(s.startS));
        s.endTime = AddSeconds(o.start, static_cast<int64_t>(s.endS));
        s.y = yAt(s.midS);
        s.startPosition = river.PointAt(yAt(s.startS));
        s.midPosition = river.PointAt(s.y);
        s.endPosition = river.PointAt(yAt(s.endS));
        s.boatVelocity = velocity;

        double heading = course + o.crabAngleDeg + o.headingWobbleDeg * std::sin(2.0 * kPi * s.midS / kHeadingPeriodS);
        heading = std::fmod(heading, 360.0);
        if (heading < 0.0) heading += 360.0;
        int16_t h = Tenths(heading);
        s.headingTenths = h >= 3600 ? static_cast<int16_t>(h - 3600) : h;
        s.pitchTenths = Tenths(o.pitchDeg * std::sin(2.0 * kPi * s.midS / kPitchPeriodS));
        s.rollTenths = Tenths(o.rollDeg * std::sin(2.0 * kPi * s.midS / kRollPeriodS));
        plan.profiles.push_back(s);
    }
    return plan;
}

}  // namespace rm::sim
