#include "command_line/subcommand_dispatch.h"

#include <cstdio>
#include <exception>

namespace rm::command_line {

int RunChosenSubcommand(CLI::App& app, const SubcommandRunners& runners, int argc, char** argv,
                        const std::string& errorPrefix) {
    app.require_subcommand(1);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e) == 0 ? kExitOk : kExitUsage;
    } catch (const CLI::ParseError& e) {
        app.exit(e);
        return kExitUsage;
    }
    try {
        for (const auto& [sub, run] : runners) {
            if (sub->parsed()) return run();
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s%s\n", errorPrefix.c_str(), e.what());
        return kExitFailure;
    }
    return kExitUsage;
}

}  // namespace rm::command_line
