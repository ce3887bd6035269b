#pragma once
// The subcommands of ripplemark-cli. Each command lives in a file of its own and registers
// itself with a static CommandRegistration; main() builds the parser from the registry.

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

#include "command_line/subcommand_dispatch.h"

namespace rm::cli {

// Exit statuses shared by every command: 0 done, 1 failed, 64 wrong arguments as the dispatch
// returns them, and 2 for an input that is not a file of the expected kind.
using command_line::kExitFailure;
using command_line::kExitOk;
using command_line::kExitUsage;
constexpr int kExitBadFile = 2;

struct Command {
    std::string name;
    std::string help;
    // Adds the command's options to `sub` and returns the function that runs it.
    std::function<std::function<int()>(CLI::App& sub)> setup;
};

std::vector<Command>& Registry();

struct CommandRegistration {
    explicit CommandRegistration(Command command) { Registry().push_back(std::move(command)); }
};

}  // namespace rm::cli
