#include "data/bottom_track_block.h"

#include <algorithm>

#include "data/byte_io.h"

namespace rm {

namespace {
constexpr size_t kFlagOffset = 1;
constexpr size_t kDepthOffset = 2;
constexpr size_t kVelocityOffset = 10;
constexpr uint16_t kBadRange = static_cast<uint16_t>(kBadVelocity);

int BeamsOf(const ProfileRecord& record) { return std::clamp(record.beams, 0, 4); }
bool BadRange(uint16_t d) { return d == 0 || d == kBadRange; }
}  // namespace

RawBottomTrack ReadBottomTrackBlock(const ProfileRecord& record) {
    const ByteReader block(record.bottomTrack.data(), record.bottomTrack.size());
    RawBottomTrack raw;
    raw.flag = block.u8(kFlagOffset);
    for (size_t beam = 0; beam < 4; ++beam) {
        raw.depth[beam] = block.u16(kDepthOffset + 2 * beam);
        raw.velocity[beam] = block.i16(kVelocityOffset + 2 * beam);
    }
    return raw;
}

void WriteBottomTrackBlock(const RawBottomTrack& raw, ProfileRecord& record) {
    ByteWriter block(record.bottomTrack.data(), record.bottomTrack.size());
    block.u8(kFlagOffset, raw.flag);
    for (size_t beam = 0; beam < 4; ++beam) {
        block.u16(kDepthOffset + 2 * beam, raw.depth[beam]);
        block.i16(kVelocityOffset + 2 * beam, raw.velocity[beam]);
    }
}

BottomTrackClass ClassifyBottomTrack(bool bottomTrackOn, const ProfileRecord& record, int numBadBeams) {
    BottomTrackClass c;
    if (!bottomTrackOn) return c;
    const RawBottomTrack raw = ReadBottomTrackBlock(record);
    const int beams = BeamsOf(record);
    for (int beam = 0; beam < beams; ++beam) {
        if (BadRange(raw.depth[static_cast<size_t>(beam)])) ++c.badBeams;
    }
    // An ensemble with every beam bad is bad whatever NumBadBeams allows.
    if (c.badBeams > numBadBeams || raw.flag == 0 || c.badBeams >= beams) c.status = kBottomBad;
    else c.status = static_cast<uint8_t>(c.badBeams == 0 ? kBottomGood : kBottomBad + c.badBeams);
    return c;
}

BottomTrackClass HoldBadBottomTrack(ProfileRecord& current, const ProfileRecord* previous, int numBadBeams) {
    const BottomTrackClass c = ClassifyBottomTrack(true, current, numBadBeams);
    if (c.status <= kBottomGood) return c;
    RawBottomTrack raw = ReadBottomTrackBlock(current);
    const bool rangesFailed = c.badBeams > numBadBeams;
    const size_t beams = static_cast<size_t>(BeamsOf(current));
    if (previous != nullptr) {
        const RawBottomTrack held = ReadBottomTrackBlock(*previous);
        for (size_t beam = 0; beam < beams; ++beam) {
            raw.velocity[beam] = held.velocity[beam];
            if (rangesFailed && BadRange(raw.depth[beam])) raw.depth[beam] = held.depth[beam];
        }
    } else {
        for (size_t beam = 0; beam < beams; ++beam) {
            raw.velocity[beam] = kBadVelocity;
            if (BadRange(raw.depth[beam])) raw.depth[beam] = kBadRange;
        }
    }
    WriteBottomTrackBlock(raw, current);
    return c;
}

}  // namespace rm
