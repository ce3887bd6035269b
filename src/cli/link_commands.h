#pragma once
// The instrument commands of the command-line tool, apart from their argument parsing so that
// tests can run them on scripted ports: each takes the port factory, writes its report to `out`
// and the link's messages through `prompt`, and returns the tool's exit status.

#include "cli/link_port.h"
#include "link/terminal.h"

#include <ostream>
#include <string>
#include <vector>

namespace rm::cli {

// Finds the instrument on the port: prints the finding lines and the result text. Exit 0 only
// for a KVR or a Hullstar.
int RunWakeCommand(SerialPortFactory& factory, const PortChoice& port, UserPrompt& prompt, std::ostream& out);

struct CheckChoices {
    PortChoice instrument;
    PortChoice externalGps{"", kDefaultNmeaBaud};
    PortChoice echoSounder{"", kDefaultNmeaBaud};
    bool internalGps = false;  // check the instrument's own receiver as well
    uint32_t listenMs = 5000;
};

// Checks each chosen device; a device without a port is shown as "Disabled". Exit 0 when every
// chosen device was found.
int RunCheckCommand(SerialPortFactory& factory, const CheckChoices& choices, UserPrompt& prompt, std::ostream& out);

struct SetupChoices {
    PortChoice instrument;
    std::vector<std::string> assignments;  // "Setup/KEY=VALUE"
    std::string saveConfig;                // a configuration name to save the result as
    std::string loadConfig;                // a configuration name to load before the assignments
    std::string configFolder;              // where configurations are kept
};

// Reads the instrument's settings, applies the configuration and the assignments with the
// rule checker, sends the user settings when anything changed and reads them back.
int RunSetupCommand(SerialPortFactory& factory, const SetupChoices& choices, UserPrompt& prompt, std::ostream& out);

struct SystemTestChoices {
    PortChoice instrument;
    std::string logFolder;       // the test log's folder; empty: the recording folder of the settings
    std::string deploymentName;  // empty: the instrument's own
};

int RunSystemTestCommand(SerialPortFactory& factory, const SystemTestChoices& choices, UserPrompt& prompt,
                         std::ostream& out);

// Shows the computer's and the instrument's clock; with `setNow` sets the instrument to the
// computer's time first.
int RunClockCommand(SerialPortFactory& factory, const PortChoice& port, bool setNow, UserPrompt& prompt,
                    std::ostream& out);

// Passes `input` to the port and the port to `out` until the input ends or the exit key comes.
int RunTerminalCommand(SerialPortFactory& factory, const PortChoice& port, TerminalInput& input, UserPrompt& prompt,
                       std::ostream& out);

}  // namespace rm::cli
