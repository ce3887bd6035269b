// The 80-byte profile header in its current and its old (file version below 2) layout.

#include <algorithm>
#include <cstring>

#include "data/byte_io.h"
#include "data/profile_codec.h"

namespace rm {

void OldHeaderToCurrent(const uint8_t* oldHeader, uint8_t* current) {
    std::memset(current, 0, kProfileHeaderSize);
    // Bytes 0 to 26 stand where they are.
    std::memcpy(current, oldHeader, 27);
    // Bytes 27 to 49 (three single bytes, nine words and the pressure word) stand one byte
    // later in the old header; old byte 27 is not carried over.
    std::memcpy(current + 27, oldHeader + 28, 23);
    // The four standard deviations: old 53 to 56 are new 50 to 53 (old 51 and 52 are dropped).
    std::memcpy(current + 50, oldHeader + 53, 4);
    // The second pressure value was a single byte at old 57; widened to the word at 54.
    current[54] = oldHeader[57];
    current[55] = 0;
    // The tenths word at 56 was the word at old 58 and 59; old headers carry no pressure high
    // byte, so new 58 and 59 stay zero.
    current[56] = oldHeader[58];
    current[57] = oldHeader[59];
    // Bytes 60 to 79 stand where they are.
    std::memcpy(current + 60, oldHeader + 60, 20);
}

namespace {

void DecodeCurrentHeader(const uint8_t* data, bool pulseCoherent, ProfileHeader& h) {
    std::memcpy(h.raw.data(), data, kProfileHeaderSize);
    ByteReader r(h.raw.data(), h.raw.size());
    h.type = r.u8(0);
    h.flags = r.u8(1);
    h.size = r.u16(2);
    h.profileNumber = r.u32(14);
    h.year = r.i16(18);
    h.day = r.u8(20);
    h.month = r.u8(21);
    h.minute = r.u8(22);
    h.hour = r.u8(23);
    h.hundredths = r.u8(24);
    h.second = r.u8(25);
    h.pingCount = static_cast<uint32_t>(r.u16(36)) * (pulseCoherent ? 10u : 1u);
    h.word38 = r.u16(38);
    h.heading = r.i16(40);
    h.pitch = r.i16(42);
    h.roll = r.i16(44);
    h.temperature = r.i16(46);
    h.pressureCounts = r.u16(48);
    h.sdHeading = r.u8(50);
    h.sdPitch = r.u8(51);
    h.sdRoll = r.u8(52);
    h.sdFourth = r.u8(53);
    h.pressure2Counts = r.u16(54);
    h.word56 = r.u16(56);
    h.pressureHighByte = pulseCoherent ? r.u8(58) : 0;
    h.inputVoltage = r.u8(75);
}

}  // namespace

void DecodeProfileHeader(const uint8_t* data, const ProfileLayout& layout, ProfileHeader& header) {
    if (layout.OldLayout()) {
        uint8_t current[kProfileHeaderSize];
        OldHeaderToCurrent(data, current);
        DecodeCurrentHeader(current, layout.pulseCoherent, header);
    } else {
        DecodeCurrentHeader(data, layout.pulseCoherent, header);
    }
}

void EncodeProfileHeader(const ProfileHeader& h, const ProfileLayout& layout, uint8_t* out) {
    std::memcpy(out, h.raw.data(), kProfileHeaderSize);
    ByteWriter w(out, kProfileHeaderSize);
    w.u8(0, h.type);
    w.u8(1, h.flags);
    w.u16(2, h.size);
    w.u32(14, h.profileNumber);
    w.i16(18, h.year);
    w.u8(20, h.day);
    w.u8(21, h.month);
    w.u8(22, h.minute);
    w.u8(23, h.hour);
    w.u8(24, h.hundredths);
    w.u8(25, h.second);
    const uint32_t stored = layout.pulseCoherent ? h.pingCount / 10u : h.pingCount;
    w.u16(36, static_cast<uint16_t>(std::min<uint32_t>(stored, 0xFFFFu)));
    w.u16(38, h.word38);
    w.i16(40, h.heading);
    w.i16(42, h.pitch);
    w.i16(44, h.roll);
    w.i16(46, h.temperature);
    w.u16(48, h.pressureCounts);
    w.u8(50, h.sdHeading);
    w.u8(51, h.sdPitch);
    w.u8(52, h.sdRoll);
    w.u8(53, h.sdFourth);
    w.u16(54, h.pressure2Counts);
    w.u16(56, h.word56);
    // Outside pulse-coherent mode the byte is not a pressure byte: it keeps what was read.
    if (layout.pulseCoherent) w.u8(58, h.pressureHighByte);
    w.u8(75, h.inputVoltage);
}

}  // namespace rm
