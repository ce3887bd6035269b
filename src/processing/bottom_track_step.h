#pragma once
// The bottom-track step of a profile: classification of the ensemble, its velocity in the
// requested coordinate system (m/s) and its depths per beam (m), both corrected for sound
// speed, the hold of the previous profile's values for a bad ensemble, and the bottom-track
// track point. BottomTrackStep itself is declared in processing_steps.h.
//
// Raw block, 18 bytes in the byte order the reader delivers: +1 flag, +2 four u16 depths in cm,
// +10 four i16 velocities in mm/s in the recorded coordinate system.

#include <array>
#include <cstdint>

#include "processing/processing_context.h"
#include "processing/velocity_chain.h"

namespace rm {

struct RawBottomTrack {
    uint8_t flag = 0;
    std::array<uint16_t, 4> depth{};
    std::array<int16_t, 4> velocity{};
};
RawBottomTrack ReadBottomTrackBlock(const ProfileRecord& record);

struct BottomTrackClass {
    int badBeams = 0;     // beams whose raw depth is 0 or 32767
    uint8_t status = kBottomGood;
};
// 3 when more beams are bad than `numBadBeams` allows or the ensemble's flag is 0; else 2 with
// no bad beam and 4, 5, 6 with one, two, three. A file without bottom track classifies as 2.
BottomTrackClass ClassifyBottomTrack(const CKvrData& data, const ProfileRecord& record, int numBadBeams);

// The velocity of the ensemble per axis in `coordinateSystem`, m/s: all MissingValueF when
// any beam is bad, axes beyond the beams 0. Without user rotation, equal recorded and requested
// systems pass through the identity.
VelocityVector BottomTrackVelocity(const ProcessingContext& ctx, int slot, int coordinateSystem);

}  // namespace rm
