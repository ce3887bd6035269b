#pragma once
// What the processing chain reads and writes of a data set, and nothing more: the instrument's
// records and ring of raw profiles (CKvrData), the per-slot results, the running state of a pass,
// a snapshot of the settings, the measurement record and the working values of the profile
// under computation. The document composes these; processing never sees the document itself.

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

#include "data/kvr_data.h"
#include "processing/discharge_running_sums.h"
#include "processing/processing_settings.h"
#include "processing/processing_types.h"

namespace rm {

class CDischargeData;

// Results kept per ring slot. Slot of profile n (from 1) = (n - 1) modulo the ring size.
struct SlotResults {
    BottomTrackResult bottomTrack;
    uint8_t bottomStatus = 0;
    TrackPoint bottomTrackPoint;
    GpsBlock gps;              // the block used for this profile (internal, or built from the .pmk)
    bool gpsPresent = false;   // this slot has a GPS block
    float gpsEast = MissingValueF, gpsNorth = MissingValueF;  // GPS velocity, mm/s
    uint8_t gpsStatus = 0;
    TrackPoint gpsTrackPoint;
    float meanDepth = MissingValueF;
    float minDepth = MissingValueF;
    float echoDepth = MissingValueF;  // m
    uint8_t echoStatus = 0;           // 2 good, 3 bad
    int8_t shallowWaterFlag = 0;
    int waterCells = 0;
    int shallowCells = 0;
    ProcessedProfile processed;
    bool readOk = true;               // false when the profile could not be read
};

// Running state of a pass over the data, reset when a file is (re)read from its start.
struct RunningState {
    int count = 0;   // profiles taken in so far
    int ring = 0;    // slots in the window
    int phase = 0;   // 2 live measurement, 3 recomputation
    bool live = false;
    bool echoDepthSeen = false;  // at least one echo depth was delivered in this data set
    // Transport state of the document (0 stopped, 1 playing or ready, 2 recording, 3 paused).
    // From 3 on the bottom-track step marks every ensemble bad.
    int measurementState = 0;
    TrackPoint bottomTrackOrigin;
    TrackPoint gpsTrackOrigin;
    double gpsOriginLatitude = MissingValue, gpsOriginLongitude = MissingValue;
    // Distance step values for the panels.
    double gpsTrackLength = 0.0, gpsMadeGood = 0.0;
    double bottomTrackLength = 0.0, bottomMadeGood = 0.0;
    // CTD extremes over the range.
    float ctdMinTemperature = 99999.9f, ctdMaxTemperature = -99999.9f;
    float ctdMinSalinity = 99999.9f, ctdMaxSalinity = -99999.9f;
    // Course and area sums of the discharge step.
    DischargeRunningSums dischargeSums;
};

// Working values of the profile under computation, kept until the next profile for the panels
// and the profile display.
constexpr int kLayerCount = 148;
constexpr int kFitLayers = 10;
struct Vector2 {
    double East = MissingValue, North = MissingValue;
    bool Valid() const { return East < MissingValue && North < MissingValue; }
};
struct ProfileWorkingValues {
    int WaterCells = 0;
    int ShallowCells = 0;
    float Depth = 0.0f;
    double TopEdge = MissingValue, BottomEdge = MissingValue;  // D1, D2 above the bed
    double FirstCellDepth = MissingValue, LastCellDepth = MissingValue;
    Vector2 TopRangeMean, BottomRangeMean, MeasuredMean, TopMean, BottomMean, GapVelocity;
    double TopRatio = MissingValue, BottomRatio = MissingValue;
    std::array<float, kLayerCount> LayerDepth{}, LayerQ{}, CellQ{};
    std::array<float, kFitLayers> TopLayerEast{}, TopLayerNorth{}, BottomLayerEast{}, BottomLayerNorth{};
    double ShallowCellQ = MissingValue, GapQ = MissingValue;
    int displayState = 0;
    // The boat's course (degrees) and distance (m) over this profile's interval.
    double ProfileCourse = 0.0, ProfileDistance = 0.0;
};

// Velocity of one profile per axis (or beam) and cell, cm/s; up to 4 rows, 128 cells.
constexpr int kMaxRows = 4;
constexpr int kMaxCells = 128;
using VelocityArrays = std::array<std::array<float, kMaxCells>, kMaxRows>;

struct ProcessingContext {
    CKvrData& data;                 // records, derived values, raw profiles: data.Slot(slot)
    std::vector<SlotResults>& slots;
    RunningState& state;
    const ProcessingSettings& settings;
    CDischargeData& discharge;
    ProfileWorkingValues& working;

    int SlotOfProfile(int profileNumber) const {
        const int ring = state.ring > 0 ? state.ring : 1;
        return ((profileNumber - 1) % ring + ring) % ring;
    }
    const ProfileRecord& Raw(int slot) const { return data.Slot(slot); }
};

}  // namespace rm
