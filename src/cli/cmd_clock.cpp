// ripplemark-cli clock --port PATH [--set-now]: the instrument's clock beside the computer's.

#include "cli/command.h"
#include "cli/link_commands.h"

#include <iostream>
#include <memory>

namespace rm::cli {
namespace {

struct ClockChoices {
    PortChoice port;
    bool setNow = false;
};

const CommandRegistration registration{Command{
    "clock",
    "Show the instrument's clock, or set it to the computer's time",
    [](CLI::App& sub) -> std::function<int()> {
        auto choices = std::make_shared<ClockChoices>();
        AddInstrumentPortOptions(sub, choices->port);
        sub.add_flag("--set-now", choices->setNow, "Set the instrument's clock to the computer's time first");
        return [choices] {
            return RunOnSerialPorts([&](SerialPortFactory& factory, UserPrompt& prompt) {
                return RunClockCommand(factory, choices->port, choices->setNow, prompt, std::cout);
            });
        };
    }}};

}  // namespace
}  // namespace rm::cli
