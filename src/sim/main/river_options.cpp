#include "sim/main/river_options.h"

#include <map>

#include "sim/live_transect.h"

namespace rm::sim::cli {

namespace {

// What the devices stand for when no file is written: the scenario needs a name to validate.
constexpr const char* kLiveStandInFile = "live.kvr";

void AddRiverShape(CLI::App& sub, VirtualRiver& river) {
    sub.add_option("--width", river.widthM, "bank to bank, m")->capture_default_str();
    sub.add_option("--max-depth", river.maxDepthM, "depth in the middle, m")->capture_default_str();
    sub.add_option("--bed-shape", river.bedShapeExponent, "exponent m of depth = max (1 - |s|^m)")
        ->capture_default_str();
    sub.add_option("--max-velocity", river.maxVelocityMs, "depth-averaged speed where deepest, m/s")
        ->capture_default_str();
    sub.add_option("--velocity-exponent", river.velocityDepthExponent, "depth mean ~ depth^beta")
        ->capture_default_str();
    sub.add_option("--vertical-exponent", river.verticalExponent, "power law from the bed")->capture_default_str();
    sub.add_option("--flow-azimuth", river.flowAzimuthDeg, "where the water goes, degrees from North")
        ->capture_default_str();
}

void AddCrossing(CLI::App& sub, RiverOptionValues& values, RiverOptionUse use) {
    static const std::map<std::string, StartBank> kBanks{{"left", StartBank::Left}, {"right", StartBank::Right}};
    RiverScenario& s = values.scenario;
    if (use == RiverOptionUse::Live) {
        s.crossing.intervalS = kDeviceIntervalS;
        s.crossing.profiles = kDeviceProfiles;
    }
    sub.add_option("--profiles", s.crossing.profiles, "number of profiles")->capture_default_str();
    sub.add_option(use == RiverOptionUse::Recording ? "--interval" : "--averaging-interval", s.crossing.intervalS,
                   "averaging interval, whole seconds")
        ->capture_default_str();
    sub.add_option("--start-bank", s.crossing.startBank, "left or right")
        ->transform(CLI::CheckedTransformer(kBanks, CLI::ignore_case))
        ->default_str("left");
    sub.add_option("--boat-speed", s.crossing.boatSpeedMs, "m/s")->capture_default_str();
    sub.add_option("--start-edge", s.crossing.startEdgeM,
                   "distance of the crossing's start from the start bank, m (default: centred)");
    sub.add_option("--crab", s.crossing.crabAngleDeg, "bow turned clockwise from the course, degrees");
    sub.add_option("--heading-wobble", s.crossing.headingWobbleDeg, "amplitude of the heading swing, degrees");
    sub.add_option("--pitch", s.crossing.pitchDeg, "amplitude of the pitch rocking, degrees");
    sub.add_option("--roll", s.crossing.rollDeg, "amplitude of the roll rocking, degrees");
    sub.add_option("--start", values.start, "time of the first profile, \"YYYY-MM-DD hh:mm:ss\"");
    sub.add_option("--lat", s.latitudeDeg, "latitude of the first position, degrees")->capture_default_str();
    sub.add_option("--lon", s.longitudeDeg, "longitude of the first position, degrees")->capture_default_str();
}

void AddInstrument(CLI::App& sub, InstrumentOptions& in) {
    static const std::map<std::string, int> kCoords{{"beam", 0}, {"xyz", 1}, {"enu", 2}};
    sub.add_option("--cells", in.cells, "number of cells")->capture_default_str();
    sub.add_option("--beams", in.beams, "3 or 4")->check(CLI::IsMember({3, 4}))->capture_default_str();
    sub.add_option("--frequency-index", in.frequencyIndex, "system frequency index 0 to 6")->capture_default_str();
    sub.add_option("--cell-size-cm", in.cellSizeCm, "cell size, cm")->capture_default_str();
    sub.add_option("--blank-cm", in.blankCm, "blanking distance, cm")->capture_default_str();
    sub.add_option("--transducer-depth-cm", in.transducerDepthCm, "depth of the transducer, cm")->capture_default_str();
    sub.add_option("--coords", in.coordinateSystem, "recorded coordinates: beam, xyz or enu")
        ->transform(CLI::CheckedTransformer(kCoords, CLI::ignore_case))
        ->default_str("enu");
    sub.add_option("--bottom-track", in.bottomTrackMode, "0 off, 1 on, 2 with the shallow-water ping")
        ->check(CLI::Range(0, 2))
        ->capture_default_str();
    sub.add_flag("--pulse-coherent", in.pulseCoherent,
                 "pulse-coherent mode (PCMode): frames carry the shallow-water block");
    sub.add_option("--cpu-version", in.cpuVersion,
                   "firmware version x 10, 44 to 255; from 165 on pulse-coherent and shallow-water-ping velocities "
                   "come in tenths of mm/s")
        ->capture_default_str();
    sub.add_option("--serial", in.serialNumber, "serial number")->capture_default_str();
    sub.add_option("--temperature", in.temperatureC, "water temperature, degrees C")->capture_default_str();
    sub.add_option("--salinity", in.salinityPpt, "salinity, ppt")->capture_default_str();
}

}  // namespace

void AddRiverOptions(CLI::App& sub, RiverOptionValues& values, RiverOptionUse use) {
    RiverScenario& s = values.scenario;
    if (use == RiverOptionUse::Recording) {
        sub.add_option("--out", s.outputPath, "data file to write (*.kvr)")->required();
        sub.add_option("--name", s.deploymentName, "deployment name (at most 8 characters; default: the file's stem)");
    } else {
        sub.add_option("--name", s.deploymentName, "deployment name (at most 8 characters; default: live)");
    }
    sub.add_option("--comment", values.comments, "comment line of the setup (up to 3)")->expected(1, 3);
    AddRiverShape(sub, s.river);
    AddCrossing(sub, values, use);
    AddInstrument(sub, s.instrument);

    CLI::Option* internal = sub.add_flag("--internal-gps", values.internalGps, "GPS block from the instrument's receiver");
    if (use == RiverOptionUse::Recording) {
        sub.add_flag("--external-gps", values.externalGps, "GGA and RMC from an external receiver into the .pmk")
            ->excludes(internal);
        sub.add_flag("--echo-sounder", s.echoSounder, "DPT and DBT from an echo sounder into the .pmk");
    }
    sub.add_option("--seed", s.seed, "seed of the noise")->capture_default_str();
    sub.add_option("--noise", s.velocityNoiseCms, "standard deviation of the water velocity noise, cm/s");
    sub.add_option("--bt-noise", s.bottomTrackNoiseCms, "standard deviation of the bottom-track velocity noise, cm/s");
}

std::string FinishRiverOptions(RiverOptionValues& values, RiverOptionUse use) {
    RiverScenario& s = values.scenario;
    if (use == RiverOptionUse::Live) s.outputPath = kLiveStandInFile;
    s.gps = values.internalGps ? GpsSource::Internal : values.externalGps ? GpsSource::External : GpsSource::None;
    if (!values.start.empty() && !ParseCivilTime(values.start, s.crossing.start))
        return "--start must read \"YYYY-MM-DD hh:mm:ss\"";
    for (size_t i = 0; i < values.comments.size() && i < s.comments.size(); ++i) s.comments[i] = values.comments[i];
    return ValidateScenario(s);
}

}  // namespace rm::sim::cli
