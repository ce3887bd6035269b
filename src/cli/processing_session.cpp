#include "cli/processing_session.h"

#include <cstdio>
#include <map>

#include "app/open_document_file.h"
#include "app/settings_path.h"
#include "cli/command.h"
#include "data/side_file_path.h"

namespace rm::cli {

namespace {

bool Readable(const std::string& path) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (f == nullptr) return false;
    std::fclose(f);
    return true;
}

// The load dialog answered from the command line. A choice the dialog refuses ends the open.
struct CommandLineLoadDialog {
    const ProcessingOptions& options;
    std::string problem;

    std::optional<LoadDialogInput> operator()(const LoadDialogInfo& info) {
        if (!info.refusal.empty()) {
            problem = info.refusal;
            return std::nullopt;
        }
        LoadDialogInput input;
        const int count = info.profileCount;
        const bool selected = options.first > 0 || options.last > 0;
        input.allProfiles = !selected;
        input.start = options.first > 0 ? options.first : 1;
        input.end = options.last > 0 ? options.last : count;
        if (selected && (input.start > count || input.end > count)) {
            problem = "--first and --last must lie between 1 and " + std::to_string(count) +
                      " (the profiles of the file)";
            return std::nullopt;
        }
        if (selected && input.end <= input.start) {
            problem = "--last must be greater than --first";
            return std::nullopt;
        }
        input.averageOver = options.average > 0;
        input.n = options.average > 0 ? options.average : options.every > 0 ? options.every : 1;
        return input;
    }
};

int ApplyOptions(const ProcessingOptions& options, ProcessingSession& session) {
    CSurveyKVRDoc& doc = *session.document;
    for (const std::string& assignment : options.sets) {
        const SettingAssignment result = AssignSetting(doc.Root(), assignment);
        if (!result.ok) {
            std::fprintf(stderr, "--set: %s\n", result.message.c_str());
            return kExitUsage;
        }
    }
    if (options.units >= 0) session.app.Set(app_keys::UnitSystem, static_cast<int16_t>(options.units));
    if (options.coordinates >= 0) doc.SetCoordinateSystem(options.coordinates);
    if (options.velocityReference >= 0) doc.SetVelocityReference(options.velocityReference);
    if (options.trackReference >= 0) doc.SetTrackReference(options.trackReference);
    return kExitOk;
}

}  // namespace

void AddProcessingOptions(CLI::App& sub, ProcessingOptions& o) {
    sub.add_option("FILE", o.path, "The data file (.kvr)")->required();
    AddProcessingSettingOptions(sub, o);
}

void AddProcessingSettingOptions(CLI::App& sub, ProcessingOptions& o) {
    static const std::map<std::string, int> kTrack{{"bt", 1}, {"gps", 2}};
    static const std::map<std::string, int> kVelocity{{"kvr", 0}, {"bt", 1}, {"gps", 2}};
    static const std::map<std::string, int> kCoords{{"beam", 0}, {"xyz", 1}, {"enu", 2}};
    static const std::map<std::string, int> kUnits{{"metric", 1}, {"english", 0}};
    sub.add_option("--set", o.sets, "Change a setting below the document root, e.g. Discharge/LeftBankMethod=1")
        ->allow_extra_args(false);
    sub.add_option("--track-ref", o.trackReference, "Track reference: bt or gps")
        ->transform(CLI::CheckedTransformer(kTrack, CLI::ignore_case));
    sub.add_option("--velocity-ref", o.velocityReference, "Velocity reference: kvr, bt or gps")
        ->transform(CLI::CheckedTransformer(kVelocity, CLI::ignore_case));
    sub.add_option("--coords", o.coordinates, "Velocity coordinate system: beam, xyz or enu")
        ->transform(CLI::CheckedTransformer(kCoords, CLI::ignore_case));
    sub.add_option("--units", o.units, "Units of the text output: metric or english")
        ->transform(CLI::CheckedTransformer(kUnits, CLI::ignore_case));
    CLI::Option* first = sub.add_option("--first", o.first, "First profile to load, from 1")->check(CLI::PositiveNumber);
    CLI::Option* last = sub.add_option("--last", o.last, "Last profile to load")->check(CLI::PositiveNumber);
    first->needs(last);
    last->needs(first);
    CLI::Option* every = sub.add_option("--every", o.every, "Load every N-th profile")->check(CLI::Range(1, 99999999));
    sub.add_option("--average", o.average, "Load the mean of every N profiles")
        ->check(CLI::Range(1, 99999999))
        ->excludes(every);
}

int OpenProcessingSession(const ProcessingOptions& options, ProcessingSession& session) {
    if (!Readable(options.path)) {
        std::fprintf(stderr, "%s: cannot open the file\n", options.path.c_str());
        return kExitBadFile;
    }
    CommandLineLoadDialog dialog{options, ""};
    // The whole selection is held in the window, so that every profile's results stay at hand
    // and the pass runs over one ring as long as the data set.
    CSurveyKVRDoc::Options documentOptions;
    documentOptions.profilesHeld = 1 << 30;
    LoadFields fields;
    session.document = OpenDocumentFile(
        options.path, session.app, session.prompt,
        [&dialog](const LoadDialogInfo& info) { return dialog(info); }, std::move(documentOptions), &fields);
    if (!dialog.problem.empty()) {
        std::fprintf(stderr, "%s\n", dialog.problem.c_str());
        return kExitUsage;
    }
    if (!session.document) return kExitBadFile;
    return ApplyOptions(options, session);
}

std::string TimeText(const ProfileHeader& header) {
    const ProfileTime t = TimeOfHeader(header);
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d.%02d", t.year, t.month, t.day, t.hour, t.minute,
                  t.second, t.hundredths);
    return text;
}

}  // namespace rm::cli
