#pragma once
// The options that describe the virtual river, the crossing and the instrument, shared by the
// subcommands that make a recording and those that play a device on a pseudo-terminal.

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "sim/river_scenario.h"

namespace rm::sim::cli {

struct RiverOptionValues {
    RiverScenario scenario;
    bool internalGps = false;
    bool externalGps = false;
    std::string start;
    std::vector<std::string> comments;
};

enum class RiverOptionUse {
    Recording,  // a .kvr file: --out, whole-second --interval, both GPS sources and the echo sounder
    Live,       // a device: no file, --averaging-interval, only the internal GPS
};

void AddRiverOptions(CLI::App& sub, RiverOptionValues& values, RiverOptionUse use);

// Completes the scenario from the parsed values and validates it: empty, or the problem.
std::string FinishRiverOptions(RiverOptionValues& values, RiverOptionUse use);

}  // namespace rm::sim::cli
