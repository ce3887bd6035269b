// kvr-sim gps and kvr-sim echo: the NMEA streams of the boat's GPS receiver and echo sounder.

#include <cctype>
#include <cstdio>
#include <memory>

#include "sim/boat_track_stream.h"
#include "sim/device_server.h"
#include "sim/nmea_output.h"
#include "sim/main/river_options.h"
#include "sim/main/sim_commands.h"
#include "sim/pseudo_terminal.h"

namespace rm::sim::cli {

namespace {

enum class StreamKind { Gps, Echo };

struct StreamValues {
    RiverOptionValues river;
    std::string link;
    int baud = 4800;
    double rateHz = 1.0;
    bool once = false;
    std::string talker = kDefaultGpsTalker;
};

// Two letters, as every NMEA talker has.
bool IsTalker(const std::string& text) {
    return text.size() == 2 && std::isupper(static_cast<unsigned char>(text[0])) &&
           std::isupper(static_cast<unsigned char>(text[1]));
}

int Run(StreamValues& v, StreamKind kind) {
    const char* name = kind == StreamKind::Gps ? "gps" : "echo";
    std::string problem = FinishRiverOptions(v.river, RiverOptionUse::Live);
    if (problem.empty() && !(v.rateHz >= 0.1 && v.rateHz <= 20.0)) problem = "--rate must be 0.1 to 20 per second";
    if (problem.empty() && !IsTalker(v.talker)) problem = "--talker must be two capital letters, e.g. GP or GN";
    if (!problem.empty()) {
        std::fprintf(stderr, "kvr-sim %s: %s\n", name, problem.c_str());
        return kExitUsage;
    }
    PseudoTerminal pty;
    if (!pty.Open(v.baud, v.link)) {
        std::fprintf(stderr, "kvr-sim %s: %s\n", name, pty.Error().c_str());
        return kExitFailure;
    }
    std::printf("%s\n", pty.SlavePath().c_str());
    std::fflush(stdout);
    InstallStopSignals();
    const BoatTrack track(v.river.scenario);
    const ServeLifetime lifetime = v.once ? ServeLifetime::OneProgram : ServeLifetime::UntilStopped;
    if (kind == StreamKind::Gps)
        ServeStream(pty, [&track, &v](double t) { return track.GpsSentences(t, v.talker); }, 1.0 / v.rateHz,
                    lifetime);
    else
        ServeStream(pty, [&track](double t) { return track.EchoSentences(t); }, 1.0 / v.rateHz, lifetime);
    return kExitOk;
}

void AddStreamCommand(CLI::App& app, SubcommandRunners& runners, StreamKind kind) {
    auto v = std::make_shared<StreamValues>();
    CLI::App* sub = kind == StreamKind::Gps
                        ? app.add_subcommand("gps", "GGA and RMC of the boat's track on a pseudo-terminal")
                        : app.add_subcommand("echo", "DPT and DBT of the depth under the boat on a pseudo-terminal");
    sub->add_option("--link", v->link, "symbolic link to make to the device");
    sub->add_option("--baud", v->baud, "line speed set on the device")->capture_default_str();
    sub->add_option("--rate", v->rateHz, "sentence groups per second")->capture_default_str();
    sub->add_flag("--once", v->once, "end when the first program that opened the device has closed it");
    if (kind == StreamKind::Gps)
        sub->add_option("--talker", v->talker, "talker of the sentences: GP, or GN for a receiver of several systems")
            ->capture_default_str();
    AddRiverOptions(*sub, v->river, RiverOptionUse::Live);
    runners[sub] = [v, kind] { return Run(*v, kind); };
}

}  // namespace

void AddGpsCommand(CLI::App& app, SubcommandRunners& runners) { AddStreamCommand(app, runners, StreamKind::Gps); }
void AddEchoCommand(CLI::App& app, SubcommandRunners& runners) { AddStreamCommand(app, runners, StreamKind::Echo); }

}  // namespace rm::sim::cli
