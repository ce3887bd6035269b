#pragma once
// The per-profile results of processing and the small records the processing chain keeps per
// ring slot. Velocities inside processing are cm/s, the boat vector m/s (the apparent motion of
// the bed, the negative of the boat's motion), depths metres. 32767 marks a missing value.

#include <array>
#include <cstdint>

#include "data/bottom_track_block.h"  // BottomStatusCode
#include "data/profile_record.h"

namespace rm {

constexpr double MissingValue = 32767.0;
constexpr float MissingValueF = 32767.0f;

// One result record per ring slot, cleared to zero when a recomputation starts.
struct ProcessedProfile {
    float TotalQ = 0, TopQ = 0, MiddleQ = 0, BottomQ = 0;  // m3/s
    float VelocityError = 0;                               // cm/s
    float MeanEast = 0, MeanNorth = 0;                     // depth-averaged water velocity, cm/s
    float QualityIndex = 0;                                // 0..100; 100 when the profile cannot be rated
    double MeasuredEast = 0, MeasuredNorth = 0;            // mean of the measured layer, m/s
    double BoatEast = 0, BoatNorth = 0;                    // boat vector used for discharge, m/s
    double MeasuredThickness = 0;                          // m
    double BottomTrackEast = 0, BottomTrackNorth = 0;      // m/s
    double GpsEast = 0, GpsNorth = 0;                      // GPS velocity x -1, m/s
    int32_t DepthStatus = 0;                               // 0 bad, 1 good, 2 no depth source
    double Depth = 0;                                      // m
};

// The bottom-track ensemble after the coordinate step: depth per beam (m) and velocity per
// axis (m/s), both corrected for sound speed.
struct BottomTrackResult {
    uint8_t flag = 0;
    std::array<float, 4> Depth{};
    std::array<float, 4> Velocity{};
    std::array<float, 2> reserved{};
};

struct TrackPoint {
    double East = 0.0, North = 0.0, Distance = 0.0;  // m
};

// Status of the GPS of a profile: 2 good, 3 bad.
enum GpsStatusCode : uint8_t { kGpsGood = 2, kGpsBad = 3 };

// Coordinate systems and references, as the settings store them.
enum CoordinateSystemCode { kCoordBeam = 0, kCoordXyz = 1, kCoordEnu = 2 };
enum VelocityReferenceCode { kVelocityRefInstrument = 0, kVelocityRefBottomTrack = 1, kVelocityRefGps = 2 };
enum TrackReferenceCode { kTrackRefBottomTrack = 1, kTrackRefGps = 2 };

inline bool IsMissing(double v) { return v >= MissingValue; }

}  // namespace rm
