// ripplemark-cli record --port PATH [--baud N] [--gps PATH [--gps-baud N]] [--echo PATH
// [--echo-baud N]] [--dir DIR] [--name STEM] (--profiles N | --seconds S) [--left-distance M
// --right-distance M --start-bank left|right]: records a transect from the instrument and prints
// the files written and the measurement.

#include <csignal>
#include <iostream>
#include <map>
#include <memory>

#include "cli/command.h"
#include "cli/record_command.h"
#include "link/posix_serial_port.h"

namespace rm::cli {
namespace {

extern "C" void OnRecordInterrupt(int) { gRecordInterrupted = 1; }

int RunWithInterrupt(const RecordChoices& choices) {
    gRecordInterrupted = 0;
    struct sigaction action {};
    action.sa_handler = OnRecordInterrupt;
    sigemptyset(&action.sa_mask);
    struct sigaction previousInt {}, previousTerm {};
    sigaction(SIGINT, &action, &previousInt);
    sigaction(SIGTERM, &action, &previousTerm);
    PosixSerialPortFactory factory;
    CommandPrompt prompt(std::cerr, choices.overwrite);
    const int status = RunRecordCommand(factory, choices, prompt, std::cout);
    sigaction(SIGINT, &previousInt, nullptr);
    sigaction(SIGTERM, &previousTerm, nullptr);
    return status;
}

const CommandRegistration registration{Command{
    "record",
    "Record a transect from the instrument (with GPS and echo sounder) and print its measurement",
    [](CLI::App& sub) -> std::function<int()> {
        static const std::map<std::string, int> kBanks{{"left", 0}, {"right", 1}};
        auto c = std::make_shared<RecordChoices>();
        sub.add_option("--port", c->instrument.path, "Device path of the instrument's port")->required();
        sub.add_option("--baud", c->instrument.baud, "Baud rate of the instrument")->capture_default_str();
        auto* gps = sub.add_option("--gps", c->gps.path, "Device path of an external GPS receiver");
        sub.add_option("--gps-baud", c->gps.baud, "Baud rate of the GPS")->needs(gps)->capture_default_str();
        auto* echo = sub.add_option("--echo", c->echo.path, "Device path of an echo sounder");
        sub.add_option("--echo-baud", c->echo.baud, "Baud rate of the echo sounder")->needs(echo)->capture_default_str();
        sub.add_option("--dir", c->directory, "Folder of the recording (default: the recording folder of the settings)");
        sub.add_option("--name", c->name, "File stem (automatic naming off): DIR/STEM.kvr");
        sub.add_flag("--overwrite", c->overwrite, "Replace an existing data file of that name");
        auto* profiles = sub.add_option("--profiles", c->profiles, "Stop after N profiles written")
                             ->check(CLI::Range(1, 1000000));
        auto* seconds = sub.add_option("--seconds", c->seconds, "Stop after S seconds of recording")
                            ->check(CLI::Range(0.25, 86400.0));
        profiles->excludes(seconds);
        sub.add_option("--left-distance", c->leftDistance, "Distance to the left bank, m")->check(CLI::Range(0.0, 1e5));
        sub.add_option("--right-distance", c->rightDistance, "Distance to the right bank, m")
            ->check(CLI::Range(0.0, 1e5));
        sub.add_option("--start-bank", c->startBank, "Bank the transect starts at: left or right")
            ->transform(CLI::CheckedTransformer(kBanks, CLI::ignore_case));
        sub.add_flag("--json", c->json, "Print the files and the measurement as one JSON object");
        return [c]() -> int {
            if (c->profiles == 0 && c->seconds == 0) {
                std::cerr << "record: one of --profiles or --seconds is required\n";
                return kExitUsage;
            }
            return RunWithInterrupt(*c);
        };
    }}};

}  // namespace
}  // namespace rm::cli
