// The command line of the simulated instrument: what each command answers and changes.

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "data/byte_io.h"
#include "data/instrument_records.h"
#include "link/logged_reads.h"
#include "link/variable_structure.h"
#include "sim/simulated_instrument.h"
#include "data/civil_date.h"

namespace rm::sim {

namespace {

std::string Lower(std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

std::string Trim(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    const size_t last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

// A whole decimal number, nothing else.
bool ParseNumber(const std::string& text, double& value) {
    if (text.empty()) return false;
    char* end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return end != text.c_str() && *end == '\0' && std::isfinite(value);
}

std::string Framed(const uint8_t* payload, size_t size, bool marker) {
    const std::vector<uint8_t> frame = EncodeVariableFrame(payload, size);
    std::string bytes = "\r\nOK\r\n";
    if (marker) bytes.push_back(static_cast<char>(kReplyMarker));
    bytes.append(frame.begin(), frame.end());
    return bytes + "\r\n>";
}

int64_t SecondsOf(const CivilTime& t) {
    return DaysFromCivil(t.year, t.month, t.day) * 86400 + t.hour * 3600 + t.minute * 60 + t.second;
}

const char* CoordinateName(int system) {
    static const char* const kNames[] = {"BEAM", "XYZ", "ENU"};
    return system >= 0 && system <= 2 ? kNames[system] : "?";
}

const char* BottomTrackWord(int mode) { return mode == 1 ? "YES" : mode == 2 ? "SW_PING" : "NO"; }

}  // namespace

void SimulatedInstrument::Execute(const std::string& rawLine, double nowS) {
    const std::string line = Trim(rawLine);
    const size_t blank = line.find(' ');
    const std::string word = Lower(line.substr(0, blank));
    const std::string argument = blank == std::string::npos ? std::string() : Trim(line.substr(blank + 1));
    const std::string lowerArgument = Lower(argument);
    const InstrumentConf& conf = records_.conf;
    UserSetup& user = records_.user;
    char text[128];

    if (word.empty()) {
        Answer({});
    } else if (word == "ver") {
        if (behaviour_.replyMarker) Emit(std::string(1, static_cast<char>(kReplyMarker)));
        Answer({VersionLine(behaviour_.family, conf.CPUSoftwareVerNum, conf.SerialNumber), "Ready"});
    } else if (word == "systemtype") {
        Answer({SystemTypeLine(behaviour_.family)});
    } else if (word == "get") {
        GetRecord(Lower(argument));
    } else if (word == "load") {
        BeginLoad(Lower(argument), nowS);
    } else if ((word == "save" && lowerArgument == "setup") || word == "savesetup") {
        AnswerOk("Setup saved");
    } else if (word == "cs") {
        CellSize(argument);
    } else if (word == "nc") {
        NumberOfCells(argument);
    } else if (word == "bt" && argument.empty()) {
        Answer({std::string("Bottom Track Current: ") + BottomTrackWord(user.BottomTrack)});
    } else if (word == "enablebtrack") {
        Answer({"Bottom track enabled: YES"});
    } else if (word == "enablewaves") {
        Answer({"Waves Current: NO"});
    } else if (word == "pm") {
        PulseCoherent(lowerArgument);
    } else if (word == "def") {
        records_ = defaults_;
        AnswerOk("Default settings loaded");
    } else if (word == "of") {
        if (behaviour_.refuseBinary && lowerArgument == "binary") return AnswerError("binary output not available");
        settings_["of"] = argument;
        AnswerOk();
    } else if (word == "setup") {
        // In pulse-coherent mode a banner ending in 'U' comes before the acknowledgement.
        if (user.PCMode != 0) return Answer({"Pulse coherent mode: U", "OK User setup accepted"});
        AnswerOk("User setup accepted");
    } else if (word == "start") {
        StartCollecting(nowS);
    } else if (word == "stop") {
        AnswerOk("Not collecting");
    } else if (word == "cbd" || word == "ccs" || word == "cpg" || word == "cpl" || word == "nbp") {
        double value = 0.0;
        const std::string number = lowerArgument.rfind("set ", 0) == 0 ? Trim(argument.substr(4)) : argument;
        if (!ParseNumber(number, value)) return AnswerError("bad value");
        settings_[word] = number;
        AnswerOk();
    } else if (word == "date") {
        argument.empty() ? ShowDate(nowS) : SetClock(argument, true, nowS);
    } else if (word == "time") {
        argument.empty() ? ShowTime(nowS) : SetClock(argument, false, nowS);
    } else if (word == "test") {
        Answer({"Memory test ........ passed", "Receiver test ...... passed", "Transmitter test ... passed",
                "All tests passed"});
    } else if (word == "show" && lowerArgument == "conf") {
        std::snprintf(text, sizeof text, "Beams %d  Frequency index %d  Firmware %d.%d", conf.Nbeams, conf.KvrType,
                      conf.CPUSoftwareVerNum / 10, conf.CPUSoftwareVerNum % 10);
        Answer({"Serial number " + conf.SerialNumber, text,
                std::string("Orientation ") + (conf.SensorOrientation == 0 ? "DOWN" : conf.SensorOrientation == 1 ? "UP" : "SIDE"),
                std::string("Internal GPS ") + (conf.InternalGpsAvailable ? "installed" : "not installed")});
    } else if (word == "show" && lowerArgument == "system") {
        Answer({SystemTypeLine(behaviour_.family), "Battery 12.0 V", "Recorder installed"});
    } else if (word == "show" && lowerArgument == "setup") {
        std::snprintf(text, sizeof text, "Cells %d  Cell size %.0f cm  Blanking %d cm  Interval %d s",
                      user.NumberOfCells, user.CellSizeCm, user.BlankDistance, user.ProfileInterval);
        Answer({text, std::string("Coordinates ") + CoordinateName(user.CoordinateSystem),
                std::string("Bottom track ") + BottomTrackWord(user.BottomTrack)});
    } else if (word == "show" && lowerArgument == "deploy") {
        Answer({"Deployment " + user.DeploymentName});
    } else if (word == "show" && lowerArgument == "other") {
        const auto of = settings_.find("of");
        Answer({"Output format " + (of == settings_.end() ? std::string("ASCII") : of->second)});
    } else if (word == "sensor" && lowerArgument == "cont") {
        StartListing(1, nowS);
    } else if (word == "compass" && lowerArgument == "cont") {
        if (conf.CompassInstalled == 0) return AnswerError("no compass");
        StartListing(2, nowS);
    } else if (word == "gps") {
        InternalGps(lowerArgument);
    } else if (word == "echo" && argument == "1") {
        if (conf.InternalGpsAvailable == 0 || user.EnableInternalGps == 0) return AnswerError("internal GPS off");
        Emit("\r\nOK");
        StartListing(3, nowS);
    } else {
        AnswerError("Unknown command");
    }
}

void SimulatedInstrument::GetRecord(const std::string& name) {
    const bool marker = behaviour_.replyMarker;
    if (name == "conf") {
        const auto image = EncodeConf(records_.conf);
        Emit(Framed(image.data(), image.size(), marker));
    } else if (name == "user") {
        const auto image = EncodeUser(records_.user, records_.conf);
        Emit(Framed(image.data(), image.size(), marker));
    } else if (name == "oper") {
        const auto image = EncodeOper(records_.oper, records_.conf);
        Emit(Framed(image.data(), image.size(), marker));
    } else {
        AnswerError("no such structure");
    }
}

void SimulatedInstrument::BeginLoad(const std::string& name, double nowS) {
    if (name != "user") return AnswerError("structure cannot be loaded");
    loadName_ = name;
    loadBytes_.clear();
    loadDeadlineS_ = nowS + kLoadTimeoutS;
    mode_ = Mode::Loading;
    Emit("\r\nOK\r\n");
}

void SimulatedInstrument::FinishLoad() {
    mode_ = Mode::Prompt;
    std::string received;
    received.swap(loadBytes_);
    const auto* data = reinterpret_cast<const uint8_t*>(received.data());
    const ByteReader frame(data, received.size());
    const size_t length = frame.u16(0);
    if (length != kUserSize + kVariableFrameOverhead || received.size() < length)
        return AnswerError("wrong record length");
    const uint8_t* payload = data + 2;
    if (RecordChecksum(payload, kUserSize) != frame.u16(length - 2)) return AnswerError("bad checksum");
    InstrumentRecords loaded = records_;
    if (DecodeUser(payload, kUserSize, loaded.conf, loaded.user) != RecordStatus::Ok)
        return AnswerError("not a user setup record");
    std::string problem;
    if (!AcceptSetup(loaded, problem)) return AnswerError(problem);
    AnswerOk("User setup loaded");
}

bool SimulatedInstrument::AcceptSetup(const InstrumentRecords& records, std::string& problem) {
    problem = ValidateScenario(ScenarioForRecords(scenario_, records));
    if (!problem.empty()) return false;
    records_ = records;
    return true;
}

void SimulatedInstrument::CellSize(const std::string& argument) {
    double cm = 0.0;
    if (!ParseNumber(argument, cm)) return AnswerError("bad value");
    if (cm < kMinCellSizeCm || cm > kMaxCellSizeCm) {
        char text[96];
        std::snprintf(text, sizeof text, "Cell Size out of range: %.2f to %.2f cm", kMinCellSizeCm, kMaxCellSizeCm);
        return Answer({text});
    }
    InstrumentRecords changed = records_;
    changed.user.CellSizeCm = static_cast<float>(std::round(cm));
    std::string problem;
    if (!AcceptSetup(changed, problem)) return AnswerError(problem);
    AnswerOk();
}

void SimulatedInstrument::NumberOfCells(const std::string& argument) {
    double cells = 0.0;
    if (!ParseNumber(argument, cells) || cells != std::floor(cells)) return AnswerError("bad value");
    if (cells < 1 || cells > kMaxCells) {
        char text[96];
        std::snprintf(text, sizeof text, "Number of Cells out of range: %d to %d", 1, kMaxCells);
        return Answer({text});
    }
    InstrumentRecords changed = records_;
    changed.user.NumberOfCells = static_cast<uint16_t>(cells);
    std::string problem;
    if (!AcceptSetup(changed, problem)) return AnswerError(problem);
    AnswerOk();
}

void SimulatedInstrument::PulseCoherent(const std::string& argument) {
    UserSetup& user = records_.user;
    if (argument.empty()) return Answer({std::string("PCMode Current: ") + (user.PCMode ? "YES" : "NO")});
    if (argument != "yes" && argument != "no") return AnswerError("bad value");
    const bool tenthsBefore = IntervalsInTenths(user);
    user.PCMode = argument == "yes" ? 1 : 0;
    // The intervals keep their length in seconds when their unit changes.
    if (IntervalsInTenths(user) != tenthsBefore) {
        const auto convert = [tenthsBefore](uint16_t v) {
            return static_cast<uint16_t>(tenthsBefore ? std::max((v + 5) / 10, 1) : v * 10);
        };
        user.AveragingInterval = convert(user.AveragingInterval);
        user.ProfileInterval = convert(user.ProfileInterval);
    }
    AnswerOk(std::string("PCMode set to ") + (user.PCMode ? "YES" : "NO"));
}

void SimulatedInstrument::InternalGps(const std::string& argument) {
    if (records_.conf.InternalGpsAvailable == 0) return AnswerError("no internal GPS");
    if (argument != "yes" && argument != "no") return AnswerError("bad value");
    records_.user.EnableInternalGps = argument == "yes" ? 1 : 0;
    AnswerOk(std::string("Internal GPS ") + (argument == "yes" ? "enabled" : "disabled"));
}

void SimulatedInstrument::ShowDate(double nowS) {
    const CivilTime t = ClockAt(nowS);
    char text[48];
    std::snprintf(text, sizeof text, "Current date is %04d/%02d/%02d", t.year, t.month, t.day);
    Answer({text});
}

void SimulatedInstrument::ShowTime(double nowS) {
    const CivilTime t = ClockAt(nowS);
    char text[48];
    std::snprintf(text, sizeof text, "Current time is %02d:%02d:%02d", t.hour, t.minute, t.second);
    Answer({text});
}

void SimulatedInstrument::SetClock(const std::string& argument, bool date, double nowS) {
    int a = 0, b = 0, c = 0;
    char rest = 0;
    const CivilTime now = ClockAt(nowS);
    if (std::sscanf(argument.c_str(), date ? "%d/%d/%d%c" : "%d:%d:%d%c", &a, &b, &c, &rest) != 3)
        return AnswerError(date ? "bad date" : "bad time");
    // The half not named stays; ParseCivilTime refuses an impossible date or time.
    const CivilTime asked = date ? CivilTime{a, b, c, now.hour, now.minute, now.second}
                                 : CivilTime{now.year, now.month, now.day, a, b, c};
    char iso[80];
    std::snprintf(iso, sizeof iso, "%04d-%02d-%02d %02d:%02d:%02d", asked.year, asked.month, asked.day, asked.hour,
                  asked.minute, asked.second);
    CivilTime wanted;
    if (!ParseCivilTime(iso, wanted)) return AnswerError(date ? "bad date" : "bad time");
    clockOffsetS_ += static_cast<double>(SecondsOf(wanted) - SecondsOf(now));
    AnswerOk();
}

}  // namespace rm::sim
