// ripplemark-cli wake --port PATH [--baud N]: finds the instrument on a port and says what it is.

#include "cli/command.h"
#include "cli/link_commands.h"
#include "link/posix_serial_port.h"

#include <iostream>
#include <memory>

namespace rm::cli {
namespace {

const CommandRegistration registration{Command{
    "wake",
    "Wake the instrument on a serial port and say what answered (exit 0 for a KVR or Hullstar)",
    [](CLI::App& sub) -> std::function<int()> {
        auto port = std::make_shared<PortChoice>();
        sub.add_option("--port", port->path, "Device path of the instrument's port")->required();
        sub.add_option("--baud", port->baud, "Baud rate")->capture_default_str();
        return [port] {
            PosixSerialPortFactory factory;
            CommandPrompt prompt(std::cerr);
            return RunWakeCommand(factory, *port, prompt, std::cout);
        };
    }}};

}  // namespace
}  // namespace rm::cli
