// Text dumps of the records, one labelled line per field, with the words of the record tables
// for enumerated values.

#include "data/record_dumps.h"

#include <cstdarg>
#include <cstdio>
#include <initializer_list>

namespace rm {

namespace {

std::string Printf(const char* format, ...) __attribute__((format(printf, 1, 2)));

std::string Printf(const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list copy;
    va_copy(copy, args);
    const int n = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::string s(n > 0 ? static_cast<size_t>(n) : 0, '\0');
    if (n > 0) std::vsnprintf(&s[0], s.size() + 1, format, args);
    va_end(args);
    return s;
}

// The word of an enumerated value; a value outside the table prints as its number, so an
// unexpected byte is visible rather than hidden behind a wrong word.
std::string Word(int value, std::initializer_list<const char*> words) {
    if (value >= 0 && static_cast<size_t>(value) < words.size()) return *(words.begin() + value);
    return Printf("%d", value);
}

std::string NoYes(int value) { return Word(value, {"No", "Yes"}); }
std::string Version(int tenTimes) { return Printf("%.1f", tenTimes / 10.0); }

class Lines {
public:
    explicit Lines(std::ostream& out) : out_(out) {}
    Lines& operator()(const std::string& label, const std::string& value) {
        out_ << DumpLine(label, value);
        return *this;
    }

private:
    std::ostream& out_;
};

}  // namespace

std::string DumpLine(const std::string& label, const std::string& value) {
    std::string line = "\n" + label + " ";
    const size_t dashesEnd = kDumpMarkerColumn - 1;  // the dashes fill columns up to 30
    if (line.size() - 1 < dashesEnd) line.append(dashesEnd - (line.size() - 1), '-');
    return line + "> " + value;
}

std::string FormatFileSize(uint64_t bytes) {
    const double kB = 1024.0;
    const double b = static_cast<double>(bytes);
    if (b < kB) return Printf("%d bytes", static_cast<int>(bytes));
    if (b < kB * kB) return Printf("%4.2f kB", b / kB);
    if (b < kB * kB * kB) return Printf("%4.2f MB", b / (kB * kB));
    return Printf("%4.2f GB", b / (kB * kB * kB));
}

std::string FormatDumpDateTime(const DumpDateTime& t) {
    return Printf("%4d/%02d/%02d  %02d:%02d:%02d", t.year, t.month, t.day, t.hour, t.minute, t.second);
}

void DumpFileSummary(std::ostream& out, const FileSummary& f, const InstrumentConf& conf, const UserSetup& user) {
    Lines line(out);
    line("File Name", f.fileName)("File Size", FormatFileSize(f.fileSize))("File Version", Printf("%d", f.fileVersion));
    line("Frequency", FrequencyName(conf.KvrType))("Serial Number", conf.SerialNumber);
    line("No. of Cells", Printf("%u", static_cast<unsigned>(user.NumberOfCells)));
    line("No. of Beams", Printf("%u", static_cast<unsigned>(conf.Nbeams)));
    line("No. of Profiles", Printf("%u", f.profileCount));
    if (f.waveData) line("No. of Wave Bursts", Printf("%u", f.burstCount));
    line("Header Length", Printf("%u bytes", f.headerLength));
    line("Profile Record Size", Printf("%u bytes", f.profileSize));
    if (f.waveData) line("Wave Burst Size", Printf("%u bytes", f.burstSize));
    if (f.hasProfileTimes) {
        line("First Profile", FormatDumpDateTime(f.firstProfile));
        line("Last Profile", FormatDumpDateTime(f.lastProfile));
    }
    line("GPS Data", NoYes(f.gpsData))("Echo Sounder Data", NoYes(f.echoSounderData));
    line("Bottom Track Data", NoYes(f.bottomTrackData))("External Sensor", NoYes(f.extSensorData));
    line("CTD Data", NoYes(f.ctdData))("Wave Data", NoYes(f.waveData))("PC-KVR Data", NoYes(f.pcData));
}

void DumpConfiguration(std::ostream& out, const InstrumentConf& c) {
    Lines line(out);
    line("CPUSoftwareVerNum", Version(c.CPUSoftwareVerNum))("DSPSoftwareVerNum", Version(c.DSPSoftwareVerNum));
    line("BoardRev", std::string(1, c.BoardRev == 0 ? ' ' : c.BoardRev))("SerialNumber", c.SerialNumber);
    const char* frequency = FrequencyName(c.KvrType);
    line("KvrType", *frequency ? std::string(frequency) : Printf("%d", c.KvrType));
    line("Nbeams", Printf("%d", c.Nbeams));
    line("BeamGeometry", Word(c.BeamGeometry, {"2_Beams", "3_Beams", "4_Beams_One_Vertical", "4_Beams_JANUS"}));
    line("Slant Angle", Printf("%.1f deg", c.SlantAngle / 10.0));
    line("Sensor Orientation", Word(c.SensorOrientation, {"Down", "Up", "Side"}));
    line("Compass Installed", NoYes(c.CompassInstalled))("Recorder Installed", NoYes(c.RecorderInstalled));
    line("Temperature Installed", NoYes(c.TemperatureInstalled))("Pressure Installed", NoYes(c.PressureInstalled));
    // The matrix as stored, one row a line; the signs of a down-looking head are not applied.
    const int n = c.Nbeams <= kMaxBeams ? c.Nbeams : kMaxBeams;
    for (int row = 0; row < n; ++row) {
        std::string values;
        for (int col = 0; col < n; ++col) {
            const int k = row * n + col;
            values += Printf("%s%8.4f", col ? " " : "", k < kConfMatrixEntries ? c.TransformationMatrix[k] / 1024.0 : 0.0);
        }
        line("Transformation Matrix", values);
    }
    // The calibration in use: zero without a pressure sensor, replaced for external sensors.
    const DerivedValues d = DeriveValues(c, OperationRecord(), UserSetup());
    line("Pressure Scale", Printf("%.8f dbar/c", d.pressureScale));
    line("Pressure Offset", Printf("%.5f dbar", d.pressureOffset));
    line("Ext Sensor Installed", NoYes(c.ExtSensorInstalled));
    line("Ext Pressure Sensor Installed", Word(c.ExtPressureSensorInstalled, {"None", "PAROS", "DRUCK", "TABLE"}));
    line("CTD Sensor Installed", NoYes(c.CtdSensorInstalled));
    line("Pressure Scale 2", Printf("%.0f pdbar/c^2", d.pressureScale2 * 1e12));
    line("internal GPS available", NoYes(c.InternalGpsAvailable));
    line("pressure range", Printf("%d", c.PressureRange));
}

void DumpSetup(std::ostream& out, const UserSetup& u) {
    Lines line(out);
    line("Default Temperature", Printf("%.1f deg C", u.DefaultTemperature / 10.0));
    line("Default Salinity", Printf("%.1f ppt", u.DefaultSalinity / 10.0));
    line("Default Speed of Sound", Printf("%.1f m/s", u.DefaultSpeedOfSound / 10.0));
    line("No. of Cells", Printf("%d", u.NumberOfCells));
    line("Cell Size", Printf("%.1f cm", static_cast<double>(u.CellSizeCm)));
    line("Blank Distance", Printf("%d cm", u.BlankDistance));
    line("Sensor Depth", Printf("%u cm", static_cast<unsigned>(u.SensorDepth)));
    line("Temperature Mode", Word(u.TemperatureMode, {"USER", "MEASURED"}));
    // In pulse-coherent mode without the shallow-water ping the intervals count tenths of a second.
    const double unit = IntervalUnitSeconds(u);
    const auto interval = [unit](uint16_t stored) {
        return unit < 1.0 ? Printf("%.1f s", stored * unit) : Printf("%d s", stored);
    };
    line("Averaging Interval", interval(u.AveragingInterval));
    line("Profile Interval", interval(u.ProfileInterval));
    line("Ping Interval", Printf("%.1f s", u.PingInterval / 10.0));
    line("Burst Mode", Word(u.BurstMode, {"DISABLED", "ENABLED"}));
    line("Burst Interval", Printf("%d s", u.BurstInterval))("Profiles per Burst", Printf("%d", u.ProfilesPerBurst));
    line("Coordinate System", Word(u.CoordinateSystem, {"BEAM", "XYZ", "ENU"}));
    line("Out Mode", Word(u.OutMode, {"AUTO", "POLLED"}))("Out Format", Word(u.OutFormat, {"BINARY", "ASCII"}));
    line("Recorder Enabled", Word(u.RecorderEnabled, {"DISABLED", "ENABLED"}));
    line("Recorder Mode", Word(u.RecorderMode, {"NORMAL", "BUFFER"}));
    line("Deployment Mode", Word(u.DeploymentMode, {"NO", "YES"}))("Deployment Name", u.DeploymentName);
    const DumpDateTime start{u.DeploymentYear, u.DeploymentMonth, u.DeploymentDay,
                             u.DeploymentHour, u.DeploymentMinute, u.DeploymentSecond};
    line("Deployment start time", u.DeploymentMode == 1 ? FormatDumpDateTime(start) : std::string("not deployed"));
    line("comment line 1", u.CommentLine1)("comment line 2", u.CommentLine2)("comment line 3", u.CommentLine3);
    line("Bottom Track", Word(u.BottomTrack, {"OFF", "ON", "ON (SHALLOW WATER PING)"}));
    line("Magnetic Declination", Printf("%.2f deg", DeclinationDegrees(u.MagneticDeclinationRaw)));
    line("PressureTimeSeries interval", Printf("%d", u.PressureTimeSeriesInterval));
    line("PseriesRate", Printf("%d", u.PseriesRate))("PseriesLength", Printf("%d", u.PseriesLength));
    line("PCMode", Word(u.PCMode ? 1 : 0, {"OFF", "ON"}));
    line("EnableInternalGps", Word(u.EnableInternalGps ? 1 : 0, {"OFF", "ON"}));
}

void DumpOperation(std::ostream& out, const OperationRecord& o) {
    Lines line(out);
    for (size_t i = 0; i < o.firmwareLimits.size(); ++i) {
        line(Printf("Firmware Limit %d", static_cast<int>(i + 1)), Printf("%u", static_cast<unsigned>(o.firmwareLimits[i])));
    }
    line("Bottom Track Disable", Printf("%d", o.bottomTrackDisable));
    line("Unwrap Samples", Printf("%d", o.unwrapSamples))("Unwrap Pulses", Printf("%d", o.unwrapPulses));
}

void DumpCellTable(std::ostream& out, const UserSetup& user) {
    Lines line(out);
    for (int cell = 0; cell < user.NumberOfCells; ++cell) {
        line(Printf("Cell %d", cell + 1), Printf("%.3f m", CellPosition(user, cell)));
    }
}

}  // namespace rm
