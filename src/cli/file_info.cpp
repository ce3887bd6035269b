#include "cli/file_info.h"

#include <cstdio>
#include <exception>
#include <sstream>

#include "data/pmk_file.h"
#include "data/record_dumps.h"

namespace rm::cli {

namespace {

const char* CoordinateSystemName(int code) {
    switch (code) {
        case 0: return "BEAM";
        case 1: return "XYZ";
        case 2: return "ENU";
        default: return "unknown";
    }
}

// The checkbox of the dialog as text.
const char* Check(bool on) { return on ? "[x]" : "[ ]"; }

std::string Line(const char* label, const std::string& value) {
    if (value.empty()) return std::string(label) + "\n";
    char head[64];
    std::snprintf(head, sizeof head, "%-22s", label);
    return head + value + "\n";
}

template <class Dump>
std::string DumpToString(Dump dump) {
    std::ostringstream out;
    dump(out);
    return out.str();
}

}  // namespace

std::string FormatProfileTime(const ProfileTime& t) {
    DumpDateTime d;
    d.year = t.year;
    d.month = t.month;
    d.day = t.day;
    d.hour = t.hour;
    d.minute = t.minute;
    d.second = t.second;
    return FormatDumpDateTime(d);
}

KvrFileInfo CollectFileInfo(const std::string& path, const CKvrData& data) {
    KvrFileInfo info;
    info.path = path;
    info.sizeBytes = data.FileSize();
    info.sizeText = FormatFileSize(static_cast<uint64_t>(info.sizeBytes < 0 ? 0 : info.sizeBytes));

    const InstrumentConf& conf = data.conf;
    const UserSetup& user = data.user;
    const ProfileLayout& layout = data.Layout();
    info.frequencyKHz = DisplayFrequencyKHz(conf.KvrType);
    info.frequencyName = FrequencyName(conf.KvrType);
    info.serialNumber = conf.SerialNumber;
    info.cells = layout.cells;
    info.beams = layout.beams;
    info.profiles = data.ProfileCount();
    info.bursts = data.BurstCount();
    info.coordinateSystem = CoordinateSystemName(user.CoordinateSystem);
    info.deploymentName = user.DeploymentName;
    if (info.profiles > 0) {
        info.firstProfileTime = FormatProfileTime(data.FirstProfileTime());
        info.lastProfileTime = FormatProfileTime(data.LastProfileTime());
    }

    // The flags tell what the records of this file hold, so they follow the record layout
    // (which already applies the operation limits to bottom tracking).
    info.gps = layout.gps != GpsForm::None;
    info.bottomTrack = layout.bottomTrack;
    info.bottomTrackMode = data.derived.bottomTrackMode;
    info.externalSensor = layout.extSensor;
    info.ctd = layout.ctd;
    info.waves = data.Waves().HasBursts();
    info.pulseCoherent = user.PCMode != 0;

    PmkSettings pmk;
    try {
        if (ReadPmkSettings(path, pmk)) info.echoSounder = pmk.echoSounderPresent != 0;
    } catch (const std::exception& e) {
        info.pmkProblem = e.what();
    }

    info.comments = {user.CommentLine1, user.CommentLine2, user.CommentLine3};
    info.fileVersion = data.FileVersion();
    info.headerLength = data.HeaderSize();
    info.recordSize = data.RecordSize();
    info.burstSize = info.waves ? data.BurstSize() : 0;

    info.configurationDump = DumpToString([&](std::ostream& out) { DumpConfiguration(out, conf); });
    info.setupDump = DumpToString([&](std::ostream& out) { DumpSetup(out, user); });
    info.cellTableDump = DumpToString([&](std::ostream& out) { DumpCellTable(out, user); });
    return info;
}

std::string FormatFileInfoText(const KvrFileInfo& info) {
    const std::string none = "--";
    std::string text = "FileName: " + info.path + "\n\nKVR File Information\n";
    text += Line("File Size:", info.sizeText);
    text += Line("Frequency:", info.frequencyName);
    text += Line("Serial Number:", info.serialNumber);
    text += Line("Cells:", std::to_string(info.cells));
    text += Line("Profiles:", std::to_string(info.profiles));
    text += Line("First Profile:", info.firstProfileTime.empty() ? none : info.firstProfileTime);
    text += Line("Last Profile:", info.lastProfileTime.empty() ? none : info.lastProfileTime);
    text += Line("GPS Data:", Check(info.gps));
    text += Line("Echo Sounder Data:", Check(info.echoSounder));
    text += Line("Bottom Track Data:", Check(info.bottomTrack));
    text += Line("External Sensor:", Check(info.externalSensor));
    text += Line("CTD Data:", Check(info.ctd));
    text += Line("Wave Data:", Check(info.waves));
    text += Line("PC-KVR Data:", Check(info.pulseCoherent));
    for (size_t i = 0; i < info.comments.size(); ++i) text += Line(i == 0 ? "Comments:" : "", info.comments[i]);
    if (!info.pmkProblem.empty()) text += "The .pmk file could not be read: " + info.pmkProblem + "\n";

    text += "\nConfiguration" + info.configurationDump + "\n";
    text += "\nSetup" + info.setupDump + "\n";
    text += "\nCells" + info.cellTableDump + "\n";
    return text;
}

nlohmann::json FileInfoJson(const KvrFileInfo& info) {
    auto timeOrNull = [](const std::string& t) { return t.empty() ? nlohmann::json(nullptr) : nlohmann::json(t); };
    nlohmann::json j;
    j["file"] = info.path;
    j["size"] = info.sizeBytes;
    j["size_text"] = info.sizeText;
    j["frequency"] = info.frequencyKHz;
    j["frequency_name"] = info.frequencyName;
    j["serial_number"] = info.serialNumber;
    j["cells"] = info.cells;
    j["beams"] = info.beams;
    j["profiles"] = info.profiles;
    j["bursts"] = info.bursts;
    j["coordinate_system"] = info.coordinateSystem;
    j["deployment_name"] = info.deploymentName;
    j["first_profile_time"] = timeOrNull(info.firstProfileTime);
    j["last_profile_time"] = timeOrNull(info.lastProfileTime);
    j["gps"] = info.gps;
    j["echo_sounder"] = info.echoSounder;
    j["bottom_track"] = info.bottomTrack;
    j["bottom_track_mode"] = info.bottomTrackMode;
    j["external_sensor"] = info.externalSensor;
    j["ctd"] = info.ctd;
    j["waves"] = info.waves;
    j["pulse_coherent"] = info.pulseCoherent;
    j["comments"] = info.comments;
    j["file_version"] = info.fileVersion;
    j["header_length"] = info.headerLength;
    j["record_size"] = info.recordSize;
    j["burst_size"] = info.burstSize;
    if (!info.pmkProblem.empty()) j["pmk_problem"] = info.pmkProblem;
    return j;
}

}  // namespace rm::cli
