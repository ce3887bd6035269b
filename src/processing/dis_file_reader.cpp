#include "processing/dis_file_reader.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "processing/processing_types.h"

namespace rm {

namespace {

constexpr float kEnglishLengthFactor = 3.2808f;

bool StartsWith(const std::string& line, const char* prefix, std::string& rest) {
    const std::string p(prefix);
    if (line.compare(0, p.size(), p) != 0) return false;
    rest = line.substr(p.size());
    return true;
}

// The number after "= " in a trailer line; 32767 stays missing whatever the units.
bool TrailerValue(const std::string& rest, double factor, double& out) {
    char* end = nullptr;
    const double v = std::strtod(rest.c_str(), &end);
    if (end == rest.c_str()) return false;
    out = v >= MissingValue ? v : v / factor;
    return true;
}

// The trailer's discharge lines and the record fields they fill.
struct DischargeLine {
    const char* prefix;
    float CDischargeData::*field;
};
constexpr DischargeLine kDischargeLines[] = {
    {"% Top Q      = ", &CDischargeData::TopDischarge},    {"% Measured Q = ", &CDischargeData::MiddleDischarge},
    {"% Bottom Q   = ", &CDischargeData::BottomDischarge}, {"% Left Q     = ", &CDischargeData::LeftDischarge},
    {"% Right Q    = ", &CDischargeData::RightDischarge},  {"% Total Q    = ", &CDischargeData::TotalDischarge},
};

const DischargeLine* DischargeLineOf(const std::string& line, std::string& rest) {
    for (const DischargeLine& q : kDischargeLines) {
        if (StartsWith(line, q.prefix, rest)) return &q;
    }
    return nullptr;
}

struct ProfileLine {
    int number = 0;
    int hour = 0, minute = 0, second = 0, hundredths = 0;
    double distance = 0.0, madeGood = 0.0;
};

bool ParseProfileLine(const std::string& line, ProfileLine& out) {
    return std::sscanf(line.c_str(), "%d %d:%d:%d.%d %lf %lf", &out.number, &out.hour, &out.minute, &out.second,
                       &out.hundredths, &out.distance, &out.madeGood) == 7;
}

}  // namespace

DisReadResult ReadDisFile(const std::string& path, CDischargeData& record) {
    DisReadResult result;
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        result.error = "cannot open the file";
        return result;
    }
    record = CDischargeData{};
    record.settings = NodeRef::MakeNew();
    record.Active = 1;
    bool named = false;
    double L = 1.0;
    ProfileLine last;
    int profiles = 0;
    std::string line, rest;
    while (std::getline(in, line)) {
        // The program writes CR LF; a file that passed through a tool that made LF of it reads
        // the same.
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (StartsWith(line, "% KVR Data File: ", rest)) {
            record.fileName = rest;
            named = true;
        } else if (StartsWith(line, "% Start Date + Time: ", rest)) {
            int y = 0, mo = 0, d = 0, h = 0, mi = 0, s = 0;
            if (std::sscanf(rest.c_str(), "%d/%d/%d %d:%d:%d", &y, &mo, &d, &h, &mi, &s) == 6) {
                ProfileHeader& t = record.startTime;
                t.year = static_cast<int16_t>(y);
                t.month = static_cast<uint8_t>(mo);
                t.day = static_cast<uint8_t>(d);
                t.hour = static_cast<uint8_t>(h);
                t.minute = static_cast<uint8_t>(mi);
                t.second = static_cast<uint8_t>(s);
                record.endTime = t;
            }
        } else if (StartsWith(line, "% All Track Calculations use: ", rest)) {
            record.TrackReference = rest == "GPS data" ? 2 : 1;
        } else if (StartsWith(line, "% All Flow Velocities Relative to: ", rest)) {
            record.VelocityReference = rest == "GPS" ? 2 : rest == "Bottom Track" ? 1 : 0;
        } else if (line == "% English Units") {
            L = kEnglishLengthFactor;
        } else if (const DischargeLine* q = DischargeLineOf(line, rest)) {
            double v = 0;
            if (TrailerValue(rest, L * L * L, v)) record.*(q->field) = static_cast<float>(v);
        } else if (StartsWith(line, "% TotalArea  = ", rest)) {
            TrailerValue(rest, L * L, record.Area);
        } else if (StartsWith(line, "% MeanVel    = ", rest)) {
            TrailerValue(rest, L, record.MeanVelocity);
        } else if (!line.empty() && line[0] != '%') {
            ProfileLine p;
            if (ParseProfileLine(line, p)) {
                last = p;
                ++profiles;
            }
        }
    }
    if (!named) {
        result.error = "not a .dis file (no \"% KVR Data File: \" line)";
        return result;
    }
    record.ProfileCount = profiles;
    if (profiles > 0) {
        ProfileHeader& t = record.endTime;
        t.hour = static_cast<uint8_t>(last.hour);
        t.minute = static_cast<uint8_t>(last.minute);
        t.second = static_cast<uint8_t>(last.second);
        t.hundredths = static_cast<uint8_t>(last.hundredths);
        record.TrackLength = last.distance >= MissingValue ? last.distance : last.distance / L;
        record.MadeGood = static_cast<float>(last.madeGood >= MissingValue ? last.madeGood : last.madeGood / L);
        record.TotalWidth = record.MadeGood;
    }
    result.ok = true;
    return result;
}

}  // namespace rm
