// ripplemark-cli setup --port PATH [--set Setup/KEY=VALUE]... [--save-config NAME | --load-config
// NAME]: reads the instrument's user setup, changes it under the setup rules, sends it back.

#include "cli/command.h"
#include "cli/link_commands.h"
#include "cli/recording_folder.h"

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
            return RunOnSerialPorts([&](SerialPortFactory& factory, UserPrompt& prompt) {
                const bool needsFolder = !choices->saveConfig.empty() || !choices->loadConfig.empty();
                if (needsFolder && choices->configFolder.empty()) {
                    choices->configFolder = RecordingFolderFromSettings(prompt);
                    if (choices->configFolder.empty()) return kExitFailure;
                }
                return RunSetupCommand(factory, *choices, prompt, std::cout);
            });
        };
    }}};

}  // namespace
}  // namespace rm::cli
