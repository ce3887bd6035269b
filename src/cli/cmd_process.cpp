// ripplemark-cli process FILE.kvr [options]: opens a recording as the desktop program does (with
// its .cfg and .pmk), applies the options, runs the full recomputation and prints the
// measurement. --save writes the .cfg as closing the document would (not while locked).

#include <cstdio>
#include <exception>
#include <memory>
#include <string>

#include "cli/command.h"
#include "cli/json_output.h"
#include "cli/measurement_output.h"
#include "cli/processing_session.h"

namespace rm::cli {
namespace {

struct ProcessCommandOptions {
    ProcessingOptions processing;
    bool save = false;
    bool json = false;
    bool profiles = false;
};

int RunProcess(const ProcessCommandOptions& options) {
    try {
        ProcessingSession session;
        const int opened = OpenProcessingSession(options.processing, session);
        if (opened != kExitOk) return opened;
        CSurveyKVRDoc& doc = *session.document;
        ProfileCollector collector;
        if (!doc.Recompute(options.profiles ? &collector : nullptr)) {
            std::fprintf(stderr, "%s: the data file could not be read\n", options.processing.path.c_str());
            return kExitFailure;
        }
        if (options.json) {
            nlohmann::json out = MeasurementJson(doc);
            if (options.profiles) out["profiles"] = ProfilesJson(collector.Rows());
            PrintJson(out);
        } else {
            PrintText(MeasurementText(doc, doc.Settings().UnitSystem));
        }
        if (options.save && !doc.SaveSideFile()) {
            std::fprintf(stderr, "%s: the .cfg could not be written\n", options.processing.path.c_str());
            return kExitFailure;
        }
        return kExitOk;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s: %s\n", options.processing.path.c_str(), e.what());
        return kExitBadFile;
    }
}

const CommandRegistration registration{Command{
    "process",
    "Process a data file (.kvr) with its .cfg and .pmk and print the discharge measurement",
    [](CLI::App& sub) -> std::function<int()> {
        auto options = std::make_shared<ProcessCommandOptions>();
        AddProcessingOptions(sub, options->processing);
        sub.add_flag("--save", options->save, "Write the .cfg as closing the document would (not while locked)");
        sub.add_flag("--json", options->json, "Print one JSON object in metric SI units");
        sub.add_flag("--profiles", options->profiles, "With --json: add the results of every profile");
        return [options] { return RunProcess(*options); };
    }}};

}  // namespace
}  // namespace rm::cli
