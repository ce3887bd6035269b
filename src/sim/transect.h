#pragma once
// Synthetic profiles of a boat crossing the virtual river, as the instrument would record them.
//
// Each profile samples the river at the middle of its averaging interval (see crossing_plan.h).
// Velocities are those of the water relative to the moving instrument, in mm/s (raw x 0.1 =
// cm/s), in the recorded coordinate system: ENU as East, North, Up and a zero error velocity;
// XYZ and beam as the inverses of the steps processing applies (instrument_geometry.h), with
// the heading, pitch and roll of the header. A cell's velocity is the mean of the vertical
// power law over the cell's extent, so that the mean of contiguous cells is the exact mean of
// the layer they cover. The water is taken as uniform across the beam spread and the cell
// depths as untilted.
//
// Cells whose far edge lies beyond the side-lobe limit (the bed range times the cosine of the
// beam slant) hold the bad value 32767 in every beam and the standard error 255.
//
// Bottom track (18 bytes, in the byte order processing reads): byte 0 zero, byte 1 the flag 1
// (good), four u16 vertical depths of the bed below the transducer in cm (the same for every
// beam: the bed is taken as flat under the footprint; a three-beam head repeats it in the
// fourth slot), four i16 velocities of the bed relative to the instrument in mm/s in the
// recorded coordinate system (the fourth zero for three beams).
//
// Rounding. Raw values are whole mm/s, or whole tenths of mm/s in the finer unit that firmware
// 16.5 and later records in pulse-coherent and shallow-water-ping mode (bottom track stays in
// mm/s). Each value carries its rounding remainder into the same value of the next profile
// (error diffusion), so that a velocity that stays the same from profile to profile, like the
// boat's, is not biased by rounding: over n profiles the mean recorded value is within 0.5 / n
// counts of the true one. No good value is ever 9999, the second bad marker of the finer unit.
//
// Pulse-coherent mode. The water velocities are ambiguous by multiples of 2 L (L the
// ambiguity velocity the records give): each is stored wrapped into [-L, L). The shallow-water
// block carries, per beam, the true mean over the reference range of cells with a count above
// the reader's threshold, so that unwrapping on reading restores the true values.

#include <array>
#include <cstdint>
#include <vector>

#include "data/profile_record.h"
#include "data/velocity_unwrap.h"
#include "sim/crossing_plan.h"
#include "sim/gaussian_noise.h"
#include "sim/geo_offset.h"
#include "sim/instrument_geometry.h"
#include "sim/truth.h"
#include "sim/virtual_river.h"

namespace rm::sim {

enum class GpsSource { None, Internal, External };

struct TransectSettings {
    int beams = 4;
    CellLayout layout;
    int coordinateSystem = 2;  // 0 beam, 1 XYZ, 2 ENU, as recorded
    int bottomTrackMode = 1;   // 0 off, 1 on, 2 on with the shallow-water ping
    bool shallowWaterBlock = false;  // pulse-coherent mode or the shallow-water ping
    GpsSource gps = GpsSource::None;
    GeoReference geo;
    double velocityNoiseCms = 0.0;     // standard deviation added to every water velocity value
    double bottomTrackNoiseCms = 0.0;  // the same for the bottom-track velocities
    double temperatureC = 15.0;
    double slantDeg = 20.0;
    int pingsPerSecond = 5;
    double countsPerMm = 1.0;      // raw counts of a water velocity of 1 mm/s: 10 in the finer unit
    bool wrapVelocities = false;   // pulse-coherent mode
    uint16_t halfLimitWord = 0;    // shallow-water block word at 10: half the ambiguity velocity, mm/s
    uint16_t pulseWord = 0;        // shallow-water block word at 8
    UnwrapParameters unwrap;       // limit (mm/s) and reference range as a reader computes them
};

// The head of the shallow-water block the generator writes: ping and pulse words, the
// reference range (the cell after the first one) and the half limit. The block's shallow cell
// itself is never usable: its velocities and references are bad, its counts zero.
void WriteShallowWaterHead(const TransectSettings& settings, ProfileRecord& record);

// Header words of a profile as the instrument's frame starts it: sync byte, record type and
// the header size (80, or 128 when an external GPS block is added to the record on disk).
constexpr uint8_t kProfileSyncByte = 0xA5;
constexpr uint8_t kProfileRecordType = 0x10;
constexpr uint16_t kProfileHeaderWord = 0x50;
constexpr uint16_t kProfileHeaderWordWithGps = 0x80;

class TransectGenerator {
public:
    // `beamToXyz` is the beam-to-XYZ matrix as processing derives it from the configuration.
    TransectGenerator(const VirtualRiver& river, const TransectSettings& settings, const SmallMatrix& beamToXyz,
                      uint64_t seed);

    // False when the beam matrix cannot be inverted (then no profile can be made).
    bool Usable() const { return usable_; }

    // The profile of one state of the crossing. Draws from the noise stream, so profiles must
    // be built in order for a seed to reproduce a recording.
    ProfileRecord Build(const ProfileState& state);

    // The GPS block of an internal receiver: the fixes at the start and the end of the interval.
    GpsBlock InternalGpsBlock(const ProfileState& state) const;

private:
    void FillHeader(const ProfileState& state, ProfileHeader& header) const;
    void FillWater(const ProfileState& state, const SmallMatrix& toRecorded, ProfileRecord& record);
    void FillBottomTrack(const ProfileState& state, const SmallMatrix& toRecorded, ProfileRecord& record);
    void FillShallowWater(ProfileRecord& record) const;
    // The reference velocities of the block from the velocities before they are wrapped.
    void FillReferences(ProfileRecord& record) const;
    // `counts` rounded with the remainder carried in `carry`, kept off the marker 9999.
    static int16_t ToRaw(double counts, double& carry);
    // A rounded velocity as stored: wrapped into [-L, L) in pulse-coherent mode, off 9999.
    int16_t Stored(int16_t counts) const;

    VirtualRiver river_;
    TransectSettings settings_;
    SmallMatrix beamToXyz_;
    GaussianNoise noise_;
    bool usable_ = false;
    std::vector<double> waterCarry_;  // per beam and cell
    std::array<double, 4> bottomCarry_{};
};

}  // namespace rm::sim
