#pragma once
// One profile of a data file, decoded into the values a person reads: header fields in
// degrees, degrees C and volts, the blocks the file holds, and per beam and cell the raw and
// scaled velocity, standard error and amplitude. Both presentations of the profile command
// (text and JSON) are made from this one view.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "data/kvr_data.h"

namespace rm::cli {

// The 18-byte bottom track block as processing reads it: flag byte at 1, four u16 ranges in
// centimetres at 2, four i16 velocities at 10.
struct BottomTrackView {
    uint8_t flag = 0;
    std::array<uint16_t, 4> rangesCm{};
    std::array<int16_t, 4> velocities{};
};

// The 36-byte shallow-water block: all eighteen u16 words, and the fields that unwrapping reads.
struct ShallowWaterView {
    std::array<uint16_t, 18> words{};
    double referenceStartCm = 0.0;   // word at 4, tenths of a centimetre
    double referenceLengthCm = 0.0;  // word at 6, tenths of a centimetre
    std::array<int16_t, 4> references{};  // at 24, one a beam
    std::array<uint8_t, 4> counts{};      // at 32, one a beam
};

struct ProfileView {
    int number = 0;      // 1-based position in the file
    int readResult = 0;  // 0 read, 1 read error, 2 bad checksum

    uint8_t type = 0;
    uint8_t flags = 0;
    uint16_t size = 0;
    uint32_t profileNumber = 0;  // as counted by the instrument
    std::string time;            // "%4d/%02d/%02d  %02d:%02d:%02d"
    int hundredths = 0;
    uint32_t pingCount = 0;
    uint16_t word38 = 0;
    double headingDeg = 0.0, pitchDeg = 0.0, rollDeg = 0.0;
    double sdHeadingDeg = 0.0, sdPitchDeg = 0.0, sdRollDeg = 0.0, sdFourth = 0.0;
    double temperatureDegC = 0.0;
    uint16_t pressureCounts = 0;
    uint8_t pressureHighByte = 0;
    double pressureDbar = 0.0;
    uint16_t pressure2Counts = 0;
    double word56 = 0.0;  // tenths
    double inputVoltage = 0.0;

    std::optional<GpsBlock> gps;
    std::optional<BottomTrackView> bottomTrack;
    std::optional<CtdValues> ctd;
    std::optional<std::array<uint16_t, 4>> extSensor;
    std::optional<ShallowWaterView> shallowWater;

    int cells = 0;
    int beams = 0;
    double velocityScale = 1.0;  // 0.1 for the high-resolution format
    // Indexed [beam][cell]. A bad velocity has no cm/s value.
    std::vector<std::vector<int16_t>> velocityRaw;
    std::vector<std::vector<std::optional<double>>> velocityCmPerS;
    std::vector<std::vector<int>> stdError;
    std::vector<std::vector<int>> amplitude;
};

// True for the raw values that mark a bad velocity: 32767, and in the high-resolution format
// (velocity scale 0.1) also 9999.
bool IsBadVelocity(int16_t raw, double velocityScale);

// The view of `record`, profile `number` (1-based) of the file whose head `data` has read.
ProfileView MakeProfileView(const CKvrData& data, const ProfileRecord& record, int number, int readResult);

// Header fields, blocks, and one table per beam.
std::string FormatProfileText(const ProfileView& view);
// One object; arrays as nested arrays [beam][cell], absent blocks as null.
nlohmann::json ProfileJson(const ProfileView& view);

}  // namespace rm::cli
