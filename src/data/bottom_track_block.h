#pragma once
// The 18-byte bottom-track block of a profile and its bad-beam rule ("NumBadBeams"), shared by
// the processing chain and by live acquisition, which holds a bad ensemble on the raw record
// before it is stored.
//
// Block, in the byte order the reader delivers: +1 flag, +2 four u16 depths (ranges) in cm,
// +10 four i16 velocities in mm/s in the recorded coordinate system.

#include <array>
#include <cstdint>

#include "data/profile_record.h"

namespace rm {

// Status of the bottom track of a profile: 2 good, 3 bad, 4/5/6 good with 1/2/3 bad beams.
enum BottomStatusCode : uint8_t { kBottomGood = 2, kBottomBad = 3 };

struct RawBottomTrack {
    uint8_t flag = 0;
    std::array<uint16_t, 4> depth{};
    std::array<int16_t, 4> velocity{};
};
RawBottomTrack ReadBottomTrackBlock(const ProfileRecord& record);
void WriteBottomTrackBlock(const RawBottomTrack& raw, ProfileRecord& record);

struct BottomTrackClass {
    int badBeams = 0;     // beams whose raw depth is 0 or 32767
    uint8_t status = kBottomGood;
};
// 3 when more beams are bad than `numBadBeams` allows, every beam is bad or the ensemble's flag
// is 0; else 2 with no bad beam and 4, 5, 6 with one, two, three. Without bottom track in the
// setup the ensemble classifies as 2.
BottomTrackClass ClassifyBottomTrack(bool bottomTrackOn, const ProfileRecord& record, int numBadBeams);

// The live hold of a bad ensemble (status over 2) on the raw block of `current`: with a
// previous profile the velocities of all beams are its raw velocities, and when the bad beams
// are more than `numBadBeams` allows the ranges of the bad beams are its ranges too; without one
// the velocities and the ranges of the bad beams become 32767. Returns the class found before
// the hold.
BottomTrackClass HoldBadBottomTrack(ProfileRecord& current, const ProfileRecord* previous, int numBadBeams);

}  // namespace rm
