#pragma once
// Running sums that the discharge step keeps over the profiles taken in, so that the mean boat
// vector, the cross-section area and the edges of the measurement need no pass over the ring at
// every profile. Each sum covers exactly the profiles a pass over the slots from the first profile to
// the last one taken in would visit; they are reset with the rest of the running state.

#include <vector>

namespace rm {

// The water of one profile next to a bank as the edge estimate averages it: the buffered mean
// velocity (cm/s) and the depth (m).
struct EdgeWaterEntry {
    double east = 0.0, north = 0.0, depth = 0.0;
};

// The edge water of the profiles [a, b), kept during a recomputation: the profiles do not change
// within the pass, only the mean course against which their speeds are signed.
struct EdgeWaterRun {
    int a = -1, b = -1;
    std::vector<EdgeWaterEntry> entries;
};

struct DischargeRunningSums {
    // Bottom track: the negative of the bottom-track velocity (m/s), summed over the profiles
    // where both components are present, and their number.
    double bottomEast = 0.0, bottomNorth = 0.0;
    int bottomCount = 0;
    // GPS: the last present GPS velocity times 0.1 and the number of profiles that had one.
    double gpsEast = 0.0, gpsNorth = 0.0;
    int gpsCount = 0;
    // The last profile (from 0) folded into the course sums.
    int courseProfile = -1;

    // Area: boat vector times depth (m2/s), summed over the profiles of the selected range that
    // have all three discharge parts and a mean velocity.
    double boatEastDepth = 0.0, boatNorthDepth = 0.0;
    // The last profile (from 0) folded into the area sums.
    int areaProfile = -1;

    // Edge water of the left and the right bank.
    EdgeWaterRun leftEdgeWater, rightEdgeWater;
};

}  // namespace rm
