// ripplemark-cli export FILE.kvr --format FORMAT [-o OUT] [processing options]: writes one of
// the program's output files of a recording, processed as the `process` command processes it.
// The formats stand in one table: name, extension, writer.

#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/dis_export.h"
#include "cli/ascii_export.h"
#include "cli/command.h"
#include "cli/exchange_export.h"
#include "cli/processing_session.h"
#include "data/side_file_path.h"
#include "output/sum_file_export.h"

namespace rm::cli {
namespace {

// Settings of a single format, beyond the processing options.
struct FormatExtras {
    std::optional<double> declination;  // velocity set: "Magnetic Declination" of the dialog
};

struct ExportFormat {
    const char* name;
    const char* extension;  // of the default output file, beside the data file
    const char* help;
    std::function<bool(ProcessingSession& session, const std::string& out, const FormatExtras& extras)> write;
};

const std::vector<ExportFormat>& Formats() {
    static const std::vector<ExportFormat> formats{
        {"dis", ".dis", "per-profile discharge text with the measurement's totals",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) {
             return ExportDisFile(*s.document, s.app, s.prompt, out);
         }},
        {"sum", ".sum", "the transect's text summary (Discharge Calculation \"Output to File\")",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) {
             return ExportSumFile(*s.document, s.app, s.prompt, out);
         }},
        // Plain-text exports. For the per-variable kinds (ctl ... velocity) -o names the stem
        // that the extensions are appended to.
        {"universal", ".T", "Universal ASCII: head, discharge summary and a line per profile",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportUniversalAscii(s, out); }},
        {"t", ".tformat", "\"T\" format: a block of lines per profile with one line per cell",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportTFormat(s, out); }},
        {"ctl", "", "configuration text (.ctl) of the records",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportAsciiFiles(s, AsciiOutputKind::Configuration, out); }},
        {"hdr", "", "profile header values (.hdr)",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportAsciiFiles(s, AsciiOutputKind::Header, out); }},
        {"amplitude", "", "signal strength per beam (.a1 ...)",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportAsciiFiles(s, AsciiOutputKind::SignalStrength, out); }},
        {"stddev", "", "standard deviation per beam (.sd1 ...)",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportAsciiFiles(s, AsciiOutputKind::StdDeviation, out); }},
        {"snr", "", "signal-to-noise ratio per beam (.sn1 ...)",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportAsciiFiles(s, AsciiOutputKind::SnRatio, out); }},
        {"gps", "", "GPS fixes and velocity per profile (.gps)",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportAsciiFiles(s, AsciiOutputKind::Gps, out); }},
        {"velocity", "", "velocity set with speed and direction (.ve/.vx/.v1 ..., .spd, .dir)",
         [](ProcessingSession& s, const std::string& out, const FormatExtras& x) {
             return ExportAsciiFiles(s, AsciiOutputKind::Velocity, out, x.declination);
         }},
        {"all", "", "\"Write All Files\": every per-variable kind above (ctl ... velocity)",
         [](ProcessingSession& s, const std::string& out, const FormatExtras& x) {
             return ExportAllAsciiFiles(s, out, x.declination);
         }},
        {"raw-gps", ".raw_gps", "GPS sentences kept in the .pmk",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportRawSentenceFile(s, RawSentenceKind::Gps, out); }},
        {"raw-echo", ".raw_echo", "echo sounder sentences kept in the .pmk",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportRawSentenceFile(s, RawSentenceKind::EchoSounder, out); }},
        {"dump", ".dump", "per-profile diagnostic text dump (CR LF line ends)",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportProfileDump(s, out); }},
        {"fdx", ".fdx", "flow data exchange text of the measurement (one Measurement block)",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportFdxFile(s, out); }},
        {"fpx", ".fpx", "flow data exchange tree of the measurement (binary settings-tree form)",
         [](ProcessingSession& s, const std::string& out, const FormatExtras&) { return ExportFpxFile(s, out); }},
    };
    return formats;
}

struct ExportOptions {
    ProcessingOptions processing;
    std::string format;
    std::string out;
    FormatExtras extras;
};

int RunExport(const ExportOptions& options) {
    const ExportFormat* format = nullptr;
    for (const ExportFormat& f : Formats()) {
        if (options.format == f.name) format = &f;
    }
    if (format == nullptr) {
        std::fprintf(stderr, "export: unknown format \"%s\"\n", options.format.c_str());
        return kExitUsage;
    }
    if (options.extras.declination && options.format != "velocity" && options.format != "all") {
        std::fprintf(stderr, "export: --declination applies to --format velocity and all only\n");
        return kExitUsage;
    }
    try {
        ProcessingSession session;
        const int opened = OpenProcessingSession(options.processing, session);
        if (opened != kExitOk) return opened;
        const std::string out =
            options.out.empty() ? SideFilePath(options.processing.path, format->extension) : options.out;
        if (!format->write(session, out, options.extras)) {
            std::fprintf(stderr, "export: %s could not be written\n", out.c_str());
            return kExitFailure;
        }
        std::printf("%s\n", out.c_str());
        return kExitOk;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s: %s\n", options.processing.path.c_str(), e.what());
        return kExitBadFile;
    }
}

std::string FormatList() {
    std::string list;
    for (const ExportFormat& f : Formats()) list += std::string(list.empty() ? "" : ", ") + f.name + " (" + f.help + ")";
    return list;
}

const CommandRegistration registration{Command{
    "export",
    "Write an output file of a data file (.kvr), processed with its .cfg and .pmk",
    [](CLI::App& sub) -> std::function<int()> {
        auto options = std::make_shared<ExportOptions>();
        AddProcessingOptions(sub, options->processing);
        sub.add_option("--format", options->format, "Output format: " + FormatList())->required();
        sub.add_option("-o,--out", options->out, "Output file (default: beside the data file)");
        sub.add_option("--declination", options->extras.declination,
                       "Velocity set (velocity, all) only: magnetic declination in degrees used in place of the file's own")
            ->check(CLI::Range(-180.0, 180.0));
        return [options] { return RunExport(*options); };
    }}};

}  // namespace
}  // namespace rm::cli
