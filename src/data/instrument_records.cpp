// Byte layouts of the configuration, operation and user setup records: one decoder and one
// encoder per layout, reading and writing through the little-endian cursors.

#include "data/instrument_records.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "data/byte_io.h"

namespace rm {

namespace {

// Writes a text field into an image that already holds the original bytes. When the decoded
// text still equals what the image holds, the field is left alone, so bytes behind the NUL
// survive a round trip. Otherwise the text fills the field, NUL-padded; a text of exactly the
// field's width is written whole, as the decoder reads up to the width.
void PutText(uint8_t* image, size_t imageSize, size_t at, size_t width, const std::string& s) {
    if (ByteReader(image, imageSize).text(at, width) == s) return;
    ByteWriter w(image, imageSize);
    for (size_t i = 0; i < width; ++i) w.u8(at + i, i < s.size() ? static_cast<uint8_t>(s[i]) : 0);
}

bool ConfRangesValid(const InstrumentConf& c) {
    return c.KvrType <= 6 && c.Nbeams >= 1 && c.Nbeams <= kMaxBeams && c.SensorOrientation <= 2 &&
           c.CompassInstalled <= 1 && c.RecorderInstalled <= 1 && c.TemperatureInstalled <= 1 &&
           c.PressureInstalled <= 1;
}

void DecodeConfCurrent(const ByteReader& r, InstrumentConf& c) {
    c.CPUSoftwareVerNum = r.u8(12);
    c.DSPSoftwareVerNum = r.u8(13);
    c.BoardRev = static_cast<char>(r.u8(14));
    c.SerialNumber = r.text(15, 10);
    c.KvrType = r.u8(25);
    c.Nbeams = r.u8(26);
    c.BeamGeometry = r.u8(27);
    c.SlantAngle = r.i16(28);
    c.SensorOrientation = r.u8(30);
    c.CompassInstalled = r.u8(31);
    c.RecorderInstalled = r.u8(32);
    c.TemperatureInstalled = r.u8(33);
    c.PressureInstalled = r.u8(34);
    c.reserved35 = r.u8(35);
    for (int i = 0; i < kConfMatrixEntries; ++i) c.TransformationMatrix[i] = r.i16(36 + 2 * i);
    c.reserved68 = r.u16(68);
    c.PressureScale = r.i32(70);
    c.PressureOffset = r.i32(74);
    c.reserved78 = r.u8(78);
    c.ExtSensorInstalled = r.u8(79);
    c.ExtPressureSensorInstalled = r.u8(80);
    c.CtdSensorInstalled = r.u8(81);
    c.PressureScale2 = r.i16(82);
    c.reserved84 = {r.u8(84), r.u8(85)};
    c.InternalGpsAvailable = r.u8(86);
    c.reserved87 = r.u8(87);
    c.PressureRange = r.u8(88);
    for (size_t i = 0; i < c.reserved89.size(); ++i) c.reserved89[i] = r.u8(89 + i);
}

// Versions 0 and 1: the fields that exist move to their current places; the rest take the
// fixed values of those instruments (DSP 2.1, board D, three-beam geometry, 90 at offset 68).
void DecodeConfOld(const ByteReader& r, InstrumentConf& c) {
    c.CPUSoftwareVerNum = r.u8(12);
    c.DSPSoftwareVerNum = 21;
    c.BoardRev = 'D';
    c.SerialNumber = r.text(13, 10);
    c.KvrType = r.u8(23);
    c.Nbeams = r.u8(24);
    c.BeamGeometry = 1;
    c.SlantAngle = static_cast<int16_t>(r.i8(26) * 10);
    c.SensorOrientation = r.u8(27);
    c.CompassInstalled = r.u8(28);
    c.RecorderInstalled = r.u8(29);
    c.TemperatureInstalled = r.u8(30);
    c.PressureInstalled = r.u8(31);
    c.reserved35 = 0;
    for (int i = 0; i < kConfMatrixEntriesOld; ++i) c.TransformationMatrix[i] = r.i16(34 + 2 * i);
    c.reserved68 = 90;
}

}  // namespace

const char* FrequencyName(int kvrType) {
    static const char* const kNames[] = {"3000 kHz", "1500 kHz", "750 kHz",  "500 kHz",
                                         "250kHz",   "1000 kHz", "5000 kHz", "125kHz"};
    return kvrType >= 0 && kvrType < 8 ? kNames[kvrType] : "";
}

int DisplayFrequencyKHz(int kvrType) {
    static const int kDisplay[] = {3000, 1500, 750, 500, 250, 1000, 5000, 125};
    return kvrType >= 0 && kvrType < 8 ? kDisplay[kvrType] : 0;
}

int UnwrapFrequencyKHz(int kvrType) {
    static const int kUnwrap[] = {3000, 1500, 750, 500, 250, 1000, 125, 0};
    return kvrType >= 0 && kvrType < 8 ? kUnwrap[kvrType] : 0;
}

size_t ConfSizeForVersion(uint8_t version) {
    if (version == 2) return kConfSize;
    if (version < 2) return kConfSizeOld;
    return 0;
}

RecordStatus DecodeConf(const uint8_t* data, size_t size, InstrumentConf& conf) {
    if (data == nullptr || size < kRecordHeaderSize) return RecordStatus::Short;
    ByteReader head(data, size);
    const uint8_t type = head.u8(0);
    const uint8_t version = head.u8(1);
    const uint16_t declared = head.u16(2);
    const size_t expected = ConfSizeForVersion(version);
    if (type != kConfType || expected == 0 || declared != expected) return RecordStatus::BadHeader;
    if (size < expected) return RecordStatus::Short;

    ByteReader r(data, expected);
    InstrumentConf c;
    c.raw.assign(data, data + expected);
    c.type = type;
    c.version = version;
    c.size = declared;
    c.reserved4 = r.u32(4);
    c.reserved8 = r.u32(8);
    if (version == 2) {
        DecodeConfCurrent(r, c);
    } else {
        DecodeConfOld(r, c);
    }
    if (!ConfRangesValid(c)) return RecordStatus::BadRanges;
    conf = std::move(c);
    return RecordStatus::Ok;
}

bool ConfHeaderIsValid(const uint8_t* data, size_t size) {
    InstrumentConf scratch;
    return DecodeConf(data, size, scratch) == RecordStatus::Ok;
}

std::array<uint8_t, kConfSize> EncodeConf(const InstrumentConf& c) {
    std::array<uint8_t, kConfSize> out{};
    if (c.raw.size() == kConfSize) std::copy(c.raw.begin(), c.raw.end(), out.begin());
    PutText(out.data(), out.size(), 15, 10, c.SerialNumber);
    ByteWriter w(out.data(), out.size());
    w.u8(0, c.type);
    w.u8(1, 2);
    w.u16(2, static_cast<uint16_t>(kConfSize));
    w.u32(4, c.reserved4);
    w.u32(8, c.reserved8);
    w.u8(12, c.CPUSoftwareVerNum);
    w.u8(13, c.DSPSoftwareVerNum);
    w.u8(14, static_cast<uint8_t>(c.BoardRev));
    w.u8(25, c.KvrType);
    w.u8(26, c.Nbeams);
    w.u8(27, c.BeamGeometry);
    w.i16(28, c.SlantAngle);
    w.u8(30, c.SensorOrientation);
    w.u8(31, c.CompassInstalled);
    w.u8(32, c.RecorderInstalled);
    w.u8(33, c.TemperatureInstalled);
    w.u8(34, c.PressureInstalled);
    w.u8(35, c.reserved35);
    for (int i = 0; i < kConfMatrixEntries; ++i) w.i16(36 + 2 * i, c.TransformationMatrix[i]);
    w.u16(68, c.reserved68);
    w.i32(70, c.PressureScale);
    w.i32(74, c.PressureOffset);
    w.u8(78, c.reserved78);
    w.u8(79, c.ExtSensorInstalled);
    w.u8(80, c.ExtPressureSensorInstalled);
    w.u8(81, c.CtdSensorInstalled);
    w.i16(82, c.PressureScale2);
    w.u8(84, c.reserved84[0]);
    w.u8(85, c.reserved84[1]);
    w.u8(86, c.InternalGpsAvailable);
    w.u8(87, c.reserved87);
    w.u8(88, c.PressureRange);
    for (size_t i = 0; i < c.reserved89.size(); ++i) w.u8(89 + i, c.reserved89[i]);
    return out;
}

RecordStatus DecodeOper(const uint8_t* data, size_t size, const InstrumentConf& conf, OperationRecord& oper) {
    if (data == nullptr || size < kOperSize) return RecordStatus::Short;
    ByteReader r(data, kOperSize);
    OperationRecord o;
    std::copy(data, data + kOperSize, o.raw.begin());
    o.type = r.u8(0);
    o.version = r.u8(1);
    o.size = r.u16(2);
    for (size_t i = 0; i < o.firmwareLimits.size(); ++i) o.firmwareLimits[i] = r.u16(12 + 2 * i);
    o.bottomTrackDisable = r.i16(39);
    if (conf.CPUSoftwareVerNum >= 16) {
        o.unwrapSamples = r.i16(47);
        o.unwrapPulses = r.i16(60);
    }
    oper = o;
    return RecordStatus::Ok;
}

std::array<uint8_t, kOperSize> EncodeOper(const OperationRecord& oper, const InstrumentConf& conf) {
    std::array<uint8_t, kOperSize> out = oper.raw;
    ByteWriter w(out.data(), out.size());
    w.u8(0, oper.type);
    w.u8(1, oper.version);
    w.u16(2, oper.size);
    for (size_t i = 0; i < oper.firmwareLimits.size(); ++i) w.u16(12 + 2 * i, oper.firmwareLimits[i]);
    w.i16(39, oper.bottomTrackDisable);
    if (conf.CPUSoftwareVerNum >= 16) {
        w.i16(47, oper.unwrapSamples);
        w.i16(60, oper.unwrapPulses);
    }
    return out;
}

bool UserTailIsDecoded(const UserSetup& user, const InstrumentConf& conf) {
    const int cpu = conf.CPUSoftwareVerNum;
    return (cpu >= 44 && (user.type == 12 || conf.type == kConfType)) || (cpu <= 19 && user.type == 18);
}

bool UserTailIsEncoded(const UserSetup& user, const InstrumentConf& conf) {
    return (conf.CPUSoftwareVerNum >= 44 && user.type == 18) || conf.type == kConfType;
}

bool CellSizeInTenths(const UserSetup& user, const InstrumentConf& conf) {
    return user.PCMode != 0 && conf.CPUSoftwareVerNum >= 60;
}

RecordStatus DecodeUser(const uint8_t* data, size_t size, const InstrumentConf& conf, UserSetup& user) {
    if (data == nullptr || size < kUserSize) return RecordStatus::Short;
    ByteReader r(data, kUserSize);
    UserSetup u;
    std::copy(data, data + kUserSize, u.raw.begin());
    u.type = r.u8(0);
    u.version = r.u8(1);
    u.size = r.u16(2);
    u.reserved4 = r.u32(4);
    u.reserved8 = r.u32(8);
    u.DefaultTemperature = r.i16(12);
    u.DefaultSalinity = r.i16(14);
    u.DefaultSpeedOfSound = r.i16(16);
    u.NumberOfCells = r.u16(18);
    u.BlankDistance = r.u16(22);
    u.SensorDepth = r.u32(24);
    u.TemperatureMode = r.u8(28);
    u.AveragingInterval = r.u16(29);
    u.ProfileInterval = r.u16(31);
    u.PingInterval = r.u16(33);
    u.BurstMode = r.u16(35);
    u.BurstInterval = r.u16(37);
    u.ProfilesPerBurst = r.u16(39);
    u.CoordinateSystem = r.u8(41);
    u.OutMode = r.u8(42);
    u.OutFormat = r.u8(43);
    u.RecorderEnabled = r.u8(44);
    u.RecorderMode = r.u8(45);
    u.DeploymentMode = r.u8(46);
    u.DeploymentName = r.text(47, 9);
    u.DeploymentYear = r.i16(56);
    u.DeploymentDay = r.u8(58);
    u.DeploymentMonth = r.u8(59);
    u.DeploymentMinute = r.u8(60);
    u.DeploymentHour = r.u8(61);
    u.DeploymentHundredths = r.u8(62);
    u.DeploymentSecond = r.u8(63);
    u.CommentLine1 = r.text(64, 60);
    u.CommentLine2 = r.text(124, 60);
    u.CommentLine3 = r.text(184, 60);
    u.reserved244 = r.u8(244);
    if (UserTailIsDecoded(u, conf)) {
        u.BottomTrack = r.u8(245);
        u.MagneticDeclinationRaw = r.i16(246);
        u.PressureTimeSeriesInterval = r.u8(248);
        u.PseriesRate = r.u8(249);
        u.PseriesLength = r.u16(250);
        u.reserved252 = r.u8(252);
        u.reserved253 = r.u8(253);
        u.PCMode = r.u8(254);
        u.EnableInternalGps = r.u8(255);
    }
    // The cell size unit depends on PCMode, so it is decoded after the tail.
    const uint16_t cellRaw = r.u16(20);
    u.CellSizeCm = CellSizeInTenths(u, conf) ? static_cast<float>(cellRaw * 0.1) : static_cast<float>(cellRaw);
    user = std::move(u);
    return RecordStatus::Ok;
}

std::array<uint8_t, kUserSize> EncodeUser(const UserSetup& u, const InstrumentConf& conf) {
    std::array<uint8_t, kUserSize> out = u.raw;
    PutText(out.data(), out.size(), 47, 9, u.DeploymentName);
    PutText(out.data(), out.size(), 64, 60, u.CommentLine1);
    PutText(out.data(), out.size(), 124, 60, u.CommentLine2);
    PutText(out.data(), out.size(), 184, 60, u.CommentLine3);
    ByteWriter w(out.data(), out.size());
    w.u8(0, u.type);
    w.u8(1, u.version);
    w.u16(2, u.size);
    w.u32(4, u.reserved4);
    w.u32(8, u.reserved8);
    w.i16(12, u.DefaultTemperature);
    w.i16(14, u.DefaultSalinity);
    w.i16(16, u.DefaultSpeedOfSound);
    w.u16(18, u.NumberOfCells);
    const double cellUnits = CellSizeInTenths(u, conf) ? u.CellSizeCm * 10.0 : static_cast<double>(u.CellSizeCm);
    w.u16(20, static_cast<uint16_t>(RoundHalfAwayClamped(cellUnits, 0, 65535)));
    w.u16(22, u.BlankDistance);
    w.u32(24, u.SensorDepth);
    w.u8(28, u.TemperatureMode);
    w.u16(29, u.AveragingInterval);
    w.u16(31, u.ProfileInterval);
    w.u16(33, u.PingInterval);
    w.u16(35, u.BurstMode);
    w.u16(37, u.BurstInterval);
    w.u16(39, u.ProfilesPerBurst);
    w.u8(41, u.CoordinateSystem);
    w.u8(42, u.OutMode);
    w.u8(43, u.OutFormat);
    w.u8(44, u.RecorderEnabled);
    w.u8(45, u.RecorderMode);
    w.u8(46, u.DeploymentMode);
    w.i16(56, u.DeploymentYear);
    w.u8(58, u.DeploymentDay);
    w.u8(59, u.DeploymentMonth);
    w.u8(60, u.DeploymentMinute);
    w.u8(61, u.DeploymentHour);
    w.u8(62, u.DeploymentHundredths);
    w.u8(63, u.DeploymentSecond);
    w.u8(244, u.reserved244);
    if (UserTailIsEncoded(u, conf)) {
        w.u8(245, u.BottomTrack);
        w.i16(246, u.MagneticDeclinationRaw);
        w.u8(248, u.PressureTimeSeriesInterval);
        w.u8(249, u.PseriesRate);
        w.u16(250, u.PseriesLength);
        w.u8(252, u.reserved252);
        w.u8(253, u.reserved253);
        w.u8(254, u.PCMode);
        w.u8(255, u.EnableInternalGps);
    } else {
        std::fill(out.begin() + kUserTailOffset, out.end(), 0);
    }
    return out;
}

}  // namespace rm
