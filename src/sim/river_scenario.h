#pragma once
// Everything one synthetic recording of the virtual river is made from: the river, the
// crossing, the instrument's setup, the extra sensors, the noise and the output file. The
// defaults make a usable recording: a 60 m wide, 4 m deep river flowing north at up to 1 m/s,
// crossed from the left bank at 0.5 m/s in 100 profiles of 1 s by a four-beam 1500 kHz head
// recording ENU velocities in 20 cells of 25 cm with bottom track on.

#include <array>
#include <cstdint>
#include <string>

#include "data/instrument_records.h"
#include "sim/crossing_plan.h"
#include "sim/transect.h"
#include "sim/truth.h"
#include "sim/virtual_river.h"

namespace rm::sim {

struct InstrumentOptions {
    int frequencyIndex = 1;  // KvrType 0 to 6
    int beams = 4;           // 3 or 4
    int cells = 20;
    int cellSizeCm = 25;
    int blankCm = 25;
    int transducerDepthCm = 20;
    int coordinateSystem = 2;  // 0 beam, 1 XYZ, 2 ENU
    int bottomTrackMode = 1;   // 0, 1 or 2
    bool pulseCoherent = false;  // PCMode: frames carry the shallow-water block
    // CPUSoftwareVerNum, ten times the firmware version. From 165 on an instrument in
    // pulse-coherent or shallow-water-ping mode records velocities in tenths of mm/s.
    int cpuVersion = 100;
    std::string serialNumber = "SIM0001";
    double temperatureC = 15.0;
    double salinityPpt = 0.0;
};

struct RiverScenario {
    VirtualRiver river;
    CrossingOptions crossing;
    InstrumentOptions instrument;
    GpsSource gps = GpsSource::None;
    bool echoSounder = false;
    double latitudeDeg = 45.0;  // position of the boat at the start of the crossing
    double longitudeDeg = 7.0;
    double velocityNoiseCms = 0.0;
    double bottomTrackNoiseCms = 0.0;
    uint64_t seed = 1;
    std::string outputPath;               // the .kvr to write
    std::string deploymentName;           // empty: the output file's stem, cut to 8 characters
    std::array<std::string, 3> comments;  // all empty: filled with a description
};

constexpr double kBeamSlantDeg = 20.0;
constexpr int kMaxRecordBytes = 2048;  // what one read of a reader takes in

// Empty when the scenario can be recorded; otherwise the first problem, in words.
std::string ValidateScenario(const RiverScenario& scenario);

// The deployment name that the recording will carry.
std::string DeploymentNameOf(const RiverScenario& scenario);

// The cell layout of the instrument options, with the processing's default discard of 10 %.
CellLayout CellLayoutOf(const InstrumentOptions& instrument);

// The instrument's three records for the scenario, as an instrument would have sent them.
struct InstrumentRecords {
    InstrumentConf conf;
    OperationRecord oper;
    UserSetup user;
};
InstrumentRecords BuildInstrumentRecords(const RiverScenario& scenario);

// In pulse-coherent mode without the shallow-water ping the user setup keeps its averaging and
// profile intervals in tenths of a second.
bool IntervalsInTenths(const UserSetup& user);

// The beam-to-XYZ matrix as processing derives it from the records.
SmallMatrix BeamToXyzOf(const InstrumentRecords& records);

// The ambiguity velocity (mm/s) of the simulated instrument's pulse-coherent pings. Where the
// water is too shallow for the reference range of the shallow-water block, a reader can only
// unwrap by walking up from zero, so it exceeds every velocity of such profiles of the
// crossing; elsewhere velocities may wrap. At least 500 mm/s.
int AmbiguityVelocityMm(const RiverScenario& scenario);

// What the profile generator needs of the scenario, with the plan's first position as the
// geographic origin, for the records the scenario builds or the given ones.
TransectSettings TransectSettingsOf(const RiverScenario& scenario, const CrossingPlan& plan);
TransectSettings TransectSettingsOf(const RiverScenario& scenario, const CrossingPlan& plan,
                                    const InstrumentRecords& records);

}  // namespace rm::sim
