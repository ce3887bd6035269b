// ripplemark-cli systest --port PATH [--log-dir DIR] [--deployment NAME]: the instrument's full
// system test, shown as it runs and logged to NAME.TestLog.

#include "cli/command.h"
#include "cli/link_commands.h"

#include <iostream>
#include <memory>

namespace rm::cli {
namespace {

const CommandRegistration registration{Command{
    "systest",
    "Run the instrument's system test and keep its log",
    [](CLI::App& sub) -> std::function<int()> {
        auto choices = std::make_shared<SystemTestChoices>();
        AddInstrumentPortOptions(sub, choices->instrument);
        sub.add_option("--log-dir", choices->logFolder, "Folder of the test log (default: the recording folder)");
        sub.add_option("--deployment", choices->deploymentName,
                       "Name of the log (default: the instrument's deployment name)");
        return [choices] {
            return RunOnSerialPorts([&](SerialPortFactory& factory, UserPrompt& prompt) {
                return RunSystemTestCommand(factory, *choices, prompt, std::cout);
            });
        };
    }}};

}  // namespace
}  // namespace rm::cli
