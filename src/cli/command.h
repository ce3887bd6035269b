#pragma once
// The subcommands of ripplemark-cli. Each command lives in a file of its own and registers
// itself with a static CommandRegistration; main() builds the parser from the registry.

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

namespace rm::cli {

// Exit statuses shared by every command.
constexpr int kExitOk = 0;
constexpr int kExitFailure = 1;
constexpr int kExitBadFile = 2;   // the input is not a file of the expected kind
constexpr int kExitUsage = 64;    // wrong arguments

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
