#pragma once
// The truth of a crossing as JSON: discharge, layers, edges and the span, as the river and
// instrument subcommands print it.

#include <nlohmann/json.hpp>

#include "sim/recording_writer.h"
#include "sim/river_scenario.h"

namespace rm::sim::cli {

nlohmann::json TruthJson(const RiverScenario& scenario, const RecordingResult& result);

}  // namespace rm::sim::cli
