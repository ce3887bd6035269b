#pragma once
// One profile as it is held in memory: the decoded 80-byte header with its raw image, the
// optional blocks, and the per-beam arrays. The same record is filled from a data file, from
// an instrument frame, or by the virtual river, and written back by the data file writer.
// Also the wave burst record that is interleaved with profiles when wave data are recorded.

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace rm {

constexpr size_t kProfileHeaderSize = 80;
constexpr size_t kShallowWaterBlockSize = 36;
constexpr size_t kBottomTrackBlockSize = 18;
constexpr size_t kCtdBlockSize = 16;
constexpr size_t kExtSensorBlockSize = 8;
constexpr size_t kGpsBlockSize = 48;
constexpr size_t kGpsBlockSizeShort = 40;
constexpr size_t kChecksumSize = 2;
constexpr int16_t kBadVelocity = 32767;
constexpr int16_t kUnwrapBadVelocity = 9999;
constexpr uint8_t kBottomTrackFillByte = 0x09;

// Profile header, current layout. `raw` keeps every byte as read (old-layout headers are moved
// into the current layout on reading); the named fields are decoded from it and written back
// into it on encoding, so bytes kept as read survive a round trip.
struct ProfileHeader {
    std::array<uint8_t, kProfileHeaderSize> raw{};
    uint8_t type = 0;
    uint8_t flags = 0;
    uint16_t size = 0;
    uint32_t profileNumber = 0;
    int16_t year = 0;
    uint8_t day = 0;
    uint8_t month = 0;
    uint8_t minute = 0;
    uint8_t hour = 0;
    uint8_t hundredths = 0;
    uint8_t second = 0;
    uint32_t pingCount = 0;  // stored value x 10 in pulse-coherent mode
    uint16_t word38 = 0;
    int16_t heading = 0;      // tenths of a degree
    int16_t pitch = 0;        // tenths of a degree
    int16_t roll = 0;         // tenths of a degree
    int16_t temperature = 0;  // hundredths of a degree C
    uint16_t pressureCounts = 0;
    uint8_t sdHeading = 0, sdPitch = 0, sdRoll = 0, sdFourth = 0;  // tenths
    uint16_t pressure2Counts = 0;
    uint16_t word56 = 0;  // tenths
    uint8_t pressureHighByte = 0;  // taken in pulse-coherent mode only
    uint8_t inputVoltage = 0;      // byte 75, units of 0.2 V
};

// Two GPS fixes of the profile interval: the first and the last. Times are hhmmss.sss.
struct GpsBlock {
    double startTime = 0.0, startLatitude = 0.0, startLongitude = 0.0;
    double endTime = 0.0, endLatitude = 0.0, endLongitude = 0.0;
};

// CTD values in physical units: temperature degC, conductivity mS/cm, pressure dbar,
// salinity ppt.
struct CtdValues {
    float temperature = 0.0f, conductivity = 0.0f, pressure = 0.0f, salinity = 0.0f;
};

struct ProfileRecord {
    ProfileHeader header;
    bool hasShallowWater = false;
    std::array<uint8_t, kShallowWaterBlockSize> shallowWater{};
    bool hasBottomTrack = false;
    std::array<uint8_t, kBottomTrackBlockSize> bottomTrack{};  // byte order as the processing reads it
    bool hasCtd = false;
    std::array<uint8_t, kCtdBlockSize> ctdRaw{};  // the block as stored; written back when it still matches `ctd`
    CtdValues ctd;
    bool hasExtSensor = false;
    std::array<uint16_t, 4> extSensor{};  // in logical order 1, 2, 3, 4
    bool hasGps = false;
    GpsBlock gps;
    int cells = 0;
    int beams = 0;
    // Beam-major: element [beam * cells + cell].
    std::vector<int16_t> velocity;
    std::vector<uint8_t> stdError;
    std::vector<uint8_t> amplitude;

    // Sizes the arrays for `cellCount` x `beamCount`; every velocity becomes the bad value,
    // standard error and amplitude 0. Called once per file for a cache slot, not per read.
    void Resize(int cellCount, int beamCount);
    int16_t& Velocity(int beam, int cell) { return velocity[Index(beam, cell)]; }
    int16_t Velocity(int beam, int cell) const { return velocity[Index(beam, cell)]; }
    uint8_t& StdError(int beam, int cell) { return stdError[Index(beam, cell)]; }
    uint8_t StdError(int beam, int cell) const { return stdError[Index(beam, cell)]; }
    uint8_t& Amplitude(int beam, int cell) { return amplitude[Index(beam, cell)]; }
    uint8_t Amplitude(int beam, int cell) const { return amplitude[Index(beam, cell)]; }

private:
    size_t Index(int beam, int cell) const { return static_cast<size_t>(beam * cells + cell); }
};

// One wave burst: the 80-byte wave header kept as read (same offsets as a profile header up to
// 35) and the pressure samples, three bytes each, little-endian.
struct WaveBurst {
    std::array<uint8_t, kProfileHeaderSize> header{};
    std::vector<uint8_t> samples;  // 3 bytes a sample

    size_t SampleCount() const { return samples.size() / 3; }
    // Sample i as the low three bytes of a zeroed 32-bit word.
    uint32_t Sample(size_t i) const;
    void SetSample(size_t i, uint32_t value);
};

}  // namespace rm
