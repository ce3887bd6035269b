#include "processing/dis_file.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "processing/discharge_data.h"
#include "processing/processing_inputs.h"
#include "processing/significant_digits.h"
#include "processing/vector_direction.h"

namespace rm {

namespace {

constexpr float kEnglishLengthFactor = 3.2808f;
constexpr const char* kColumns =
    "\n% \n%Profile   Time   Distance      DMG  DistEast DistNorth GPS Latitude  GPS Longitude Depth1 Depth2 "
    "Depth3 AvDepth EsDepth  uVess DirVess  uFlow DirFlow  StdDev   DQI # Valid       Q      Q Cumul";
constexpr const char* kMetricUnits =
    "\n%                   (m)        (m)     (m)      (m)        (deg)         (deg)       (m)    (m)    (m)     "
    "(m)     (m)   (m/s)  (deg)   (m/s)  (deg)    (m/s)        Cells     (m^3/s)   (m^3/s)";
constexpr const char* kEnglishUnits =
    "\n%                  (ft)       (ft)    (ft)     (ft)        (deg)         (deg)      (ft)   (ft)   (ft)    "
    "(ft)    (ft)  (ft/s)  (deg)  (ft/s)  (deg)   (ft/s)        Cells     (ft^3/s)  (ft^3/s)";

const std::string& Rule() {
    static const std::string rule(199, '-');
    return rule;
}

const char* TrackText(int trackReference) { return trackReference == 2 ? "GPS data" : "Bottom Track data"; }

const char* VelocityText(int velocityReference) {
    switch (velocityReference) {
        case 1: return "Bottom Track";
        case 2: return "GPS";
        default: return "KVR ";
    }
}

// A value in the output unit: missing values stay as they are.
double Scaled(double value, double factor) { return value >= MissingValue ? value : value * factor; }

struct BeamDepths {
    double depth[3] = {MissingValue, MissingValue, MissingValue};
    double mean = MissingValue;
};

BeamDepths DepthsOf(const ProcessingContext& ctx, const SlotResults& r, const ProfileRecord& record) {
    BeamDepths out;
    if (!FileHasBottomTrack(ctx.data)) return out;
    const int beams = BeamCount(record);
    double sum = 0.0;
    int n = 0;
    for (int b = 0; b < beams; ++b) {
        const double d = r.bottomTrack.Depth[static_cast<size_t>(b)];
        if (b < 3) out.depth[b] = d;
        if (d < MissingValue && d > 0.0) {
            sum += d;
            ++n;
        }
    }
    if (n > 0) out.mean = sum / n;
    return out;
}

// The boat's motion over ground by the track reference, m/s; missing without one.
void VesselVelocity(const ProcessingContext& ctx, const ProcessedProfile& p, double& east, double& north) {
    const bool gps = ctx.settings.TrackReference == kTrackRefGps;
    const double e = gps ? p.GpsEast : p.BottomTrackEast;
    const double n = gps ? p.GpsNorth : p.BottomTrackNorth;
    if (std::fabs(e) >= MissingValue || std::fabs(n) >= MissingValue) {
        east = north = MissingValue;
        return;
    }
    east = -e;
    north = -n;
}

// The discharge summary block: rule, title and the totals, each line opening with a line feed.
void WriteSummaryBlock(TextFile& file, const CDischargeData& m, const DisFileHead& head) {
    const bool metric = head.unitSystem == 1;
    const double L = metric ? 1.0 : static_cast<double>(kEnglishLengthFactor);
    const double Q = L * L * L;
    const char* qUnit = metric ? "(cms)" : "(cfs)";
    const auto line = [&](const char* label, double value) {
        file.Write("%s%s %s", label, SignificantDigitsText(Scaled(value, Q), head.significantDigits).c_str(),
                     qUnit);
    };
    file.Write("\n%%%s\n%%\n%% Discharge Summary\n%% ", Rule().c_str());
    line("\n% Top Q      = ", m.TopDischarge);
    line("\n% Measured Q = ", m.MiddleDischarge);
    line("\n% Bottom Q   = ", m.BottomDischarge);
    line("\n% Left Q     = ", m.LeftDischarge);
    line("\n% Right Q    = ", m.RightDischarge);
    line("\n% Total Q    = ", m.TotalDischarge);
    file.Put("\n% ");
    const double estimated = static_cast<double>(m.TotalDischarge) - m.MiddleDischarge;
    if (estimated != 0.0) {
        file.Write("\n%% MeasQ/EstQ = %.1f (%%)", m.MiddleDischarge * 100.0 / estimated);
    } else {
        file.Put("\n% MeasQ/EstQ = -- (%)");
    }
    file.Put("\n% ");
    file.Write("\n%% TotalArea  = %.2f %s", Scaled(m.Area, L * L), metric ? "(m2)" : "(ft2)");
    file.Write("\n%% MeanVel    = %.2f %s", Scaled(m.MeanVelocity, L), metric ? "(m/s)" : "(ft/s)");
}

}  // namespace

DisFileWriter::~DisFileWriter() = default;

bool DisFileWriter::Open(const std::string& path, const DisFileHead& head) {
    if (!file_.Open(path)) return false;
    head_ = head;
    lengthFactor_ = head.unitSystem == 1 ? 1.0 : static_cast<double>(kEnglishLengthFactor);
    cumulativeQ_ = 0.0;
    const ProfileTime& t = head.start;
    file_.Write("%% KVR Data File: %s", head.dataFileName.c_str());
    file_.Write("\n%% Start Date + Time: %4d/%02d/%02d  %02d:%02d:%02d", t.year, t.month, t.day, t.hour,
                 t.minute, t.second);
    file_.Write("\n%% All Track Calculations use: %s%s", head.trackPrefix, TrackText(head.trackReference));
    file_.Write("\n%% All Flow Velocities Relative to: %s", VelocityText(head.velocityReference));
    file_.Put(head.unitSystem == 1 ? "\n% Metric Units" : "\n% English Units");
    if (head.headSummary != nullptr) WriteSummaryBlock(file_, *head.headSummary, head);
    file_.Put(kColumns);
    file_.Put(head.unitSystem == 1 ? kMetricUnits : kEnglishUnits);
    file_.Write("\n%%%s", Rule().c_str());
    return true;
}

void DisFileWriter::OnProfile(const ProcessingContext& ctx, int item, int slot, bool /*readOk*/) {
    if (!file_.IsOpen()) return;
    const SlotResults& r = ctx.slots[static_cast<size_t>(slot)];
    const ProcessedProfile& p = r.processed;
    const ProfileHeader& h = ctx.Raw(slot).header;
    const double L = lengthFactor_;
    const double Q = L * L * L;

    const TrackPoint& point = ctx.settings.TrackReference == kTrackRefGps ? r.gpsTrackPoint : r.bottomTrackPoint;
    const double dmg = std::sqrt(point.East * point.East + point.North * point.North);
    const double latitude = r.gpsPresent ? r.gps.endLatitude : MissingValue;
    const double longitude = r.gpsPresent ? r.gps.endLongitude : MissingValue;
    const BeamDepths depths = DepthsOf(ctx, r, ctx.Raw(slot));
    double vesselEast = MissingValue, vesselNorth = MissingValue;
    VesselVelocity(ctx, p, vesselEast, vesselNorth);
    const double vesselSpeed = VectorMagnitude(vesselEast, vesselNorth);
    const double vesselDirection = vesselSpeed >= MissingValue ? 0.0 : VectorDirection(vesselEast, vesselNorth);
    const bool meanValid = p.MeanEast < MissingValueF && p.MeanNorth < MissingValueF;
    const double flowEast = meanValid ? p.MeanEast * 0.01 : MissingValue;
    const double flowNorth = meanValid ? p.MeanNorth * 0.01 : MissingValue;
    const double flowSpeed = VectorMagnitude(flowEast, flowNorth);
    const double flowDirection = flowSpeed >= MissingValue ? 0.0 : VectorDirection(flowEast, flowNorth);
    const double deviation = ProfileStandardDeviation(ctx, slot);
    const double totalQ = p.TotalQ;
    if (totalQ < MissingValue) cumulativeQ_ += totalQ;
    const double measuredShare =
        totalQ != 0.0 && totalQ < MissingValue && p.MiddleQ < MissingValueF ? 100.0 * p.MiddleQ / totalQ : 0.0;

    file_.Write("\n%7d %02d:%02d:%02d.%02d", item, h.hour, h.minute, h.second, h.hundredths);
    file_.Write(
            " %8.1f %8.1f %8.1f %8.1f %14.8lf %14.8lf %6.2f %6.2f %6.2f %6.2f %7.2f %7.2f %7.1f %6.2f %7.1f "
            "%7.2f %5.1f %6d  %9.2f %10.1f %6.2f",
            Scaled(point.Distance, L), Scaled(dmg, L), Scaled(point.East, L), Scaled(point.North, L), latitude,
            longitude, Scaled(depths.depth[0], L), Scaled(depths.depth[1], L), Scaled(depths.depth[2], L),
            Scaled(depths.mean, L), Scaled(r.echoDepth, L), Scaled(vesselSpeed, L), vesselDirection,
            Scaled(flowSpeed, L), flowDirection, Scaled(deviation, L), static_cast<double>(p.QualityIndex),
            r.waterCells + r.shallowCells, Scaled(totalQ, Q), Scaled(cumulativeQ_, Q), measuredShare);
}

bool DisFileWriter::Finish(const CDischargeData& m) {
    if (!file_.IsOpen()) return false;
    if (head_.trailer) {
        WriteSummaryBlock(file_, m, head_);
        file_.Put("\n");
    }
    return file_.Close();
}

bool WriteDisFile(const std::string& path, const DisFileHead& head, ProcessingContext& ctx, ProfileSource& source) {
    DisFileWriter writer;
    if (!writer.Open(path, head)) return false;
    if (!GoToProfile(ctx, source, source.ItemCount(), &writer)) {
        writer.Finish(ctx.discharge);
        return false;
    }
    return writer.Finish(ctx.discharge);
}

}  // namespace rm
