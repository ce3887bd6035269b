#include "processing/signal_to_noise.h"

#include <algorithm>

#include "data/byte_io.h"

namespace rm {

uint8_t BeamNoiseLevel(const ProfileHeader& header, int beam) {
    if (beam < 0 || beam > 3) return 0;
    const ByteReader reader(header.raw.data(), header.raw.size());
    return reader.u8(kNoiseLevelOffset + static_cast<size_t>(beam));
}

double CellSnr(const ProfileRecord& record, int beam, int cell) {
    if (beam < 0 || beam >= record.beams || cell < 0 || cell >= record.cells) return 0.0;
    const int difference = record.Amplitude(beam, cell) - BeamNoiseLevel(record.header, beam);
    return std::max(0.0, difference * kSnrDecibelsPerCount);
}

}  // namespace rm
