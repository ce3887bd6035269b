#pragma once
// What the load dialog shows of a data file under "KVR File Information", gathered from the
// file and its .pmk, and its two presentations: text for a terminal and a JSON object.

#include <array>
#include <cstdint>
#include <string>

#include <nlohmann/json.hpp>

#include "data/kvr_data.h"

namespace rm::cli {

struct KvrFileInfo {
    std::string path;
    int64_t sizeBytes = 0;
    std::string sizeText;  // "%d bytes", "%4.2f kB", "%4.2f MB" or "%4.2f GB"

    int frequencyKHz = 0;       // the display frequency of the system
    std::string frequencyName;  // as the configuration dump names it
    std::string serialNumber;
    int cells = 0;
    int beams = 0;
    int profiles = 0;
    int bursts = 0;
    std::string coordinateSystem;  // "BEAM", "XYZ" or "ENU"
    std::string deploymentName;

    // Times of the first and last profile; empty when the file holds no whole profile.
    std::string firstProfileTime;
    std::string lastProfileTime;

    // The seven data flags of the dialog.
    bool gps = false;
    bool echoSounder = false;  // from the .pmk's Settings tree
    bool bottomTrack = false;
    bool externalSensor = false;
    bool ctd = false;
    bool waves = false;
    bool pulseCoherent = false;
    int bottomTrackMode = 0;  // 0 off, 1 on, 2 on with the shallow-water ping

    std::array<std::string, 3> comments;
    // Why the .pmk's Settings could not be read, when it exists but is damaged.
    std::string pmkProblem;

    int fileVersion = 0;
    int64_t headerLength = 0;  // bytes before the first record
    int64_t recordSize = 0;    // bytes of one profile record
    int64_t burstSize = 0;     // bytes of one wave burst record, 0 without waves

    // The text dumps of the instrument's records.
    std::string configurationDump;
    std::string setupDump;
    std::string cellTableDump;
};

// The time of a profile as the dialog shows it: "%4d/%02d/%02d  %02d:%02d:%02d".
std::string FormatProfileTime(const ProfileTime& time);

// Gathers the facts of a data file whose head `data` has read (see OpenKvrFile). `path` names
// the file; its .pmk, when there is one, gives the echo sounder flag.
KvrFileInfo CollectFileInfo(const std::string& path, const CKvrData& data);

// The dialog's facts, one per line, then the dumps of configuration, setup and cell table.
std::string FormatFileInfoText(const KvrFileInfo& info);

// One object with the facts (not the dumps); times in the dialog's format, null when absent.
nlohmann::json FileInfoJson(const KvrFileInfo& info);

}  // namespace rm::cli
