// kvr-sim instrument: a KVR on a pseudo-terminal, collecting over the virtual river.

#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <vector>

#include "sim/device_server.h"
#include "sim/main/river_options.h"
#include "sim/main/sim_commands.h"
#include "sim/main/truth_json.h"
#include "sim/pseudo_terminal.h"
#include "sim/simulated_instrument.h"

namespace rm::sim::cli {

namespace {

struct InstrumentValues {
    RiverOptionValues river;
    InstrumentBehaviour behaviour;
    std::string link;
    std::string truthPath;
    std::string family = "kvr";
    int baud = 9600;
    bool noEcho = false;
    bool noMarker = false;
    bool once = false;
    std::vector<std::string> bitFlips;
};

// The truth goes to the file (replaced whole, so a reader never sees half of it) or to stderr.
void WriteTruth(const InstrumentValues& v, const RiverScenario& scenario, const RecordingResult& result) {
    if (!result.ok) return;
    const std::string text = TruthJson(scenario, result).dump(2) + "\n";
    if (v.truthPath.empty()) {
        std::fputs(text.c_str(), stderr);
        std::fflush(stderr);
        return;
    }
    const std::string partial = v.truthPath + ".partial";
    {
        std::ofstream out(partial, std::ios::binary | std::ios::trunc);
        out << text;
        if (!out) {
            std::fprintf(stderr, "kvr-sim instrument: cannot write %s\n", partial.c_str());
            return;
        }
    }
    if (std::rename(partial.c_str(), v.truthPath.c_str()) != 0)
        std::fprintf(stderr, "kvr-sim instrument: cannot write %s\n", v.truthPath.c_str());
}

std::string CheckBehaviour(InstrumentValues& v) {
    if (!ParseInstrumentFamily(v.family, v.behaviour.family)) {
        std::string names;
        for (const std::string& name : InstrumentFamilyNames()) names += (names.empty() ? "" : ", ") + name;
        return "--family must be one of " + names;
    }
    v.behaviour.echo = !v.noEcho;
    v.behaviour.replyMarker = !v.noMarker;
    const FrameFaults& f = v.behaviour.faults;
    if (f.badChecksumEvery < 0 || f.loseFrame < 0 || v.behaviour.maxProfiles < 0)
        return "counts of profiles must not be negative";
    if (f.restartNumberingAt == 1 || f.restartNumberingAt < 0)
        return "--restart-numbering-at must be a profile after the first";
    for (const std::string& text : v.bitFlips) {
        BitFlip flip;
        if (!ParseBitFlip(text, flip)) return "--flip-bit must read K:BYTE:BIT (profile from 1, byte from 0, bit 0 to 7)";
        v.behaviour.faults.bitFlips.push_back(flip);
    }
    if (v.behaviour.frameIntervalS < 0.0 || v.behaviour.frameIntervalS > 3600.0)
        return "--interval must be 0 to 3600 seconds";
    return {};
}

int Run(InstrumentValues& v) {
    std::string problem = FinishRiverOptions(v.river, RiverOptionUse::Live);
    if (problem.empty()) problem = CheckBehaviour(v);
    if (problem.empty()) {
        // The setup as the instrument starts with it must be able to collect.
        SimulatedInstrument probe(v.river.scenario, v.behaviour);
        problem = ValidateScenario(ScenarioForRecords(v.river.scenario, probe.Records()));
    }
    if (!problem.empty()) {
        std::fprintf(stderr, "kvr-sim instrument: %s\n", problem.c_str());
        return kExitUsage;
    }
    PseudoTerminal pty;
    if (!pty.Open(v.baud, v.link)) {
        std::fprintf(stderr, "kvr-sim instrument: %s\n", pty.Error().c_str());
        return kExitFailure;
    }
    std::printf("%s\n", pty.SlavePath().c_str());
    std::fflush(stdout);
    InstallStopSignals();
    SimulatedInstrument instrument(v.river.scenario, v.behaviour);
    instrument.OnCollectionEnd(
        [&v](const RiverScenario& scenario, const RecordingResult& truth) { WriteTruth(v, scenario, truth); });
    ServeInstrument(pty, instrument, v.once ? ServeLifetime::OneProgram : ServeLifetime::UntilStopped);
    instrument.EndCollection();
    return kExitOk;
}

}  // namespace

void AddInstrumentCommand(CLI::App& app, SubcommandRunners& runners) {
    static const std::map<std::string, int> kOrientations{{"down", 0}, {"up", 1}, {"side", 2}};
    auto v = std::make_shared<InstrumentValues>();
    CLI::App* sub = app.add_subcommand("instrument", "a KVR at its prompt on a pseudo-terminal");
    sub->add_option("--link", v->link, "symbolic link to make to the device");
    sub->add_option("--baud", v->baud, "line speed set on the device")->capture_default_str();
    sub->add_option("--truth", v->truthPath, "file for the truth of each collection (default: stderr)");
    sub->add_flag("--once", v->once, "end when the first program that opened the device has closed it");
    AddRiverOptions(*sub, v->river, RiverOptionUse::Live);
    InstrumentBehaviour& b = v->behaviour;
    sub->add_option("--family", v->family,
                    "kvr, hullstar, skiffjack, skiffjack-zsn, zsn, zsn6600, flow, vnq or unknown")
        ->capture_default_str();
    sub->add_option("--orientation", b.orientation, "down, up or side")
        ->transform(CLI::CheckedTransformer(kOrientations, CLI::ignore_case))
        ->default_str("down");
    sub->add_flag("--silent", b.silent, "take everything, answer nothing");
    sub->add_flag("--no-echo", v->noEcho, "do not echo what is received");
    sub->add_flag("--no-reply-marker", v->noMarker, "no 0xE8 before the Ver answer and record frames");
    sub->add_flag("--asleep", b.startAsleep, "start asleep: only a break wakes it");
    sub->add_flag("--refuse-binary", b.refuseBinary, "answer \"OF Binary\" with an error");
    sub->add_flag("--noise-before-frames", b.faults.noiseBeforeFrames, "line noise before every frame");
    sub->add_option("--bad-checksum-every", b.faults.badChecksumEvery, "every N-th frame has a wrong checksum");
    sub->add_option("--lose-frame", b.faults.loseFrame, "profile K is never sent");
    sub->add_option("--restart-numbering-at", b.faults.restartNumberingAt, "from profile K on, numbers start at 1 again");
    sub->add_option("--flip-bit", v->bitFlips,
                    "K:BYTE:BIT turns over bit BIT of byte BYTE of profile K's frame on the line (repeatable)");
    sub->add_option("--interval", b.frameIntervalS, "seconds between frames on the line (default: the setup's)");
    sub->add_option("--max-profiles", b.maxProfiles, "frames per collection at most (default: the whole crossing)");
    runners[sub] = [v] { return Run(*v); };
}

}  // namespace rm::sim::cli
