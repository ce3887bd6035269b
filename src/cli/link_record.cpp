#include <cstdio>
#include <memory>
#include <sstream>
#include <sys/stat.h>

#include "cli/command.h"
#include "cli/json_output.h"
#include "cli/measurement_output.h"
#include "cli/processing_session.h"
#include "cli/record_command.h"
#include "link/live_acquisition.h"
#include "link/port_record.h"
#include "link/prepare_collection.h"
#include "link/prompt_dialogue.h"
#include "link/user_setup_retrieval.h"

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

// Reads the setup and starts the instrument collecting; false after the message.
bool StartInstrument(SerialPortFactory& factory, const RecordChoices& choices, RecordPorts& ports, CKvrData& kvr,
                     InstrumentLinkState& link, UserPrompt& prompt) {
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
            prompt.Message("Reading the instrument's settings stopped at step " + std::to_string(-retrieved) + ".");
            return false;
        }
    }
    // An external receiver on the command line; otherwise the instrument's own receiver when its
    // setup uses it.
    if (!choices.gps.path.empty()) {
        link.GpsOn = true;
        link.GpsSource = kGpsSourceExternal;
    } else if (kvr.user.EnableInternalGps != 0 && kvr.conf.InternalGpsAvailable != 0) {
        link.GpsOn = true;
        link.GpsSource = kGpsSourceInternal;
    }
    return PrepareCollection(factory, ports.instrument, prompt, kvr, link, "") == kPrepareStarted;
}

// Runs the 250 ms tick on the instrument port's clock until the job's end; false when the
// recording stopped by itself (a disk failure).
bool RunTicks(LiveAcquisition& acquisition, SerialPort& clock, const RecordChoices& choices) {
    const uint32_t start = clock.TickMs();
    uint32_t next = start;
    for (;;) {
        acquisition.OnAcquisitionTick();
        if (acquisition.RunState() != kRunRecording) return false;
        if (gRecordInterrupted) return true;
        if (choices.profiles > 0 && acquisition.ProfilesWritten() >= choices.profiles) return true;
        const uint32_t now = clock.TickMs();
        if (choices.seconds > 0 && TicksSince(start, now) >= static_cast<uint32_t>(choices.seconds * 1000.0))
            return true;
        next += kAcquisitionTickMs;
        // A long step is not made up with ticks back to back: the ticks missed are dropped.
        if (static_cast<int32_t>(next - now) <= 0) next = now + 1;
        clock.SleepMs(next - now);
    }
}

std::vector<std::string> EdgeAssignments(const RecordChoices& c, int written) {
    const int nearBank = 1;
    const int farBank = written > 0 ? written : 1;
    const int left = c.startBank == 0 ? nearBank : farBank;
    const int right = c.startBank == 0 ? farBank : nearBank;
    auto text = [](double v) {
        std::ostringstream s;
        s.precision(17);
        s << v;
        return s.str();
    };
    return {
        "Discharge/MeasuredStartBankSide=" + std::to_string(c.startBank),
        "Discharge/CorrectedStartBankSide=" + std::to_string(c.startBank),
        "Discharge/LeftProfile=" + std::to_string(left),
        "Discharge/RightProfile=" + std::to_string(right),
        "Discharge/MeasuredLeftDistance=" + text(c.leftDistance),
        "Discharge/CorrectedLeftDistance=" + text(c.leftDistance),
        "Discharge/MeasuredRightDistance=" + text(c.rightDistance),
        "Discharge/CorrectedRightDistance=" + text(c.rightDistance),
    };
}

// Processes the recording with the edges of the command line, writes its .cfg and prints the
// measurement.
int ReportMeasurement(const RecordChoices& choices, const std::string& dataPath, int written, std::ostream& out) {
    ProcessingOptions options;
    options.path = dataPath;
    options.sets = EdgeAssignments(choices, written);
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
    if (!IsFolder(choices.directory)) {
        prompt.Message("No such folder: " + choices.directory);
        return kExitUsage;
    }
    RecordPorts ports;
    if (!OpenNmeaPort(factory, choices.gps, ports.gps, prompt) || !OpenNmeaPort(factory, choices.echo, ports.echo, prompt))
        return kExitFailure;
    CKvrData kvr;
    kvr.SetPrompt(&prompt);
    InstrumentLinkState link;
    if (!StartInstrument(factory, choices, ports, kvr, link, prompt)) return kExitFailure;

    LiveAcquisition acquisition(kvr, link, prompt);
    acquisition.SetInstrumentPort(ports.instrument.Port.get());
    acquisition.SetGpsPort(ports.gps.get());
    acquisition.SetEchoPort(ports.echo.get());
    LiveDeviceSettings devices;
    devices.echoOn = ports.echo != nullptr;
    devices.startBankSide = choices.startBank;
    acquisition.SetDevices(devices);
    PromptDialogue dialogue(*ports.instrument.Port, prompt, "");
    if (!acquisition.BeginCollection()) {
        acquisition.StopAcquisition(&dialogue);
        return kExitFailure;
    }

    DataFileNameRequest request;
    request.directory = choices.directory;
    request.deploymentName = choices.name.empty() ? kvr.user.DeploymentName : choices.name;
    request.naming = choices.name.empty() ? FileNaming::Numbered : FileNaming::Plain;
    PmkSettings pmk;
    pmk.gpsPresent = link.GpsOn && link.GpsSource == kGpsSourceExternal ? 1 : 0;
    pmk.echoSounderPresent = devices.echoOn ? 1 : 0;
    if (!acquisition.ToggleRecord(request, pmk)) {
        prompt.Message("Nothing was recorded.");
        if (acquisition.RunState() != kRunStopped) acquisition.StopAcquisition(&dialogue);
        return kExitFailure;
    }

    const bool finished = RunTicks(acquisition, *ports.instrument.Port, choices);
    acquisition.StopRecording();
    acquisition.StopAcquisition(&dialogue);
    const std::string dataPath = acquisition.DataPath();
    const int written = acquisition.ProfilesWritten();
    if (written == 0) {
        prompt.Message("No profile was recorded to " + dataPath);
        return kExitFailure;
    }
    const int reported = ReportMeasurement(choices, dataPath, written, out);
    if (!finished) return kExitFailure;
    return reported;
}

}  // namespace rm::cli
