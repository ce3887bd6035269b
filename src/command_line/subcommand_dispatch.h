#pragma once
// The dispatch shared by the project's command-line programs (ripplemark-cli, kvr-sim): one
// subcommand is required, it is parsed and run, and every way out ends in an exit status.

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <string>

namespace rm::command_line {

// The exit statuses the dispatch itself returns; the programs use the same numbers.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 64;

// Each subcommand of the parser with the function that runs it when it was chosen.
using SubcommandRunners = std::map<CLI::App*, std::function<int()>>;

// Parses argv into `app` and runs the chosen subcommand's runner, returning its status.
// Help asked for: printed, kExitOk. Wrong arguments: CLI11's message, kExitUsage. An exception
// out of the runner: "<errorPrefix><what>" on stderr, kExitFailure.
int RunChosenSubcommand(CLI::App& app, const SubcommandRunners& runners, int argc, char** argv,
                        const std::string& errorPrefix);

}  // namespace rm::command_line
