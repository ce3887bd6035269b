#pragma once
// The subcommands of kvr-sim. Each adds itself to the program's parser and leaves the function
// that runs it when it was chosen.

#include <CLI/CLI.hpp>
#include <functional>
#include <map>

namespace rm::sim::cli {

constexpr int kExitOk = 0;
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 64;

using SubcommandRunners = std::map<CLI::App*, std::function<int()>>;

void AddRiverCommand(CLI::App& app, SubcommandRunners& runners);
void AddInstrumentCommand(CLI::App& app, SubcommandRunners& runners);
void AddGpsCommand(CLI::App& app, SubcommandRunners& runners);
void AddEchoCommand(CLI::App& app, SubcommandRunners& runners);

}  // namespace rm::sim::cli
