// ripplemark-cli check [--port PATH] [--gps PATH] [--echo PATH] [--internal-gps]: the connection
// checks of the "Systems" dialog, each device with its state and its trouble-shooting text.

#include "cli/command.h"
#include "cli/link_commands.h"

#include <iostream>
#include <memory>

namespace rm::cli {
namespace {

const CommandRegistration registration{Command{
    "check",
    "Check the connection to the instrument, its internal GPS, an external GPS and an echo sounder",
    [](CLI::App& sub) -> std::function<int()> {
        auto choices = std::make_shared<CheckChoices>();
        sub.add_option("--port", choices->instrument.path, "Device path of the instrument's port");
        sub.add_option("--baud", choices->instrument.baud, "Baud rate of the instrument")->capture_default_str();
        sub.add_option("--gps", choices->externalGps.path, "Device path of an external GPS receiver");
        sub.add_option("--gps-baud", choices->externalGps.baud, "Baud rate of the GPS")->capture_default_str();
        sub.add_option("--echo", choices->echoSounder.path, "Device path of an echo sounder");
        sub.add_option("--echo-baud", choices->echoSounder.baud, "Baud rate of the echo sounder")
            ->capture_default_str();
        sub.add_flag("--internal-gps", choices->internalGps, "Check the instrument's internal GPS as well");
        return [choices] {
            return RunOnSerialPorts([&](SerialPortFactory& factory, UserPrompt& prompt) {
                return RunCheckCommand(factory, *choices, prompt, std::cout);
            });
        };
    }}};

}  // namespace
}  // namespace rm::cli
