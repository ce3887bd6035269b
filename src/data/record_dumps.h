#pragma once
// Text dumps of the instrument's records and of a data file's facts, as shown in the load
// dialog and written to the configuration (.ctl) export. Every line has the form
//   "\n" + label + " " + dashes up to column 30 + "> " + value
// so that the '>' markers of all lines stand in column 31.

#include <cstdint>
#include <ostream>
#include <string>

#include "data/instrument_records.h"

namespace rm {

constexpr size_t kDumpMarkerColumn = 31;  // column of '>' counted from 1 after the newline

// One dump line. A label too long for the column gets no dashes and pushes the marker right.
std::string DumpLine(const std::string& label, const std::string& value);

struct DumpDateTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

// The facts of a data file that the reader has counted; the dump adds frequency, serial number
// and cells from the records.
struct FileSummary {
    std::string fileName;
    uint64_t fileSize = 0;  // bytes
    int fileVersion = 0;
    uint32_t profileCount = 0;
    uint32_t burstCount = 0;
    uint32_t headerLength = 0;  // bytes before the first profile
    uint32_t profileSize = 0;   // bytes of one profile record
    uint32_t burstSize = 0;     // bytes of one wave burst record, 0 without waves
    bool hasProfileTimes = false;
    DumpDateTime firstProfile, lastProfile;
    bool gpsData = false;
    bool echoSounderData = false;
    bool bottomTrackData = false;
    bool extSensorData = false;
    bool ctdData = false;
    bool waveData = false;
    bool pcData = false;
};

// A file size as the load dialog and the file summary show it: "%d bytes" below 1024 bytes,
// then "%4.2f kB", "%4.2f MB" and "%4.2f GB" from 1024, 1024^2 and 1024^3 bytes.
std::string FormatFileSize(uint64_t bytes);
// "%4d/%02d/%02d  %02d:%02d:%02d": year, month, day, hour, minute, second.
std::string FormatDumpDateTime(const DumpDateTime& t);

void DumpFileSummary(std::ostream& out, const FileSummary& file, const InstrumentConf& conf,
                     const UserSetup& user);
void DumpConfiguration(std::ostream& out, const InstrumentConf& conf);
void DumpSetup(std::ostream& out, const UserSetup& user);
void DumpOperation(std::ostream& out, const OperationRecord& oper);
// One line per cell: its number from 1 and the distance of its centre from the surface.
void DumpCellTable(std::ostream& out, const UserSetup& user);

}  // namespace rm
