#include <cstring>

#include "data/byte_io.h"

namespace rm {

uint16_t RecordChecksum(const uint8_t* data, size_t size) {
    // A sum with wrap-around at 16 bits equals the wide sum cut to 16 bits. Eight bytes are
    // added at a time as four 16-bit lanes of a 64-bit word, each lane taking two bytes a step;
    // the lanes are emptied into the wide sum before they can overflow. A pass over a recording
    // sums every record, so this runs once per profile read.
    constexpr uint64_t kLowBytes = 0x00FF00FF00FF00FFull;
    constexpr size_t kStepsPerFlush = 128;  // 128 x 2 x 255 < 65536
    uint64_t sum = 0xA596;
    size_t i = 0;
    while (size - i >= 8) {
        uint64_t lanes = 0;
        for (size_t step = 0; step < kStepsPerFlush && size - i >= 8; ++step, i += 8) {
            uint64_t word;
            std::memcpy(&word, data + i, sizeof word);
            lanes += (word & kLowBytes) + ((word >> 8) & kLowBytes);
        }
        sum += (lanes & 0xFFFF) + ((lanes >> 16) & 0xFFFF) + ((lanes >> 32) & 0xFFFF) + (lanes >> 48);
    }
    for (; i < size; ++i) sum += data[i];
    return static_cast<uint16_t>(sum);
}

}  // namespace rm
