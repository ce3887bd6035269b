#pragma once
// Builds record images byte by byte from the layout tables, independently of the codecs under
// test: little-endian values are split into bytes by hand.

#include <cstdint>
#include <string>
#include <vector>

namespace rm::test {

class Image {
public:
    explicit Image(size_t size) : bytes(size, 0) {}

    Image& u8(size_t at, uint8_t v) { bytes.at(at) = v; return *this; }
    Image& u16(size_t at, uint16_t v) { return u8(at, v & 0xFF).u8(at + 1, v >> 8); }
    Image& i16(size_t at, int16_t v) { return u16(at, static_cast<uint16_t>(v)); }
    Image& u32(size_t at, uint32_t v) { return u16(at, v & 0xFFFF).u16(at + 2, v >> 16); }
    Image& i32(size_t at, int32_t v) { return u32(at, static_cast<uint32_t>(v)); }
    Image& text(size_t at, const std::string& s) {
        for (size_t i = 0; i < s.size(); ++i) u8(at + i, static_cast<uint8_t>(s[i]));
        return *this;
    }
    const uint8_t* data() const { return bytes.data(); }
    size_t size() const { return bytes.size(); }

    std::vector<uint8_t> bytes;
};

// A valid version 2 configuration: 4 beams, down-looking, every installed flag set to a legal
// value, a distinct number in each field and non-zero bytes in every reserved area.
inline Image ConfV2() {
    Image m(96);
    m.u8(0, 16).u8(1, 2).u16(2, 96).u32(4, 0x11223344).u32(8, 0x55667788);
    m.u8(12, 165).u8(13, 50).u8(14, 'F').text(15, "S1234").u8(21, 0xEE);  // bytes behind the NUL
    m.u8(25, 1).u8(26, 4).u8(27, 3).i16(28, 250).u8(30, 0);
    m.u8(31, 1).u8(32, 0).u8(33, 1).u8(34, 1).u8(35, 0x5A);
    for (int i = 0; i < 16; ++i) m.i16(36 + 2 * i, static_cast<int16_t>(100 * (i + 1) - 700));
    m.u16(68, 0xBEEF).i32(70, 2500000).i32(74, -150000).u8(78, 0x33);
    m.u8(79, 1).u8(80, 0).u8(81, 1).i16(82, -42).u8(84, 0x44).u8(85, 0x45);
    m.u8(86, 1).u8(87, 0x66).u8(88, 7);
    for (int i = 0; i < 7; ++i) m.u8(89 + i, static_cast<uint8_t>(0xA0 + i));
    return m;
}

// A valid version 1 configuration of the old 64-byte layout.
inline Image ConfV1() {
    Image m(64);
    m.u8(0, 16).u8(1, 1).u16(2, 64).u32(4, 0x01020304).u32(8, 0x05060708);
    m.u8(12, 18).text(13, "OLD77").u8(23, 2).u8(24, 3).u8(25, 0x77);
    m.u8(26, static_cast<uint8_t>(-3)).u8(27, 0).u8(28, 1).u8(29, 1).u8(30, 0).u8(31, 1);
    for (int i = 0; i < 9; ++i) m.i16(34 + 2 * i, static_cast<int16_t>(1024 + i));
    for (size_t at = 52; at < 64; ++at) m.u8(at, 0x99);  // beyond the nine entries
    return m;
}

// A user setup with a distinct value in every field; the tail is filled.
inline Image User(uint8_t type) {
    Image m(256);
    m.u8(0, type).u8(1, 3).u16(2, 256).u32(4, 0xCAFEBABE).u32(8, 0x0BADF00D);
    m.i16(12, 155).i16(14, 348).i16(16, 14905).u16(18, 30).u16(20, 123).u16(22, 25).u32(24, 50);
    m.u8(28, 1).u16(29, 10).u16(31, 12).u16(33, 5).u16(35, 1).u16(37, 600).u16(39, 8);
    m.u8(41, 2).u8(42, 1).u8(43, 0).u8(44, 1).u8(45, 1).u8(46, 1).text(47, "RIV").u8(52, 0x7F);
    m.i16(56, 2023).u8(58, 17).u8(59, 6).u8(60, 45).u8(61, 13).u8(62, 99).u8(63, 8);
    m.text(64, "first comment").text(124, "second").text(184, "third").u8(200, 0x21);
    m.u8(244, 0x4C).u8(245, 2).i16(246, -250).u8(248, 4).u8(249, 0x14).u16(250, 1024);
    m.u8(252, 0x52).u8(253, 0x53).u8(254, 1).u8(255, 1);
    return m;
}

}  // namespace rm::test
