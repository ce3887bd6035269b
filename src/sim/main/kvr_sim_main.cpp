// kvr-sim: synthetic instruments and recordings for testing Quorle Ripplemark without hardware.
//
//   kvr-sim river --out PATH.kvr [options]   a recording of a boat crossing a virtual river of
//                                             known discharge; prints the truth as JSON
//
// Exit status: 0 done, 1 a file could not be written, 64 wrong arguments.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "data/user_prompt.h"
#include "sim/recording_writer.h"
#include "sim/river_scenario.h"

namespace {

constexpr int kExitOk = 0;
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 64;

using rm::sim::GpsSource;
using rm::sim::RiverScenario;
using rm::sim::StartBank;

nlohmann::json PartJson(const rm::sim::SectionPart& part) {
    return {{"width", part.width}, {"area", part.area}, {"discharge", part.discharge}};
}

nlohmann::json TruthJson(const RiverScenario& s, const rm::sim::RecordingResult& r) {
    const rm::sim::SpanTruth& t = r.truth;
    nlohmann::json j;
    j["file"] = r.kvrPath;
    j["pmk"] = r.pmkPath.empty() ? nlohmann::json(nullptr) : nlohmann::json(r.pmkPath);
    j["profiles"] = r.plan.profiles.size();
    j["interval"] = s.crossing.intervalS;
    j["start_bank"] = s.crossing.startBank == StartBank::Left ? "left" : "right";
    j["boat_speed"] = s.crossing.boatSpeedMs;
    j["discharge"] = t.span.discharge;
    j["top"] = t.layers.top;
    j["middle"] = t.layers.middle;
    j["bottom"] = t.layers.bottom;
    j["unmeasured"] = t.layers.unmeasured;
    j["width"] = t.span.width;
    j["area"] = t.span.area;
    j["mean_velocity"] = t.meanVelocity;
    j["span"] = {{"start_y", t.startY}, {"end_y", t.endY}, {"start_depth", t.startDepth}, {"end_depth", t.endDepth}};
    nlohmann::json left = PartJson(t.leftEdge);
    left["distance"] = t.leftEdge.width;
    nlohmann::json right = PartJson(t.rightEdge);
    right["distance"] = t.rightEdge.width;
    j["left_edge"] = left;
    j["right_edge"] = right;
    j["river"] = PartJson(t.river);
    j["sampled"] = {{"discharge", r.sampled.Total()},
                    {"top", r.sampled.top},
                    {"middle", r.sampled.middle},
                    {"bottom", r.sampled.bottom},
                    {"unmeasured", r.sampled.unmeasured}};
    j["profiles_without_cells"] = r.profilesWithoutCells;
    j["seed"] = s.seed;
    return j;
}

// The `river` subcommand: its options and its run.
class RiverCommand {
public:
    void Setup(CLI::App& sub);
    int Run();

private:
    RiverScenario s;
    bool internalGps = false, externalGps = false;
    std::string start;
    std::vector<std::string> comments;
};

void RiverCommand::Setup(CLI::App& sub) {
    static const std::map<std::string, int> kCoords{{"beam", 0}, {"xyz", 1}, {"enu", 2}};
    static const std::map<std::string, StartBank> kBanks{{"left", StartBank::Left}, {"right", StartBank::Right}};

    sub.add_option("--out", s.outputPath, "data file to write (*.kvr)")->required();
    sub.add_option("--name", s.deploymentName, "deployment name (at most 8 characters; default: the file's stem)");
    sub.add_option("--comment", comments, "comment line of the setup (up to 3)")->expected(1, 3);

    // The river.
    sub.add_option("--width", s.river.widthM, "bank to bank, m")->capture_default_str();
    sub.add_option("--max-depth", s.river.maxDepthM, "depth in the middle, m")->capture_default_str();
    sub.add_option("--bed-shape", s.river.bedShapeExponent, "exponent m of depth = max (1 - |s|^m)")
        ->capture_default_str();
    sub.add_option("--max-velocity", s.river.maxVelocityMs, "depth-averaged speed where deepest, m/s")
        ->capture_default_str();
    sub.add_option("--velocity-exponent", s.river.velocityDepthExponent, "depth mean ~ depth^beta")
        ->capture_default_str();
    sub.add_option("--vertical-exponent", s.river.verticalExponent, "power law from the bed")->capture_default_str();
    sub.add_option("--flow-azimuth", s.river.flowAzimuthDeg, "where the water goes, degrees from North")
        ->capture_default_str();

    // The crossing.
    sub.add_option("--profiles", s.crossing.profiles, "number of profiles")->capture_default_str();
    sub.add_option("--interval", s.crossing.intervalS, "averaging interval, whole seconds")->capture_default_str();
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
    sub.add_option("--start", start, "time of the first profile, \"YYYY-MM-DD hh:mm:ss\"");
    sub.add_option("--lat", s.latitudeDeg, "latitude of the first position, degrees")->capture_default_str();
    sub.add_option("--lon", s.longitudeDeg, "longitude of the first position, degrees")->capture_default_str();

    // The instrument.
    rm::sim::InstrumentOptions& in = s.instrument;
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
    sub.add_option("--cpu-version", in.cpuVersion, "firmware version x 10 (44 to 164)")->capture_default_str();
    sub.add_option("--serial", in.serialNumber, "serial number")->capture_default_str();
    sub.add_option("--temperature", in.temperatureC, "water temperature, degrees C")->capture_default_str();
    sub.add_option("--salinity", in.salinityPpt, "salinity, ppt")->capture_default_str();

    // Extra sensors and noise.
    CLI::Option* internal = sub.add_flag("--internal-gps", internalGps, "GPS block from the instrument's receiver");
    sub.add_flag("--external-gps", externalGps, "GGA and RMC from an external receiver into the .pmk")
        ->excludes(internal);
    sub.add_flag("--echo-sounder", s.echoSounder, "DPT and DBT from an echo sounder into the .pmk");
    sub.add_option("--seed", s.seed, "seed of the noise")->capture_default_str();
    sub.add_option("--noise", s.velocityNoiseCms, "standard deviation of the water velocity noise, cm/s");
    sub.add_option("--bt-noise", s.bottomTrackNoiseCms, "standard deviation of the bottom-track velocity noise, cm/s");
}

int RiverCommand::Run() {
    s.gps = internalGps ? GpsSource::Internal : externalGps ? GpsSource::External : GpsSource::None;
    if (!start.empty() && !rm::sim::ParseCivilTime(start, s.crossing.start)) {
        std::fprintf(stderr, "kvr-sim river: --start must read \"YYYY-MM-DD hh:mm:ss\"\n");
        return kExitUsage;
    }
    for (size_t i = 0; i < comments.size() && i < s.comments.size(); ++i) s.comments[i] = comments[i];
    const std::string problem = rm::sim::ValidateScenario(s);
    if (!problem.empty()) {
        std::fprintf(stderr, "kvr-sim river: %s\n", problem.c_str());
        return kExitUsage;
    }
    rm::StderrPrompt prompt(true);
    const rm::sim::RecordingResult result = rm::sim::WriteRiverRecording(s, prompt);
    if (!result.ok) {
        std::fprintf(stderr, "kvr-sim river: %s\n", result.error.c_str());
        return kExitFailure;
    }
    std::printf("%s\n", TruthJson(s, result).dump(2).c_str());
    return kExitOk;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"kvr-sim: synthetic instruments and recordings for Quorle Ripplemark", "kvr-sim"};
    app.require_subcommand(1);
    std::map<CLI::App*, std::function<int()>> runners;
    RiverCommand river;
    CLI::App* riverCommand = app.add_subcommand("river", "record a boat crossing a virtual river; prints the truth");
    river.Setup(*riverCommand);
    runners[riverCommand] = [&river] { return river.Run(); };
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e) == 0 ? kExitOk : kExitUsage;
    } catch (const CLI::ParseError& e) {
        app.exit(e);
        return kExitUsage;
    }
    try {
        for (auto& [sub, run] : runners) {
            if (sub->parsed()) return run();
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "kvr-sim: %s\n", e.what());
        return kExitFailure;
    }
    return kExitUsage;
}
