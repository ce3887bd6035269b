#include "output/t_format.h"

#include <cmath>

#include "output/velocity_files.h"
#include "processing/coordinate_step.h"
#include "processing/discharge_data.h"
#include "processing/discharge_inputs.h"
#include "app/dis_export.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {

constexpr double kFeetFactor = 3.2808;

struct TUnits {
    const char* word;
    double velocity;  // from m/s
    double length;    // from m
};

TUnits UnitsOf(int unitParameter) {
    return unitParameter == kTFormatCentimetres ? TUnits{"cm", 100.0, 1.0} : TUnits{"ft", kFeetFactor, kFeetFactor};
}

// A value times its factor; a missing one (or a non-finite one) prints 32767.
double Out(double value, double factor = 1.0) {
    if (!std::isfinite(value) || std::fabs(value) >= MissingValue) return MissingValue;
    return value * factor;
}

int TrackCode(const ProcessingContext& ctx) { return ctx.settings.TrackReference; }

int CellsWritten(const ProcessingContext& ctx, int cells) {
    return ctx.settings.UseShallowWaterPing != 0 && TrackCode(ctx) == kTrackRefGps ? cells + 1 : cells;
}

const char* TrackWord(const ProcessingContext& ctx) {
    switch (TrackCode(ctx)) {
        case kTrackRefGps: return "NAV";
        case kTrackRefBottomTrack: return "BT";
        default: return "NONE";
    }
}

// The track point of the reference in use: GPS with code 2 when the slot has GPS, bottom track
// with code 1 when the file has it; none otherwise.
const TrackPoint* TrackOf(const ProcessingContext& ctx, const SlotResults& r) {
    if (TrackCode(ctx) == kTrackRefGps && r.gpsPresent) return &r.gpsTrackPoint;
    if (TrackCode(ctx) == kTrackRefBottomTrack && FileHasBottomTrack(ctx.data)) return &r.bottomTrackPoint;
    return nullptr;
}

}  // namespace

void WriteTFormatHead(TextFile& file, const ProcessingContext& ctx) {
    const UserSetup& user = ctx.data.user;
    file.Write("%s", user.CommentLine1.c_str());
    file.Write("\n%s", user.CommentLine2.c_str());
    file.Write("\n%6d %6d %6d %6d %6d %6d %6d", static_cast<int>(std::lround(user.CellSizeCm)),
               static_cast<int>(user.BlankDistance), CellsWritten(ctx, user.NumberOfCells),
               static_cast<int>(user.AveragingInterval), static_cast<int>(user.NumberOfCells),
               static_cast<int>(user.CoordinateSystem), static_cast<int>(user.OutMode));
}

