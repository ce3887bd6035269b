#include "output/variable_files.h"

#include <cmath>
#include <sstream>

#include "data/record_dumps.h"
#include "output/velocity_files.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {

// GPS speed components above this (in the unit written) are the no-value mark.
constexpr double kGpsVelocityLimit = 3270.0;
constexpr double kEnglishLengthFactor = 3.2808;

double Value(const ProcessingContext& ctx, int code, int component, int slot) {
    return GetProfileValue(ctx, code, component, ctx.settings.CoordinateSystem, ctx.settings.VelocityReference, slot,
                           0);
}

}  // namespace

ProfileLineFiles::ProfileLineFiles(ItemRange range, ProfileLineBody body) : range_(range), body_(std::move(body)) {}

ProfileLineFiles::~ProfileLineFiles() { Close(); }

bool ProfileLineFiles::Open(const std::vector<std::string>& paths) {
    Close();
    for (const std::string& path : paths) {
        TextFile file;
        if (!file.Open(path)) {
            Close();
            return false;
        }
        files_.push_back(std::move(file));
    }
    return true;
}

void ProfileLineFiles::OnProfile(const ProcessingContext& ctx, int item, int slot, bool /*readOk*/) {
    if (!range_.Contains(item)) return;
    for (size_t i = 0; i < files_.size(); ++i) {
        files_[i].Write("\n%6ld", static_cast<long>(item));
        body_(files_[i], ctx, slot, i);
    }
}

bool ProfileLineFiles::Close() {
    bool ok = true;
    for (TextFile& file : files_) {
        if (!file.Close()) ok = false;
    }
    files_.clear();
    return ok;
}

void WriteCellValues(TextFile& file, const ProcessingContext& ctx, int slot, int code, int component,
                     int coordinateSystem, int reference) {
    const int cells = ctx.Raw(slot).cells;
    for (int cell = 0; cell < cells; ++cell) {
        const double v = GetProfileValue(ctx, code, component, coordinateSystem, reference, slot, cell);
        switch (code) {
            case 2: file.Write("%5d", static_cast<int>(v)); break;
            case 1: file.Write("%8.1f", v); break;
            default: file.Write("%6.1f", v); break;
        }
    }
}

void WriteHeaderLine(TextFile& file, const ProcessingContext& ctx, int slot) {
    const ProfileHeader& h = ctx.Raw(slot).header;
    file.Write(" %4d", static_cast<int>(h.year));
    for (int part : {int(h.month), int(h.day), int(h.hour), int(h.minute), int(h.second)}) {
        file.Write(" %2d", part);
    }
    file.Write(" %6d", static_cast<int>(h.pingCount));
    file.Write(" %7.1f", Value(ctx, 7, 0, slot));
    for (int code : {8, 9, 5}) file.Write(" %6.1f", Value(ctx, code, 0, slot));
    file.Write(" %6.2f", Value(ctx, 6, 0, slot));
    file.Write(" %8.3f", Value(ctx, 16, 4, slot));  // mean bottom-track depth
    for (int code : {13, 14, 15, 11}) file.Write(" %6.1f", Value(ctx, code, 0, slot));
    file.Write(" %8.3f", Value(ctx, 12, 0, slot));
    file.Write(" %4.1f", Value(ctx, 10, 0, slot));
}

void WriteGpsLine(TextFile& file, const ProcessingContext& ctx, int slot) {
    const SlotResults& r = ctx.slots[static_cast<size_t>(slot)];
    const GpsBlock none{MissingValue, MissingValue, MissingValue, MissingValue, MissingValue, MissingValue};
    const GpsBlock& g = r.gpsPresent ? r.gps : none;
    file.Write(" %12.2lf %14.8lf %14.8lf %12.2lf %14.8lf %14.8lf", g.startTime, g.startLatitude,
               g.startLongitude, g.endTime, g.endLatitude, g.endLongitude);
    // GPS velocity in m/s (mm/s in the slot), ft/s in English units.
    const double factor = ctx.settings.UnitSystem == 1 ? 0.001 : 0.001 * kEnglishLengthFactor;
    const bool valid = r.gpsPresent && std::fabs(r.gpsEast * factor) <= kGpsVelocityLimit &&
                       std::fabs(r.gpsNorth * factor) <= kGpsVelocityLimit && r.gpsEast < MissingValueF &&
                       r.gpsNorth < MissingValueF;
    const double east = valid ? r.gpsEast * factor : MissingValue;
    const double north = valid ? r.gpsNorth * factor : MissingValue;
    const SpeedDirection sd = VelocitySpeedDirection(east, north);
    file.Write(" %10.3f %10.3f %10.3f %7.1f", east, north, sd.speed, sd.direction);
}

bool WriteConfigurationFile(const std::string& path, const CKvrData& data, bool gpsPresent) {
    FileSummary file;
    const std::string& dataPath = data.Path();
    const size_t slash = dataPath.find_last_of('/');
    file.fileName = slash == std::string::npos ? dataPath : dataPath.substr(slash + 1);
    file.fileSize = static_cast<uint64_t>(data.FileSize());
    file.fileVersion = data.FileVersion();
    file.profileCount = static_cast<uint32_t>(data.ProfileCount());
    file.burstCount = static_cast<uint32_t>(data.BurstCount());
    file.headerLength = static_cast<uint32_t>(data.HeaderSize());
    file.profileSize = static_cast<uint32_t>(data.RecordSize());
    file.burstSize = static_cast<uint32_t>(data.BurstSize());
    file.hasProfileTimes = data.ProfileCount() > 0;
    const ProfileTime first = data.FirstProfileTime(), last = data.LastProfileTime();
    file.firstProfile = {first.year, first.month, first.day, first.hour, first.minute, first.second};
    file.lastProfile = {last.year, last.month, last.day, last.hour, last.minute, last.second};
    file.gpsData = gpsPresent;
    file.bottomTrackData = FileHasBottomTrack(data);
    file.extSensorData = data.conf.ExtSensorInstalled != 0;
    file.ctdData = data.conf.CtdSensorInstalled != 0;
    file.waveData = data.BurstCount() > 0;
    file.pcData = data.user.PCMode != 0;
    std::ostringstream out;
    DumpConfiguration(out, data.conf);
    DumpSetup(out, data.user);
    DumpOperation(out, data.oper);
    DumpFileSummary(out, file, data.conf, data.user);
    if (file.gpsData) out << "\nGPS Data is present in file\n";
    if (file.bottomTrackData) out << "\nBottom Track Data is present in file\n";
    TextFile text;
    if (!text.Open(path)) return false;
    text.Put(out.str());
    return text.Close();
}

}  // namespace rm
