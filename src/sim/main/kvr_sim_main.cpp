// kvr-sim: synthetic instruments and recordings for testing Quorle Ripplemark without hardware.
//
//   kvr-sim river --out PATH.kvr [options]   a recording of a boat crossing a virtual river of
//                                             known discharge; prints the truth as JSON
//   kvr-sim instrument [--link PATH] [...]   a KVR on a pseudo-terminal that collects over the
//                                             virtual river; prints the device path first
//   kvr-sim gps [--link PATH] [...]          GGA and RMC of the boat on a pseudo-terminal
//   kvr-sim echo [--link PATH] [...]         DPT and DBT of an echo sounder on a pseudo-terminal
//
// Exit status: 0 done, 1 a file or device could not be made, 64 wrong arguments.

#include "command_line/subcommand_dispatch.h"
#include "sim/main/sim_commands.h"

int main(int argc, char** argv) {
    using namespace rm::sim::cli;
    CLI::App app{"kvr-sim: synthetic instruments and recordings for Quorle Ripplemark", "kvr-sim"};
    SubcommandRunners runners;
    AddRiverCommand(app, runners);
    AddInstrumentCommand(app, runners);
    AddGpsCommand(app, runners);
    AddEchoCommand(app, runners);
    return rm::command_line::RunChosenSubcommand(app, runners, argc, argv, "kvr-sim: ");
}
