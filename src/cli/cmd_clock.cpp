// ripplemark-cli clock --port PATH [--set-now]: the instrument's clock beside the computer's.

#include "cli/command.h"
#include "cli/link_commands.h"
#include "link/posix_serial_port.h"

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
        sub.add_option("--port", choices->port.path, "Device path of the instrument's port")->required();
        sub.add_option("--baud", choices->port.baud, "Baud rate")->capture_default_str();
        sub.add_flag("--set-now", choices->setNow, "Set the instrument's clock to the computer's time first");
        return [choices] {
            PosixSerialPortFactory factory;
            CommandPrompt prompt(std::cerr);
            return RunClockCommand(factory, choices->port, choices->setNow, prompt, std::cout);
        };
    }}};

}  // namespace
}  // namespace rm::cli
