// ripplemark-cli: the headless tool over the same core as the desktop program.

#include <cstdio>
#include <exception>
#include <map>

#include "cli/command.h"

namespace rm::cli {
std::vector<Command>& Registry() {
    static std::vector<Command> commands;
    return commands;
}
}  // namespace rm::cli

int main(int argc, char** argv) {
    using namespace rm::cli;
    CLI::App app{"Quorle Ripplemark v4.50 command-line tool", "ripplemark-cli"};
    app.require_subcommand(1);
    std::map<CLI::App*, std::function<int()>> runners;
    for (const Command& command : Registry()) {
        CLI::App* sub = app.add_subcommand(command.name, command.help);
        runners[sub] = command.setup(*sub);
    }
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
        std::fprintf(stderr, "%s\n", e.what());
        return kExitFailure;
    }
    return kExitUsage;
}
