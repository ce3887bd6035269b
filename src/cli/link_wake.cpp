#include "cli/link_commands.h"

#include "cli/command.h"
#include "link/instrument_finder.h"
#include "link/wake_up.h"

namespace rm::cli {

int RunWakeCommand(SerialPortFactory& factory, const PortChoice& port, UserPrompt& prompt, std::ostream& out) {
    SerialPortRecord record;
    record.PortPath = port.path;
    record.BaudRate = port.baud;
    FindingLines lines;
    const FindOutcome outcome = FindInstrument(factory, record, prompt, lines, "");
    for (const std::string& line : lines.history) out << line << '\n';
    // The finding lines name the result only for instruments of the families it knows.
    const bool named = outcome.wakeResult == kWakeKvr || outcome.wakeResult == kWakeZsn ||
                       outcome.wakeResult == kWakeSkiffjack || outcome.wakeResult == kWakeHullstar;
    if (outcome.woken && !named) out << WakeResultText(outcome.wakeResult) << '\n';
    ClosePortRecord(record);
    return outcome.success ? kExitOk : kExitFailure;
}

}  // namespace rm::cli
