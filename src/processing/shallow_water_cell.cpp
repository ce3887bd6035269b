#include "processing/shallow_water_cell.h"

#include "data/byte_io.h"

namespace rm {

namespace {
constexpr size_t kConfShallowCellSizeInReserved89 = 3;  // byte 92 of the record
constexpr double kMetresPerCm = 0.01;
}  // namespace

std::array<int16_t, 4> ShallowBlockVelocities(const ProfileRecord& record) {
    std::array<int16_t, 4> v;
    v.fill(kBadVelocity);
    const ByteReader block(record.shallowWater.data(), record.shallowWater.size());
    const int beams = record.beams < 4 ? record.beams : 4;
    for (int beam = 0; beam < beams; ++beam) {
        v[static_cast<size_t>(beam)] = block.i16(kShallowVelocityOffset + 2 * static_cast<size_t>(beam));
    }
    return v;
}

std::array<uint8_t, 4> ShallowBlockCorrelations(const ProfileRecord& record) {
    std::array<uint8_t, 4> c{};
    const ByteReader block(record.shallowWater.data(), record.shallowWater.size());
    for (size_t beam = 0; beam < c.size(); ++beam) c[beam] = block.u8(kShallowCorrelationOffset + beam);
    return c;
}

ShallowCellGeometry ShallowCellGeometryOf(const InstrumentConf& conf) {
    const ByteReader tail(conf.reserved89.data(), conf.reserved89.size());
    ShallowCellGeometry g;
    g.blank = conf.reserved4 * kMetresPerCm;
    g.pulse = conf.reserved8 * kMetresPerCm;
    g.cellSize = tail.u32(kConfShallowCellSizeInReserved89) * kMetresPerCm;
    return g;
}

}  // namespace rm
