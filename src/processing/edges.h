#pragma once
// The discharge between the outermost profile and a bank: the user's own estimate, or an
// estimate from the mean depth and the mean water speed of a few profiles near the bank, the
// distance to the bank and a bank shape (vertical or sloped). Water speeds are signed by
// their direction against the measurement's mean course, so water moving against the main
// flow counts negative.

#include <vector>

#include "processing/processing_context.h"

namespace rm {

constexpr int kBankMethodUserInput = 0;
constexpr int kBankMethodVertical = 1;
constexpr int kBankMethodSloped = 2;
constexpr int kSideLeft = 0;
constexpr int kSideRight = 1;

struct EdgeRequest {
    int startBank = 0;       // 1 when the transect starts at the right bank
    int side = kSideLeft;    // which edge area of the record receives the area
    int method = kBankMethodSloped;
    int firstIndex = 0;      // first profile (from 0) of those averaged
    int numProfiles = 1;
    double distance = 0.0;     // to the bank, m
    double coefficient = 0.0;  // edge coefficient of the sloped bank
    double userEstimate = 0.0; // m3/s
    double courseEast = 0.0, courseNorth = 0.0;  // mean boat vector of the measurement
};

// The edge discharge in m3/s; stores the edge area of `side` in the record (not for a user
// estimate, which is returned as entered, sign included).
double ComputeEdge(ProcessingContext& ctx, const EdgeRequest& request);

// The water of the profiles [a, b) that have a depth and a water velocity, in their order; the
// velocity of each is buffered from profile to profile (see edges.cpp).
std::vector<EdgeWaterEntry> CollectEdgeWater(ProcessingContext& ctx, int a, int b);

// The mean depth (m) and mean water speed (m/s) of the entries, each speed signed by its
// direction against the course bearing (degrees): negative for water more than 180 degrees
// clockwise of the course.
struct EdgeWater {
    double depth = 0.0;
    double speed = 0.0;
    int profiles = 0;
};
EdgeWater MeanEdgeWater(const std::vector<EdgeWaterEntry>& entries, double courseDirection);

}  // namespace rm
