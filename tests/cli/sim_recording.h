#pragma once
// Recordings of the virtual river for the command-line tests, made by running kvr-sim.

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "cli/process_runner.h"

namespace rm::test {

struct SimRecording {
    std::string path;      // the .kvr
    nlohmann::json truth;  // what kvr-sim printed
};

// Runs `kvr-sim river --out DIR/NAME.kvr ARGS...`; throws std::runtime_error when it fails.
SimRecording RecordRiver(const TempDir& dir, const std::string& name, const std::vector<std::string>& args);

// Runs ripplemark-cli with the arguments.
ProcessResult RunCli(const std::vector<std::string>& args);

// Runs ripplemark-cli, expects exit 0 and one JSON object on stdout; throws otherwise.
nlohmann::json RunCliJson(const std::vector<std::string>& args);

}  // namespace rm::test
