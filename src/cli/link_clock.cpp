#include "cli/link_commands.h"

#include "cli/command.h"
#include "link/instrument_clock.h"

#include <cstdio>
#include <ctime>

namespace rm::cli {

namespace {

std::string ClockText(const ClockTime& t) {
    char text[64];
    std::snprintf(text, sizeof text, "%04d/%02d/%02d %02d:%02d:%02d", t.year, t.month, t.day, t.hour, t.minute,
                  t.second);
    return text;
}

}  // namespace

int RunClockCommand(SerialPortFactory& factory, const PortChoice& choice, bool setNow, UserPrompt& prompt,
                    std::ostream& out) {
    std::unique_ptr<SerialPort> port = OpenChosenPort(factory, choice, prompt);
    if (!port) return kExitFailure;
    PromptDialogue dialogue(*port, prompt, "");
    if (setNow && !SetInstrumentClock(dialogue, ComputerClockTime(std::time(nullptr)))) return kExitFailure;
    ClockTime instrument;
    if (!ReadInstrumentClock(dialogue, instrument)) return kExitFailure;
    out << "Computer:   " << ClockText(ComputerClockTime(std::time(nullptr))) << '\n'
        << "Instrument: " << ClockText(instrument) << '\n';
    return kExitOk;
}

}  // namespace rm::cli
