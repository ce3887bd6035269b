// ripplemark-cli: the headless tool over the same core as the desktop program.

#include "cli/command.h"
#include "command_line/subcommand_dispatch.h"

namespace rm::cli {
std::vector<Command>& Registry() {
    static std::vector<Command> commands;
    return commands;
}
}  // namespace rm::cli

int main(int argc, char** argv) {
    using namespace rm::cli;
    CLI::App app{"Quorle Ripplemark v4.50 command-line tool", "ripplemark-cli"};
    rm::command_line::SubcommandRunners runners;
    for (const Command& command : Registry()) {
        CLI::App* sub = app.add_subcommand(command.name, command.help);
        runners[sub] = command.setup(*sub);
    }
    return rm::command_line::RunChosenSubcommand(app, runners, argc, argv, "");
}
