#pragma once
// The NMEA streams of the boat's other sensors while it crosses the virtual river, as functions
// of the seconds since the crossing began: a GPS receiver's GGA and RMC for the boat's position,
// and an echo sounder's DPT and DBT for the depth under it. Before the start the boat waits at
// the start of the span; after the last profile it stays at the end. Sentence times are whole
// seconds of the crossing's clock.

#include <string>

#include "sim/crossing_plan.h"
#include "sim/nmea_output.h"
#include "sim/river_scenario.h"

namespace rm::sim {

class BoatTrack {
public:
    // The scenario must have passed ValidateScenario.
    explicit BoatTrack(const RiverScenario& scenario);

    struct Sample {
        CivilTime time;
        EnVector position;  // local metres
        EnVector velocity;  // over ground, m/s
        double y = 0.0;     // cross-stream, from the left bank
        double pitchDeg = 0.0, rollDeg = 0.0;
    };
    Sample At(double seconds) const;
    double DurationS() const { return durationS_; }

    // "$GPGGA...\r\n$GPRMC...\r\n" for the boat at `seconds`, or with another talker than "GP".
    std::string GpsSentences(double seconds, const std::string& talker = kDefaultGpsTalker) const;
    // "$SDDPT...\r\n$SDDBT...\r\n": the sounder's reading at the transducer depth, along its
    // tilted axis, as the recordings have it.
    std::string EchoSentences(double seconds) const;

private:
    RiverScenario scenario_;
    CrossingPlan plan_;
    GeoReference geo_;
    double durationS_ = 0.0;
};

}  // namespace rm::sim
