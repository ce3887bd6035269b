#pragma once
// The boat's crossing of the virtual river: a straight path across the channel at constant
// speed, one profile per averaging interval, with the instrument's heading, pitch and roll.
//
// The path is perpendicular to the flow, from the start bank toward the other one. The span
// begins `startEdgeM` from the start bank (centred between the banks when negative) and is
// profiles x interval x speed long. Profile n (from 1) covers the seconds (n - 1) dt to n dt
// after the start; it samples the river at the middle of that interval, where the boat is then.
//
// Attitude. The bow points along the course turned by the crab angle, plus a slow sinusoidal
// swing of the heading (period 30 s); pitch and roll rock sinusoidally (periods 6 s and 4 s)
// with the given amplitudes. All three are taken at the middle of the interval and rounded to
// the tenths of a degree that the profile header holds; everything computed from them uses the
// rounded values, exactly as processing will see them.

#include <cstdint>
#include <string>
#include <vector>

#include "sim/sim_clock.h"
#include "sim/virtual_river.h"

namespace rm::sim {

enum class StartBank { Left, Right };

struct CrossingOptions {
    StartBank startBank = StartBank::Left;
    double boatSpeedMs = 0.5;
    int profiles = 100;
    int intervalS = 1;              // averaging interval, whole seconds
    double startEdgeM = -1.0;       // distance of the span's start from the start bank
    double crabAngleDeg = 0.0;      // bow turned clockwise from the course
    double headingWobbleDeg = 0.0;  // amplitude of the heading swing
    double pitchDeg = 0.0;          // amplitude of the pitch rocking
    double rollDeg = 0.0;           // amplitude of the roll rocking
    CivilTime start;                // time at the start of profile 1's interval
};

struct ProfileState {
    int number = 0;                               // from 1
    double startS = 0.0, midS = 0.0, endS = 0.0;  // seconds after the start of the crossing
    CivilTime startTime, endTime;
    double y = 0.0;                                    // cross-stream position at the middle, from the left bank
    EnVector startPosition, midPosition, endPosition;  // local metres
    EnVector boatVelocity;                             // over ground, m/s
    int16_t headingTenths = 0;                         // 0 to 3599
    int16_t pitchTenths = 0;
    int16_t rollTenths = 0;

    double HeadingDeg() const { return headingTenths * 0.1; }
    double PitchDeg() const { return pitchTenths * 0.1; }
    double RollDeg() const { return rollTenths * 0.1; }
};

struct CrossingPlan {
    double startY = 0.0, endY = 0.0;  // cross-stream ends of the span
    std::vector<ProfileState> profiles;
};

// Cross-stream positions (from the left bank) where the span begins and ends.
struct SpanEnds {
    double startY = 0.0, endY = 0.0;
};
SpanEnds SpanEndsOf(const VirtualRiver& river, const CrossingOptions& options);

// Empty when the crossing fits the river; otherwise what is wrong, in words.
std::string ValidateCrossing(const VirtualRiver& river, const CrossingOptions& options);

// The crossing's profiles. The options must have passed ValidateCrossing.
CrossingPlan PlanCrossing(const VirtualRiver& river, const CrossingOptions& options);

// Azimuth of a horizontal vector, degrees clockwise from North in [0, 360).
double AzimuthDeg(EnVector v);

}  // namespace rm::sim
