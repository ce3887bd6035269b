// kvr-sim river: a recording of a boat crossing the virtual river, and its truth as JSON.

#include <cstdio>
#include <filesystem>
#include <memory>

#include "data/user_prompt.h"
#include "sim/main/river_options.h"
#include "sim/main/sim_commands.h"
#include "sim/main/truth_json.h"
#include "sim/recording_writer.h"

namespace rm::sim::cli {

void AddRiverCommand(CLI::App& app, SubcommandRunners& runners) {
    auto values = std::make_shared<RiverOptionValues>();
    CLI::App* sub = app.add_subcommand("river", "record a boat crossing a virtual river; prints the truth");
    AddRiverOptions(*sub, *values, RiverOptionUse::Recording);
    runners[sub] = [values] {
        const std::string problem = FinishRiverOptions(*values, RiverOptionUse::Recording);
        if (!problem.empty()) {
            std::fprintf(stderr, "kvr-sim river: %s\n", problem.c_str());
            return kExitUsage;
        }
        // The recording's folder is made when it does not exist yet.
        const std::filesystem::path folder = std::filesystem::path(values->scenario.outputPath).parent_path();
        std::error_code error;
        if (!folder.empty() && !std::filesystem::is_directory(folder, error)) {
            std::filesystem::create_directories(folder, error);
            if (error) {
                std::fprintf(stderr, "kvr-sim river: cannot make the folder %s: %s\n", folder.string().c_str(),
                             error.message().c_str());
                return kExitFailure;
            }
        }
        StderrPrompt prompt(true);
        const RecordingResult result = WriteRiverRecording(values->scenario, prompt);
        if (!result.ok) {
            std::fprintf(stderr, "kvr-sim river: %s\n", result.error.c_str());
            return kExitFailure;
        }
        std::printf("%s\n", TruthJson(values->scenario, result).dump(2).c_str());
        return kExitOk;
    };
}

}  // namespace rm::sim::cli
