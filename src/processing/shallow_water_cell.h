#pragma once
// The shallow-water ping: where its numbers stand in the 36-byte block of a profile and in the
// configuration record, and the geometry of its single cell.
//
// Block (little-endian): 0 u32 pings, 4 u16 start of the reference range (0.1 cm), 6 u16 its
// length, 8 and 10 u16 ping parameters, 12 four i16 beam velocities (raw velocity units),
// 20 four u8 correlations, 24 four i16 reference velocities, 32 four u8 reference counts.
//
// Configuration record: the three lengths of the cell are unsigned 32-bit centimetres in bytes
// the record otherwise keeps as read: 4 the blanking, 8 the pulse length (half of which adds
// to the range), 92 the cell size.

#include <array>
#include <cstddef>
#include <cstdint>

#include "data/instrument_records.h"
#include "data/profile_record.h"

namespace rm {

constexpr size_t kShallowVelocityOffset = 12;
constexpr size_t kShallowCorrelationOffset = 20;

// The four beam velocities of the block; beams beyond the record's count read as 32767.
std::array<int16_t, 4> ShallowBlockVelocities(const ProfileRecord& record);
// The four correlations of the block.
std::array<uint8_t, 4> ShallowBlockCorrelations(const ProfileRecord& record);

// Lengths of the shallow-water cell, metres below the transducer.
struct ShallowCellGeometry {
    double blank = 0.0;     // A
    double pulse = 0.0;     // B
    double cellSize = 0.0;  // C
    // SwTop: the far end of the cell, A + B / 2 + C.
    double FarEnd() const { return blank + 0.5 * pulse + cellSize; }
};
ShallowCellGeometry ShallowCellGeometryOf(const InstrumentConf& conf);

}  // namespace rm
