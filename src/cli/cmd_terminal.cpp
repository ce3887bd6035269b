// ripplemark-cli terminal --port PATH: a raw terminal on the instrument's port. Keys go to the
// instrument as typed (Enter as a carriage return), its output comes to the screen. Ctrl-]
// leaves, Ctrl-B sends a break. With standard input from a file or a pipe, the session ends
// once the input has ended and the instrument has been quiet for half a second.

#include "cli/command.h"
#include "cli/console_input.h"
#include "cli/link_commands.h"

#include <iostream>
#include <memory>

namespace rm::cli {
namespace {

const CommandRegistration registration{Command{
    "terminal",
    "Raw terminal on the instrument's port (Ctrl-] leaves, Ctrl-B sends a break)",
    [](CLI::App& sub) -> std::function<int()> {
        auto port = std::make_shared<PortChoice>();
        AddInstrumentPortOptions(sub, *port);
        return [port] {
            ConsoleInput keyboard;
            if (keyboard.IsRaw()) std::cerr << "Connected to " << port->path << ". Ctrl-] leaves.\r\n";
            return RunOnSerialPorts([&](SerialPortFactory& factory, UserPrompt& prompt) {
                return RunTerminalCommand(factory, *port, keyboard, prompt, std::cout);
            });
        };
    }}};

}  // namespace
}  // namespace rm::cli
