#include "cli/link_commands.h"

#include "cli/command.h"

namespace rm::cli {

int RunTerminalCommand(SerialPortFactory& factory, const PortChoice& choice, TerminalInput& input, UserPrompt& prompt,
                       std::ostream& out) {
    std::unique_ptr<SerialPort> port = OpenChosenPort(factory, choice, prompt);
    if (!port) return kExitFailure;
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
