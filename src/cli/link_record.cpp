#include <cstdio>
#include <memory>
#include <sstream>
#include <sys/stat.h>

#include "cli/command.h"
#include "cli/json_output.h"
#include "cli/measurement_output.h"
#include "cli/processing_session.h"
#include "cli/record_command.h"
#include "cli/recording_folder.h"
#include "app/survey_document.h"
#include "link/port_record.h"
#include "link/prepare_collection.h"
#include "link/prompt_dialogue.h"
#include "link/user_setup_retrieval.h"
#include "processing/display_units.h"
#include "processing/edges.h"

namespace rm::cli {

volatile std::sig_atomic_t gRecordInterrupted = 0;

namespace {

bool IsFolder(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool Exists(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0;
}

// The ports of the job, open for its whole life.
struct RecordPorts {
    SerialPortRecord instrument;
    std::unique_ptr<SerialPort> gps;
    std::unique_ptr<SerialPort> echo;
};

bool OpenNmeaPort(SerialPortFactory& factory, const PortChoice& choice, std::unique_ptr<SerialPort>& port,
                  UserPrompt& prompt) {
    if (choice.path.empty()) return true;
    std::string error;
    port = OpenLinkPort(factory, choice.path, choice.baud, error);
    if (!port) prompt.Message(error);
    return port != nullptr;
}

// Opens the instrument's port and reads its setup into the document's records; then the GPS
// choice: an external receiver on the command line, otherwise the instrument's own receiver when
// its setup uses it. False after the message.
bool ReadInstrumentSetup(SerialPortFactory& factory, const RecordChoices& choices, RecordPorts& ports,
                         CKvrData& kvr, InstrumentLinkState& link, UserPrompt& prompt) {
    ports.instrument.PortPath = choices.instrument.path;
    ports.instrument.BaudRate = choices.instrument.baud;
    if (ReopenPortRecord(factory, ports.instrument) != 1 || !ports.instrument.Port) {
        prompt.Message(std::string(kInitializePortErrorText) + ": " + choices.instrument.path);
        return false;
    }
    {
        PromptDialogue dialogue(*ports.instrument.Port, prompt, "");
        const int retrieved = RetrieveUserSetup(dialogue, kvr, link);
        if (retrieved != kRetrievalDone) {
            prompt.Message(RetrievalFailureText(retrieved));
            return false;
        }
    }
    if (!choices.gps.path.empty()) {
        link.GpsOn = true;
        link.GpsSource = kGpsSourceExternal;
    } else if (kvr.user.EnableInternalGps != 0 && kvr.conf.InternalGpsAvailable != 0) {
        link.GpsOn = true;
        link.GpsSource = kGpsSourceInternal;
    }
    return true;
}

// Runs the 250 ms tick on the instrument port's clock until the job's end; false when the
// recording stopped by itself (a disk failure).
bool RunTicks(CSurveyKVRDoc& doc, SerialPort& clock, const RecordChoices& choices) {
    const uint32_t start = clock.TickMs();
    uint32_t next = start;
    for (;;) {
        doc.OnAcquisitionTick();
        if (doc.PlayState() != kStateRecording) return false;
        if (gRecordInterrupted) return true;
        if (choices.profiles > 0 && doc.Acquisition()->ProfilesWritten() >= choices.profiles) return true;
        const uint32_t now = clock.TickMs();
        if (choices.seconds > 0 && TicksSince(start, now) >= static_cast<uint32_t>(choices.seconds * 1000.0))
            return true;
        next += kAcquisitionTickMs;
        // A long step is not made up with ticks back to back: the ticks missed are dropped.
        if (static_cast<int32_t>(next - now) <= 0) next = now + 1;
        clock.SleepMs(next - now);
    }
}

// One line per profile on stderr while recording: its number, good or lost, and the running
// total discharge, so that the flow can be watched as it comes.
void PrintProgress(const CSurveyKVRDoc& doc, int profileCount, bool good) {
    if (doc.PlayState() != kStateRecording) return;
    const int units = doc.Settings().UnitSystem;
    std::fprintf(stderr, "Profile %d %s  total discharge %.4f %s\n", profileCount, good ? "good" : "lost",
                 ToDisplayUnits(doc.Measurement().TotalDischarge, Quantity::Discharge, units),
                 units == 1 ? "m^3/s" : "ft^3/s");
}

// The edge questions of the recording answered from the command line: the bank of the start and
// the distance to each bank; method and number of profiles as the dialog shows them. The live
// document stores the answers and writes them to the recording's .cfg.
class CommandLineEdges : public EdgeQuestion {
public:
    explicit CommandLineEdges(const RecordChoices& choices) : choices_(choices) {}
    std::optional<EdgeDialogValues> AskEdge(const EdgeDialogValues& shown) override {
        EdgeDialogValues answer = shown;
        if (shown.atStart) answer.side = choices_.startBank;
        answer.measuredDistance = answer.side == kSideLeft ? choices_.leftDistance : choices_.rightDistance;
        return answer;
    }

private:
    const RecordChoices& choices_;
};

// Processes the recording with the .cfg the live document wrote, writes it again and prints the
// measurement; with --json also the total the live document reached (`liveTotal`, m3/s).
int ReportMeasurement(const RecordChoices& choices, const std::string& dataPath, int written, double liveTotal,
                      std::ostream& out) {
    ProcessingOptions options;
    options.path = dataPath;
    ProcessingSession session;
    const int opened = OpenProcessingSession(options, session);
    if (opened != kExitOk) return opened;
    CSurveyKVRDoc& doc = *session.document;
    if (!doc.Recompute(nullptr)) {
        std::fprintf(stderr, "%s: the data file could not be read\n", dataPath.c_str());
        return kExitFailure;
    }
    const bool saved = doc.SaveSideFile();
    std::vector<std::string> files;
    const std::string stem = dataPath.substr(0, dataPath.size() - 4);
    for (const char* ext : {".kvr", ".pmk", ".cfg", ".raw_gps", ".raw_echo"})
        if (Exists(stem + ext)) files.push_back(stem + ext);
    if (choices.json) {
        nlohmann::json result = MeasurementJson(doc);
        result["files"] = files;
        result["profilesWritten"] = written;
        result["liveTotalDischarge"] = liveTotal;
        std::fflush(stdout);
        std::ostringstream text;
        text << result.dump(2) << "\n";
        out << text.str();
    } else {
        for (const std::string& f : files) out << "Wrote " << f << "\n";
        out << "Profiles recorded: " << written << "\n";
        out << MeasurementText(doc, doc.Settings().UnitSystem);
    }
    out.flush();
    if (!saved) {
        std::fprintf(stderr, "%s: the .cfg could not be written\n", dataPath.c_str());
        return kExitFailure;
    }
    return kExitOk;
}

}  // namespace

int RunRecordCommand(SerialPortFactory& factory, const RecordChoices& choices, UserPrompt& prompt, std::ostream& out) {
    if (!choices.directory.empty() && !IsFolder(choices.directory)) {
        prompt.Message("No such folder: " + choices.directory);
        return kExitUsage;
    }
    RecordPorts ports;
    if (!OpenNmeaPort(factory, choices.gps, ports.gps, prompt) || !OpenNmeaPort(factory, choices.echo, ports.echo, prompt))
        return kExitFailure;
    AppSettings app{UserFolders{}};
    CSurveyKVRDoc doc(app, prompt, kModeLive);
    InstrumentLinkState link;
    if (!ReadInstrumentSetup(factory, choices, ports, doc.Data(), link, prompt)) return kExitFailure;
    const std::string directory = choices.directory.empty() ? RecordingFolderFromSettings(prompt) : choices.directory;
    if (directory.empty()) return kExitFailure;
    CommandLineEdges edges(choices);
    doc.SetEdgeQuestion(&edges);

    LiveConnection connection;
    connection.factory = &factory;
    connection.instrument = &ports.instrument;
    connection.link = &link;
    connection.gps = ports.gps.get();
    connection.echo = ports.echo.get();
    if (!doc.StartAcquisition(connection)) return kExitFailure;
    doc.SetLiveProfileObserver([&doc](int count, bool good) { PrintProgress(doc, count, good); });

    DataFileNameRequest request;
    request.directory = directory;
    request.deploymentName = choices.name.empty() ? doc.Data().user.DeploymentName : choices.name;
    request.naming = choices.name.empty() ? FileNaming::Numbered : FileNaming::Plain;
    if (!doc.ToggleRecord(request)) {
        prompt.Message("Nothing was recorded.");
        doc.StopAcquisition();
        return kExitFailure;
    }

    const bool finished = RunTicks(doc, *ports.instrument.Port, choices);
    doc.StopRecording();
    doc.StopAcquisition();
    const std::string dataPath = doc.Acquisition()->DataPath();
    const int written = doc.Acquisition()->ProfilesWritten();
    if (written == 0) {
        prompt.Message("No profile was recorded to " + dataPath);
        return kExitFailure;
    }
    const int reported = ReportMeasurement(choices, dataPath, written, doc.Measurement().TotalDischarge, out);
    if (!finished) return kExitFailure;
    return reported;
}

}  // namespace rm::cli
