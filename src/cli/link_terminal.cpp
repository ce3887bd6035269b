#include "cli/link_commands.h"

#include "cli/command.h"

namespace rm::cli {

int RunTerminalCommand(SerialPortFactory& factory, const PortChoice& choice, TerminalInput& input, UserPrompt& prompt,
                       std::ostream& out) {
    std::string error;
    std::unique_ptr<SerialPort> port = OpenLinkPort(factory, choice.path, choice.baud, error);
    if (!port) {
        prompt.Message(error);
        return kExitFailure;
    }
    StreamWindow screen(out);
    const int result = RunTerminal(*port, input, screen);
    out.flush();
    if (result == kTerminalPortFailed) {
        prompt.Message("The port " + choice.path + " failed.");
        return kExitFailure;
    }
    return kExitOk;
}

}  // namespace rm::cli