void TFormatWriter::OnProfile(const ProcessingContext& ctx, int item, int slot, bool /*readOk*/) {
    const TUnits u = UnitsOf(unit_);
    const SlotResults& r = ctx.slots[static_cast<size_t>(slot)];
    const ProcessedProfile& p = r.processed;
    const ProfileRecord& record = ctx.Raw(slot);
    const ProfileHeader& h = record.header;
    const bool bottomTrack = FileHasBottomTrack(ctx.data);
    const double declination =
        RotatesByDeclination(ctx.data.user.CoordinateSystem, ctx.settings.CoordinateSystem)
            ? ctx.data.derived.magneticDeclination
            : 0.0;

    // 1: time, number, attitude and temperature.
    file_.Write("\n%2d %2d %2d %2d %2d %2d %2d %8d %8d %7.3f %7.3f %7.3f %7.3f", h.year, h.month, h.day, h.hour,
                h.minute, h.second, h.hundredths, item, 1, h.pitch * 0.1, h.roll * 0.1, h.heading * 0.1 - declination,
                h.temperature * 0.01);

    // 2: bottom-track velocity per beam row, GPS velocity and speed, depths per beam, mean and
    // echo depth.
    const double gpsEast = r.gpsPresent && r.gpsEast < MissingValueF ? r.gpsEast * 0.001 : MissingValue;
    const double gpsNorth = r.gpsPresent && r.gpsNorth < MissingValueF ? r.gpsNorth * 0.001 : MissingValue;
    const double gpsSpeed = gpsEast < MissingValue && gpsNorth < MissingValue ? std::hypot(gpsEast, gpsNorth) : MissingValue;
    file_.Put("\n");
    for (int i = 0; i < 4; ++i) {
        const double v = bottomTrack ? r.bottomTrack.Velocity[static_cast<size_t>(i)] : MissingValue;
        file_.Write("%s%7.2f", i == 0 ? "" : " ", Out(v, u.velocity));
    }
    file_.Write(" %7.2f %7.2f %7.2f", Out(gpsEast, u.velocity), Out(gpsNorth, u.velocity),
                Out(gpsSpeed, u.velocity));
    for (int i = 0; i < 4; ++i) {
        const double d = bottomTrack && i < BeamCount(record) ? r.bottomTrack.Depth[static_cast<size_t>(i)] : MissingValue;
        file_.Write(" %7.2f", Out(d, u.length));
    }
    file_.Write(" %7.2f %7.2f", Out(r.meanDepth, u.length), Out(r.echoDepth, u.length));

    // 3: track relative to the first profile, distance made good, travelled distance, course.
    const TrackPoint* track = TrackOf(ctx, r);
    if (track != nullptr) {
        const double dmg = std::hypot(track->East, track->North);
        const double course = VelocitySpeedDirection(track->East, track->North).direction;
        file_.Write("\n%10.2f %10.2f %10.2f %10.2f %10.2f", Out(track->East, u.length),
                    Out(track->North, u.length), Out(dmg, u.length), Out(track->Distance, u.length), course);
    } else {
        file_.Write("\n%10.2f %10.2f %10.2f %10.2f %10.2f", MissingValue, MissingValue, MissingValue,
                    MissingValue, MissingValue);
    }

    // 4: position and GPS velocity.
    file_.Write("\n%12.7f %12.7f %7.2f %7.2f %7.1f", r.gpsPresent ? r.gps.endLatitude : MissingValue,
                r.gpsPresent ? r.gps.endLongitude : MissingValue, Out(gpsEast, u.velocity), Out(gpsNorth, u.velocity),
                Out(gpsSpeed, u.velocity));

    // 5: discharge parts of the profile, the cumulative discharge, the edges; width and area.
    const double q3 = u.length * u.length * u.length;
    if (p.TotalQ < MissingValueF) cumulativeQ_ += p.TotalQ;
    const CDischargeData& m = ctx.discharge;
    file_.Write("\n%11.2f %11.2f %11.2f %11.2f %11.2f %11.2f %11.2f %11.3f %11.3f", Out(p.TopQ, q3),
                Out(p.MiddleQ, q3), Out(p.BottomQ, q3), Out(p.TotalQ, q3), Out(cumulativeQ_, q3),
                Out(m.LeftDischarge, q3), Out(m.RightDischarge, q3), Out(m.TotalWidth, u.length),
                Out(m.Area, u.length * u.length));

    // 6: cells, units and reference.
    const int cells = record.cells;
    file_.Write("\n%3d %s %s %s %5.2f %7.3f", CellsWritten(ctx, cells), u.word, TrackWord(ctx), "counts",
                0.43, 0.0);

    // 7: one line per cell, velocities in the unit's velocity (cm/s inside the chain).
    VelocityArrays velocity{};
    GetVelocities(ctx, slot, velocity);
    // Cell centres where the discharge computation places them.
    const CellGeometry geometry = CellGeometryOf(ctx);
    const int beams = BeamCount(record);
    for (int cell = 0; cell < cells && cell < kMaxCells; ++cell) {
        double v[4];
        for (int row = 0; row < 4; ++row) {
            v[row] = row < beams ? Out(velocity[static_cast<size_t>(row)][static_cast<size_t>(cell)], 0.01 * u.velocity)
                                 : MissingValue;
        }
        const SpeedDirection sd = VelocitySpeedDirection(v[0], v[1]);
        const bool good = v[0] < MissingValue && v[1] < MissingValue;
        const int index = cell < kLayerCount ? cell : kLayerCount - 1;
        const double cellQ = cell < r.waterCells ? Out(ctx.working.CellQ[static_cast<size_t>(index)], q3) : MissingValue;
        file_.Write("\n%7.3f %7.2f %7.3f", (geometry.CellCentre() + cell * geometry.cell) * u.length,
                    good ? sd.speed : MissingValue, good ? sd.direction : MissingValue);
        for (double value : v) file_.Write(" %7.1f", value);
        for (int b = 0; b < 4; ++b) {
            file_.Write(" %7.1f", b < beams ? static_cast<double>(record.Amplitude(b, cell)) : MissingValue);
        }
        file_.Write(" %5d %10.2f", good ? 100 : 0, cellQ);
    }
}

bool WriteTFormatFile(CSurveyKVRDoc& document, const std::string& path, int unitParameter, UserPrompt& prompt) {
    TextFile file;
    if (!file.Open(path)) {
        prompt.Message(kWriteFileError);
        return false;
    }
    {
        const ProcessingContext ctx = document.Context();
        WriteTFormatHead(file, ctx);
    }
    TFormatWriter writer(file, unitParameter);
    const bool computed = document.Recompute(&writer);
    const bool written = file.Close();
    if (!written) prompt.Message(kWriteFileError);
    return computed && written;
}

}  // namespace rm
