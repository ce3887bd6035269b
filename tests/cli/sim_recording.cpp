#include "cli/sim_recording.h"

#include <stdexcept>

namespace rm::test {

SimRecording RecordRiver(const TempDir& dir, const std::string& name, const std::vector<std::string>& args) {
    SimRecording recording;
    recording.path = dir.File(name + ".kvr");
    std::vector<std::string> all = {"river", "--out", recording.path};
    all.insert(all.end(), args.begin(), args.end());
    const ProcessResult run = RunProgram("kvr-sim", all);
    if (!run.Exited() || run.exitStatus != 0) {
        throw std::runtime_error("kvr-sim river failed: " + run.Describe());
    }
    recording.truth = nlohmann::json::parse(run.out);
    return recording;
}

ProcessResult RunCli(const std::vector<std::string>& args) { return RunProgram("ripplemark-cli", args); }

nlohmann::json RunCliJson(const std::vector<std::string>& args) {
    const ProcessResult run = RunCli(args);
    if (!run.Exited() || run.exitStatus != 0) {
        throw std::runtime_error("ripplemark-cli failed: " + run.Describe());
    }
    return nlohmann::json::parse(run.out);
}

}  // namespace rm::test
