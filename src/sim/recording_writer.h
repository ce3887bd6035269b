#pragma once
// Writes a synthetic recording of the virtual river through the project's own data file
// writer: the .kvr with the instrument's records and one profile per averaging interval, and,
// when an external GPS or an echo sounder is simulated, the .pmk with the sentences each
// profile received.
//
// External GPS. Each profile receives a GGA and an RMC for the boat's position at the end of
// its interval; the .kvr's GPS block holds the fixes decoded from the GGA text at the start and
// the end of the interval, as a live recording stores them. The fix at the start of profile 1
// is the one received just before recording began.
//
// Echo sounder. Each profile receives a DPT and a DBT. The sounder sits at the transducer
// depth T and measures along its tilted axis, so that processing with Scale 1, Offset 0 and
// TransducerDepth T gets the true depth back: (D + T) cos(pitch) cos(roll) = depth.

#include <string>

#include "data/user_prompt.h"
#include "sim/crossing_plan.h"
#include "sim/river_scenario.h"
#include "sim/truth.h"

namespace rm::sim {

struct RecordingResult {
    bool ok = false;
    std::string error;  // the reason when not ok
    std::string kvrPath;
    std::string pmkPath;  // empty when no .pmk was written
    CrossingPlan plan;
    SpanTruth truth;
    LayerFlows sampled;            // the truth summed over the profiles (see truth.h)
    int profilesWithoutCells = 0;  // profiles too shallow for one counted cell
};

// Validates the scenario and writes the recording. File errors are also told through `prompt`
// with the data library's messages.
RecordingResult WriteRiverRecording(const RiverScenario& scenario, UserPrompt& prompt);

// The echo sounder's raw depth reading for a water depth and the boat's tilt.
double EchoSounderReading(double depthM, double transducerDepthM, double pitchDeg, double rollDeg);

}  // namespace rm::sim
