// The record checksum adds eight bytes at a time; it must equal the plain byte-by-byte sum with
// 16-bit wrap-around for every length and content, including runs long enough to fill its
// 16-bit lanes many times over.

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "data/byte_io.h"

namespace rm {
namespace {

uint16_t PlainSum(const std::vector<uint8_t>& bytes, size_t size) {
    uint16_t sum = 0xA596;
    for (size_t i = 0; i < size; ++i) sum = static_cast<uint16_t>(sum + bytes[i]);
    return sum;
}

TEST(RecordChecksum, EqualsTheByteByByteSumForEveryLength) {
    std::vector<uint8_t> bytes(4100);
    uint32_t x = 12345;
    for (uint8_t& b : bytes) {
        x = x * 1103515245u + 12345u;
        b = static_cast<uint8_t>(x >> 16);
    }
    for (size_t size = 0; size <= 70; ++size) EXPECT_EQ(RecordChecksum(bytes.data(), size), PlainSum(bytes, size)) << size;
    for (size_t size : {1023u, 1024u, 1025u, 2047u, 4100u}) {
        EXPECT_EQ(RecordChecksum(bytes.data(), size), PlainSum(bytes, size)) << size;
    }
    const std::vector<uint8_t> full(5000, 0xFF);
    EXPECT_EQ(RecordChecksum(full.data(), full.size()), PlainSum(full, full.size()));
    EXPECT_EQ(RecordChecksum(nullptr, 0), 0xA596);
    // By hand: 0xA596 + 1 + 2 + 3; and 42390 + 300 x 255 - 65536.
    const uint8_t three[] = {1, 2, 3};
    EXPECT_EQ(RecordChecksum(three, 3), 0xA59C);
    EXPECT_EQ(RecordChecksum(full.data(), 300), 53354);
}

}  // namespace
}  // namespace rm
