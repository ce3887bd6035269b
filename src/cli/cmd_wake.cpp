// ripplemark-cli wake --port PATH [--baud N]: finds the instrument on a port and says what it is.

#include "cli/command.h"
#include "cli/link_commands.h"

#include <iostream>
#include <memory>

namespace rm::cli {
namespace {

const CommandRegistration registration{Command{
    "wake",
    "Wake the instrument on a serial port and say what answered (exit 0 for a KVR or Hullstar)",
    [](CLI::App& sub) -> std::function<int()> {
        auto port = std::make_shared<PortChoice>();
        AddInstrumentPortOptions(sub, *port);
        return [port] {
            return RunOnSerialPorts([&](SerialPortFactory& factory, UserPrompt& prompt) {
                return RunWakeCommand(factory, *port, prompt, std::cout);
            });
        };
    }}};

}  // namespace
}  // namespace rm::cli
