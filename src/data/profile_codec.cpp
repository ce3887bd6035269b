// Blocks, arrays and whole records of a profile, and the wave burst record.

#include "data/profile_codec.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

#include "data/byte_io.h"

namespace rm {

size_t ProfileLayout::GpsSize() const {
    switch (gps) {
        case GpsForm::Short40: return kGpsBlockSizeShort;
        case GpsForm::Long48: return kGpsBlockSize;
        case GpsForm::None: break;
    }
    return 0;
}

size_t ProfileLayout::RecordSize() const {
    size_t s = kProfileHeaderSize + GpsSize() + kChecksumSize;
    s += 4 * static_cast<size_t>(cells > 0 ? cells : 0) * static_cast<size_t>(beams > 0 ? beams : 0);
    if (!OldLayout()) {
        if (shallowWater) s += kShallowWaterBlockSize;
        if (bottomTrack) s += kBottomTrackBlockSize;
        if (ctd) s += kCtdBlockSize;
        if (extSensor) s += kExtSensorBlockSize;
    }
    return s;
}

ProfileLayout MakeProfileLayout(const InstrumentConf& conf, const UserSetup& user, GpsForm gps, int fileVersion) {
    ProfileLayout l;
    l.fileVersion = fileVersion;
    l.cells = user.NumberOfCells;
    l.beams = conf.Nbeams;
    l.gps = gps;
    l.pulseCoherent = user.PCMode != 0;
    l.cpuVersion = conf.CPUSoftwareVerNum;
    l.gpsImpliedBySetup = user.EnableInternalGps != 0 && conf.InternalGpsAvailable == 1;
    if (fileVersion >= 2) {
        l.shallowWater = user.PCMode != 0 || user.BottomTrack == 2;
        l.bottomTrack = user.BottomTrack != 0;
        l.ctd = conf.CtdSensorInstalled != 0;
        l.extSensor = conf.ExtSensorInstalled != 0;
    }
    return l;
}

GpsForm GpsFormFromFlags(uint8_t flags, const InstrumentConf& conf, const UserSetup& user) {
    if (flags & 0x1) return GpsForm::Short40;
    if (flags & 0x2) return GpsForm::Long48;
    if (user.EnableInternalGps != 0 && conf.InternalGpsAvailable == 1) return GpsForm::Long48;
    return GpsForm::None;
}

void DecodeBottomTrack(const uint8_t* data, const ProfileLayout& layout, ProfileRecord& record) {
    std::memcpy(record.bottomTrack.data(), data, kBottomTrackBlockSize);
    if (layout.SwapsBottomTrack()) std::swap(record.bottomTrack[0], record.bottomTrack[1]);
}

void EncodeBottomTrack(const ProfileRecord& record, const ProfileLayout& layout, uint8_t* out) {
    std::memcpy(out, record.bottomTrack.data(), kBottomTrackBlockSize);
    if (layout.SwapsBottomTrack()) std::swap(out[0], out[1]);
}

CtdValues DecodeCtdBlock(const uint8_t* data) {
    ByteReader r(data, kCtdBlockSize);
    CtdValues c;
    c.temperature = static_cast<float>(r.i32(0) / 1000.0);
    c.conductivity = static_cast<float>(r.i32(4) / 1000.0);
    c.pressure = static_cast<float>(r.i32(8) / 1000.0);
    c.salinity = static_cast<float>(r.i32(12) / 1000.0);
    return c;
}

namespace {

int32_t Thousandths(float value) {
    const double scaled = std::round(static_cast<double>(value) * 1000.0);
    if (!(scaled > std::numeric_limits<int32_t>::min())) return std::numeric_limits<int32_t>::min();
    if (scaled >= std::numeric_limits<int32_t>::max()) return std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(scaled);
}

bool SameCtd(const CtdValues& a, const CtdValues& b) {
    return a.temperature == b.temperature && a.conductivity == b.conductivity && a.pressure == b.pressure &&
           a.salinity == b.salinity;
}

}  // namespace

void EncodeCtdBlock(const CtdValues& ctd, uint8_t* out) {
    ByteWriter w(out, kCtdBlockSize);
    w.i32(0, Thousandths(ctd.temperature));
    w.i32(4, Thousandths(ctd.conductivity));
    w.i32(8, Thousandths(ctd.pressure));
    w.i32(12, Thousandths(ctd.salinity));
}

void DecodeExtSensor(const uint8_t* data, const ProfileLayout& layout, ProfileRecord& record) {
    ByteReader r(data, kExtSensorBlockSize);
    const bool reorder = layout.ReordersExtSensor();
    record.extSensor[0] = r.u16(0);
    record.extSensor[1] = r.u16(reorder ? 4 : 2);
    record.extSensor[2] = r.u16(reorder ? 2 : 4);
    record.extSensor[3] = r.u16(6);
}

void EncodeExtSensor(const ProfileRecord& record, const ProfileLayout& layout, uint8_t* out) {
    ByteWriter w(out, kExtSensorBlockSize);
    const bool reorder = layout.ReordersExtSensor();
    w.u16(0, record.extSensor[0]);
    w.u16(reorder ? 4 : 2, record.extSensor[1]);
    w.u16(reorder ? 2 : 4, record.extSensor[2]);
    w.u16(6, record.extSensor[3]);
}

GpsBlock DecodeGpsBlock(const uint8_t* data, GpsForm form) {
    GpsBlock g;
    if (form == GpsForm::Short40) {
        ByteReader r(data, kGpsBlockSizeShort);
        g.startTime = static_cast<double>(r.u32(0));
        g.startLatitude = r.f64(4);
        g.startLongitude = r.f64(12);
        g.endTime = static_cast<double>(r.u32(20));
        g.endLatitude = r.f64(24);
        g.endLongitude = r.f64(32);
    } else if (form == GpsForm::Long48) {
        ByteReader r(data, kGpsBlockSize);
        g.startTime = r.f64(0);
        g.startLatitude = r.f64(8);
        g.startLongitude = r.f64(16);
        g.endTime = r.f64(24);
        g.endLatitude = r.f64(32);
        g.endLongitude = r.f64(40);
    }
    return g;
}

void EncodeGpsBlock(const GpsBlock& g, uint8_t* out) {
    ByteWriter w(out, kGpsBlockSize);
    w.f64(0, g.startTime);
    w.f64(8, g.startLatitude);
    w.f64(16, g.startLongitude);
    w.f64(24, g.endTime);
    w.f64(32, g.endLatitude);
    w.f64(40, g.endLongitude);
}

namespace {

size_t ArrayCount(const ProfileLayout& l) { return static_cast<size_t>(l.cells) * static_cast<size_t>(l.beams); }

// Velocity (i16), standard error and amplitude (u8) of every beam and cell, beam-major in the
// current layout, cell-major in the old one. In memory the arrays are always beam-major.
void DecodeArrays(const uint8_t* data, const ProfileLayout& l, ProfileRecord& rec) {
    const size_t n = ArrayCount(l);
    ByteReader r(data, 4 * n);
    const size_t errAt = 2 * n, ampAt = 3 * n;
    if (!l.OldLayout()) {
        for (size_t i = 0; i < n; ++i) rec.velocity[i] = r.i16(2 * i);
        std::memcpy(rec.stdError.data(), data + errAt, n);
        std::memcpy(rec.amplitude.data(), data + ampAt, n);
        return;
    }
    for (int c = 0; c < l.cells; ++c) {
        for (int b = 0; b < l.beams; ++b) {
            const size_t stored = static_cast<size_t>(c) * static_cast<size_t>(l.beams) + static_cast<size_t>(b);
            rec.Velocity(b, c) = r.i16(2 * stored);
            rec.StdError(b, c) = r.u8(errAt + stored);
            rec.Amplitude(b, c) = r.u8(ampAt + stored);
        }
    }
}

void EncodeArrays(const ProfileRecord& rec, size_t n, uint8_t* out) {
    ByteWriter w(out, 4 * n);
    for (size_t i = 0; i < n; ++i) w.i16(2 * i, rec.velocity[i]);
    std::memcpy(out + 2 * n, rec.stdError.data(), n);
    std::memcpy(out + 3 * n, rec.amplitude.data(), n);
}

uint8_t FileGpsFlags(uint8_t flags, const ProfileLayout& l) {
    if (l.gps == GpsForm::None) return static_cast<uint8_t>(flags & ~0x3);
    if (flags & 0x1) return static_cast<uint8_t>((flags & ~0x1) | 0x2);
    if (!l.gpsImpliedBySetup) return static_cast<uint8_t>(flags | 0x2);
    return flags;
}

}  // namespace

DecodeResult DecodeProfileRecord(const uint8_t* data, const ProfileLayout& l, BlockOrder order, bool skipArrays,
                                 ProfileRecord& rec) {
    const size_t size = l.RecordSize();
    DecodeProfileHeader(data, l, rec.header);
    size_t at = kProfileHeaderSize;

    rec.hasShallowWater = !l.OldLayout() && l.shallowWater;
    rec.hasBottomTrack = !l.OldLayout() && l.bottomTrack;
    rec.hasCtd = !l.OldLayout() && l.ctd;
    rec.hasExtSensor = !l.OldLayout() && l.extSensor;
    rec.hasGps = l.gps != GpsForm::None;

    if (rec.hasShallowWater) {
        std::memcpy(rec.shallowWater.data(), data + at, kShallowWaterBlockSize);
        at += kShallowWaterBlockSize;
    }
    if (rec.hasBottomTrack) {
        DecodeBottomTrack(data + at, l, rec);
        at += kBottomTrackBlockSize;
    }
    if (rec.hasCtd) {
        std::memcpy(rec.ctdRaw.data(), data + at, kCtdBlockSize);
        rec.ctd = DecodeCtdBlock(data + at);
        at += kCtdBlockSize;
    }
    const auto readGps = [&] {
        if (!rec.hasGps) return;
        rec.gps = DecodeGpsBlock(data + at, l.gps);
        at += l.GpsSize();
    };
    const auto readExt = [&] {
        if (!rec.hasExtSensor) return;
        DecodeExtSensor(data + at, l, rec);
        at += kExtSensorBlockSize;
    };
    if (order == BlockOrder::Frame) {
        readGps();
        readExt();
    } else {
        readExt();
        readGps();
    }

    if (!skipArrays) {
        if (rec.cells != l.cells || rec.beams != l.beams || rec.velocity.size() != ArrayCount(l)) {
            rec.Resize(l.cells, l.beams);
        }
        DecodeArrays(data + at, l, rec);
    }
    ByteReader r(data, size);
    const uint16_t stored = r.u16(size - kChecksumSize);
    return RecordChecksum(data, size - kChecksumSize) == stored ? DecodeResult::Ok : DecodeResult::BadChecksum;
}

bool EncodeProfileRecord(const ProfileRecord& rec, const ProfileLayout& l, BlockOrder order, uint8_t* out) {
    const size_t n = ArrayCount(l);
    if (l.OldLayout() || l.gps == GpsForm::Short40) return false;
    if (rec.cells != l.cells || rec.beams != l.beams || rec.velocity.size() != n || rec.stdError.size() != n ||
        rec.amplitude.size() != n) {
        return false;
    }
    const size_t size = l.RecordSize();
    EncodeProfileHeader(rec.header, l, out);
    if (order == BlockOrder::File) out[1] = FileGpsFlags(out[1], l);
    size_t at = kProfileHeaderSize;

    if (l.shallowWater) {
        std::memcpy(out + at, rec.shallowWater.data(), kShallowWaterBlockSize);
        at += kShallowWaterBlockSize;
    }
    if (l.bottomTrack) {
        EncodeBottomTrack(rec, l, out + at);
        at += kBottomTrackBlockSize;
    }
    if (l.ctd) {
        // The stored block goes back unchanged unless the values were changed since it was read.
        if (SameCtd(DecodeCtdBlock(rec.ctdRaw.data()), rec.ctd)) {
            std::memcpy(out + at, rec.ctdRaw.data(), kCtdBlockSize);
        } else {
            EncodeCtdBlock(rec.ctd, out + at);
        }
        at += kCtdBlockSize;
    }
    const auto writeGps = [&] {
        if (l.gps == GpsForm::None) return;
        EncodeGpsBlock(rec.gps, out + at);
        at += kGpsBlockSize;
    };
    const auto writeExt = [&] {
        if (!l.extSensor) return;
        EncodeExtSensor(rec, l, out + at);
        at += kExtSensorBlockSize;
    };
    if (order == BlockOrder::Frame) {
        writeGps();
        writeExt();
    } else {
        writeExt();
        writeGps();
    }
    EncodeArrays(rec, n, out + at);
    ByteWriter w(out, size);
    w.u16(size - kChecksumSize, RecordChecksum(out, size - kChecksumSize));
    return true;
}

DecodeResult DecodeWaveBurst(const uint8_t* data, size_t sampleBytes, WaveBurst& burst) {
    std::memcpy(burst.header.data(), data, kProfileHeaderSize);
    burst.samples.assign(data + kProfileHeaderSize, data + kProfileHeaderSize + sampleBytes);
    const size_t body = kProfileHeaderSize + sampleBytes;
    const uint16_t stored = ByteReader(data, body + kChecksumSize).u16(body);
    return RecordChecksum(data, body) == stored ? DecodeResult::Ok : DecodeResult::BadChecksum;
}

bool EncodeWaveBurst(const WaveBurst& burst, size_t sampleBytes, uint8_t* out) {
    if (burst.samples.size() != sampleBytes) return false;
    std::memcpy(out, burst.header.data(), kProfileHeaderSize);
    if (sampleBytes > 0) std::memcpy(out + kProfileHeaderSize, burst.samples.data(), sampleBytes);
    const size_t body = kProfileHeaderSize + sampleBytes;
    ByteWriter(out, body + kChecksumSize).u16(body, RecordChecksum(out, body));
    return true;
}

}  // namespace rm
