#pragma once
// Little-endian field access on byte buffers. Every binary layout of the system is read and
// written through these two cursors; no record is ever cast from raw memory.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace rm {

// Reads fixed-width little-endian values at absolute offsets of a buffer it does not own.
// Offsets outside the buffer read as zero, so a malformed record can never read past its end.
class ByteReader {
public:
    ByteReader(const uint8_t* data, size_t size) : data_(data), size_(size) {}

    size_t size() const { return size_; }
    const uint8_t* data() const { return data_; }

    uint8_t u8(size_t at) const { return at < size_ ? data_[at] : 0; }
    int8_t i8(size_t at) const { return static_cast<int8_t>(u8(at)); }
    uint16_t u16(size_t at) const { return static_cast<uint16_t>(u8(at) | (u8(at + 1) << 8)); }
    int16_t i16(size_t at) const { return static_cast<int16_t>(u16(at)); }
    uint32_t u32(size_t at) const {
        return static_cast<uint32_t>(u16(at)) | (static_cast<uint32_t>(u16(at + 2)) << 16);
    }
    int32_t i32(size_t at) const { return static_cast<int32_t>(u32(at)); }
    uint64_t u64(size_t at) const {
        return static_cast<uint64_t>(u32(at)) | (static_cast<uint64_t>(u32(at + 4)) << 32);
    }
    double f64(size_t at) const {
        uint64_t bits = u64(at);
        double v;
        std::memcpy(&v, &bits, sizeof v);
        return v;
    }
    float f32(size_t at) const {
        uint32_t bits = u32(at);
        float v;
        std::memcpy(&v, &bits, sizeof v);
        return v;
    }
    // A NUL-terminated text field of at most `width` bytes.
    std::string text(size_t at, size_t width) const {
        std::string s;
        for (size_t i = 0; i < width; ++i) {
            char c = static_cast<char>(u8(at + i));
            if (c == '\0') break;
            s.push_back(c);
        }
        return s;
    }

private:
    const uint8_t* data_;
    size_t size_;
};

// Writes fixed-width little-endian values at absolute offsets of a buffer it does not own.
// Writes outside the buffer are dropped.
class ByteWriter {
public:
    ByteWriter(uint8_t* data, size_t size) : data_(data), size_(size) {}

    void u8(size_t at, uint8_t v) {
        if (at < size_) data_[at] = v;
    }
    void i8(size_t at, int8_t v) { u8(at, static_cast<uint8_t>(v)); }
    void u16(size_t at, uint16_t v) {
        u8(at, static_cast<uint8_t>(v & 0xFF));
        u8(at + 1, static_cast<uint8_t>(v >> 8));
    }
    void i16(size_t at, int16_t v) { u16(at, static_cast<uint16_t>(v)); }
    void u32(size_t at, uint32_t v) {
        u16(at, static_cast<uint16_t>(v & 0xFFFF));
        u16(at + 2, static_cast<uint16_t>(v >> 16));
    }
    void i32(size_t at, int32_t v) { u32(at, static_cast<uint32_t>(v)); }
    void u64(size_t at, uint64_t v) {
        u32(at, static_cast<uint32_t>(v & 0xFFFFFFFFu));
        u32(at + 4, static_cast<uint32_t>(v >> 32));
    }
    void f64(size_t at, double v) {
        uint64_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        u64(at, bits);
    }
    void f32(size_t at, float v) {
        uint32_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        u32(at, bits);
    }
    // A text field of exactly `width` bytes: the text cut to width - 1, NUL-padded.
    void text(size_t at, size_t width, const std::string& s) {
        for (size_t i = 0; i < width; ++i) {
            u8(at + i, (i + 1 < width && i < s.size()) ? static_cast<uint8_t>(s[i]) : 0);
        }
    }

private:
    uint8_t* data_;
    size_t size_;
};

// The 16-bit additive checksum that closes every profile and wave record and every profile
// frame from the instrument: start value 0xA596, every byte added, carries dropped.
uint16_t RecordChecksum(const uint8_t* data, size_t size);

}  // namespace rm
