// ripplemark-cli setup --port PATH [--set Setup/KEY=VALUE]... [--save-config NAME | --load-config
// NAME]: reads the instrument's user setup, changes it under the setup rules, sends it back.

#include "app/app_settings.h"
#include "cli/command.h"
#include "cli/link_commands.h"

#include <iostream>
#include <memory>

namespace rm::cli {
namespace {

const CommandRegistration registration{Command{
    "setup",
    "Read the instrument's user setup, apply checked changes or a saved configuration, and send it back",
    [](CLI::App& sub) -> std::function<int()> {
        auto choices = std::make_shared<SetupChoices>();
        AddInstrumentPortOptions(sub, choices->instrument);
        sub.add_option("--set", choices->assignments, "A change, e.g. Setup/NumberOfCells=20 (repeatable)");
        auto* save = sub.add_option("--save-config", choices->saveConfig, "Save the resulting setup under NAME");
        auto* load = sub.add_option("--load-config", choices->loadConfig, "Load the saved configuration NAME first");
        save->excludes(load);
        sub.add_option("--config-dir", choices->configFolder,
                       "Folder of saved configurations (default: the recording folder)");
        return [choices] {
            if (choices->configFolder.empty()) choices->configFolder = AppSettings().DataFolder();
            return RunOnSerialPorts([&](SerialPortFactory& factory, UserPrompt& prompt) {
                return RunSetupCommand(factory, *choices, prompt, std::cout);
            });
        };
    }}};

}  // namespace
}  // namespace rm::cli
