// The timed reads and writes that every port shares, run on the scripted port in virtual time.

#include "link/scripted_port.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace rm {
namespace {

// A line read (limit 1000 ms) ends at its line feed, at its length or at its limit; line ends
// before the text are skipped, so the line feed after an echoed carriage return is no answer.
TEST(TimedReads, LineReadEndsAtTheLineFeedTheLengthOrTheLimit) {
    struct Case {
        std::vector<std::pair<uint32_t, std::string>> arrivals;
        int maxLength;
        std::string line;
        uint64_t endMs;
        int left;  // bytes still waiting
    } cases[] = {
        {{{0, std::string("OK\r\n\x64\x00", 6)}}, 99, "OK\r\n", 0, 2},  // binary bytes stay
        {{{0, "\n\r\nKVR 2\r\n>"}}, 511, "KVR 2\r\n", 0, 1},
        {{{10, "O"}, {400, "K\r\n"}}, 99, "OK\r\n", 400, 0},  // a split delivery within the limit
        {{{10, "O"}, {1500, "K\r\n"}}, 99, "O", 1000, 0},
        {{{0, "0123456789\r\n"}}, 4, "0123", 0, 8},
    };
    for (const Case& c : cases) {
        ScriptedPort port;
        for (const auto& [at, bytes] : c.arrivals) port.ArriveAt(at, bytes);
        std::string line;
        EXPECT_EQ(port.ReadStringTimed(line, c.maxLength, kLineEnd, 1000), static_cast<int>(c.line.size()));
        EXPECT_EQ(line, c.line);
        EXPECT_EQ(port.NowMs(), c.endMs) << c.line;
        EXPECT_EQ(port.RxCount(), c.left) << c.line;
    }
}

TEST(TimedReads, CharReadGivesMinusEightWhenTheLimitPasses) {
    ScriptedPort port;
    port.ArriveAt(80, "\xF8");
    EXPECT_EQ(port.ReadCharTimed(50), kSerialTimeout);
    EXPECT_EQ(port.NowMs(), 50u);
    // A real 0xF8 byte is told apart from the time-out.
    EXPECT_EQ(port.ReadCharTimed(50), 0xF8);
    EXPECT_EQ(port.NowMs(), 80u);
}

TEST(TimedReads, LimitsHoldAcrossAWrapOfTheTick) {
    // The tick starts 30 ms before it wraps; a 100 ms limit must still be 100 ms.
    auto clock = std::make_shared<VirtualClock>(0xFFFFFFFFu - 30);
    ScriptedPort port("wrap", clock);
    EXPECT_EQ(port.ReadCharTimed(100), kSerialTimeout);
    EXPECT_EQ(port.NowMs(), 100u);
}

}  // namespace
}  // namespace rm
