#include "cli/measurement_output.h"

#include <cstdio>

#include "cli/processing_session.h"

namespace rm::cli {

namespace {

constexpr float kEnglishLengthFactor = 3.2808f;

double CmPerSecondToSi(float value) { return value >= MissingValueF ? MissingValue : value * 0.01; }

const char* TrackName(int reference) { return reference == kTrackRefGps ? "GPS" : "Bottom track"; }

const char* VelocityName(int reference) {
    switch (reference) {
        case kVelocityRefBottomTrack: return "Bottom track";
        case kVelocityRefGps: return "GPS";
        default: return "KVR (instrument)";
    }
}

// A value in the text's unit; missing values are shown as "--".
std::string Value(double value, double factor, const char* format) {
    if (value >= MissingValue) return "--";
    char text[64];
    std::snprintf(text, sizeof text, format, value * factor);
    return text;
}

}  // namespace

void ProfileCollector::OnProfile(const ProcessingContext& ctx, int item, int slot, bool /*readOk*/) {
    const SlotResults& r = ctx.slots[static_cast<size_t>(slot)];
    const ProcessedProfile& p = r.processed;
    ProfileRow row;
    row.profile = item;
    row.totalQ = p.TotalQ;
    row.topQ = p.TopQ;
    row.middleQ = p.MiddleQ;
    row.bottomQ = p.BottomQ;
    row.meanEast = CmPerSecondToSi(p.MeanEast);
    row.meanNorth = CmPerSecondToSi(p.MeanNorth);
    row.depth = p.Depth;
    row.waterCells = r.waterCells;
    row.qualityIndex = p.QualityIndex;
    row.boatEast = p.BoatEast;
    row.boatNorth = p.BoatNorth;
    rows_.push_back(row);
}

nlohmann::json MeasurementJson(const CSurveyKVRDoc& document) {
    const CDischargeData& m = document.Measurement();
    nlohmann::json j;
    j["FileName"] = document.Path();
    j["NumProfiles"] = m.ProfileCount;
    j["TopDischarge"] = m.TopDischarge;
    j["MiddleDischarge"] = m.MiddleDischarge;
    j["BottomDischarge"] = m.BottomDischarge;
    j["LeftDischarge"] = m.LeftDischarge;
    j["RightDischarge"] = m.RightDischarge;
    j["TotalDischarge"] = m.TotalDischarge;
    j["Area"] = m.Area;
    j["MeanVelocity"] = m.MeanVelocity;
    j["TrackDistance"] = m.TrackLength;
    j["LeftDistance"] = m.LeftDistance;
    j["MeasuredDistance"] = m.MadeGood;
    j["RightDistance"] = m.RightDistance;
    j["TotalDistance"] = m.TotalWidth;
    j["LeftEdgeArea"] = m.LeftEdgeArea;
    j["RightEdgeArea"] = m.RightEdgeArea;
    j["MaxBoatSpeed"] = m.MaxBoatSpeed;
    j["MaxDepth"] = m.MaxDepth;
    j["MaxMeanSpeed"] = m.MaxMeanSpeed;
    j["MaxPitch"] = m.MaxPitch;
    j["MaxRoll"] = m.MaxRoll;
    j["MeanBoatEast"] = m.MeanBoatEast;
    j["MeanBoatNorth"] = m.MeanBoatNorth;
    j["TrackReference"] = m.TrackReference;
    j["VelocityReference"] = m.VelocityReference;
    j["DepthReference"] = m.DepthReference;
    j["StartTime"] = TimeText(m.startTime);
    j["EndTime"] = TimeText(m.endTime);
    return j;
}

nlohmann::json ProfilesJson(const std::vector<ProfileRow>& rows) {
    nlohmann::json list = nlohmann::json::array();
    for (const ProfileRow& r : rows) {
        list.push_back({{"Profile", r.profile},
                        {"TotalQ", r.totalQ},
                        {"TopQ", r.topQ},
                        {"MiddleQ", r.middleQ},
                        {"BottomQ", r.bottomQ},
                        {"MeanEast", r.meanEast},
                        {"MeanNorth", r.meanNorth},
                        {"Depth", r.depth},
                        {"WaterCells", r.waterCells},
                        {"QualityIndex", r.qualityIndex},
                        {"BoatEast", r.boatEast},
                        {"BoatNorth", r.boatNorth}});
    }
    return list;
}

std::string MeasurementText(const CSurveyKVRDoc& document, int unitSystem) {
    const CDischargeData& m = document.Measurement();
    const bool metric = unitSystem == 1;
    const double L = metric ? 1.0 : static_cast<double>(kEnglishLengthFactor);
    const double Q = L * L * L;
    const char* qUnit = metric ? "m^3/s" : "ft^3/s";
    const char* lUnit = metric ? "m" : "ft";
    const char* aUnit = metric ? "m^2" : "ft^2";
    const char* vUnit = metric ? "m/s" : "ft/s";
    std::string out;
    char line[256];
    const auto add = [&](const char* label, const std::string& value, const char* unit) {
        std::snprintf(line, sizeof line, "%-24s %14s %s\n", label, value.c_str(), unit);
        out += line;
    };
    std::snprintf(line, sizeof line, "%-24s %s\n", "Data file", document.Path().c_str());
    out += line;
    std::snprintf(line, sizeof line, "%-24s %d\n", "Profiles", m.ProfileCount);
    out += line;
    std::snprintf(line, sizeof line, "%-24s %s to %s\n", "Time", TimeText(m.startTime).c_str(),
                  TimeText(m.endTime).c_str());
    out += line;
    std::snprintf(line, sizeof line, "%-24s %s\n%-24s %s\n%-24s %s\n", "Track reference",
                  TrackName(m.TrackReference), "Velocity reference", VelocityName(m.VelocityReference),
                  "Depth reference", m.DepthReference == 0 ? "Bottom track" : "Echo sounder");
    out += line;
    out += "\nDischarge\n";
    add("  Top", Value(m.TopDischarge, Q, "%.4f"), qUnit);
    add("  Measured (middle)", Value(m.MiddleDischarge, Q, "%.4f"), qUnit);
    add("  Bottom", Value(m.BottomDischarge, Q, "%.4f"), qUnit);
    add("  Left edge", Value(m.LeftDischarge, Q, "%.4f"), qUnit);
    add("  Right edge", Value(m.RightDischarge, Q, "%.4f"), qUnit);
    add("  Total", Value(m.TotalDischarge, Q, "%.4f"), qUnit);
    out += "\nSection\n";
    add("  Area", Value(m.Area, L * L, "%.3f"), aUnit);
    add("  Mean velocity", Value(m.MeanVelocity, L, "%.4f"), vUnit);
    add("  Left distance", Value(m.LeftDistance, L, "%.3f"), lUnit);
    add("  Measured distance", Value(m.MadeGood, L, "%.3f"), lUnit);
    add("  Right distance", Value(m.RightDistance, L, "%.3f"), lUnit);
    add("  Total width", Value(m.TotalWidth, L, "%.3f"), lUnit);
    add("  Track length", Value(m.TrackLength, L, "%.3f"), lUnit);
    out += "\nMaxima\n";
    add("  Boat speed", Value(m.MaxBoatSpeed, L, "%.3f"), vUnit);
    add("  Depth", Value(m.MaxDepth, L, "%.3f"), lUnit);
    add("  Depth-averaged speed", Value(m.MaxMeanSpeed, L, "%.3f"), vUnit);
    add("  Pitch", Value(m.MaxPitch, 1.0, "%.1f"), "deg");
    add("  Roll", Value(m.MaxRoll, 1.0, "%.1f"), "deg");
    return out;
}

}  // namespace rm::cli
