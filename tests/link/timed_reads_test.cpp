// The timed reads and writes that every port shares, run on the scripted port in virtual time.

#include "link/scripted_port.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

TEST(TimedReads, LineReadStopsAfterLineFeedAndLeavesBinaryBytesWaiting) {
    ScriptedPort port;
    port.ArriveAt(0, std::string("OK\r\n\x64\x00", 6));
    std::string line;
    EXPECT_EQ(port.ReadStringTimed(line, 99, kLineEnd, 1000), 4);
    EXPECT_EQ(line, "OK\r\n");
    EXPECT_EQ(port.RxCount(), 2);  // the two length bytes are still there
    EXPECT_EQ(port.ReadChar(), 0x64);
}

TEST(TimedReads, LineReadSkipsLineEndsBeforeTheText) {
    // The line feed that follows an echoed carriage return is not an empty answer.
    ScriptedPort port;
    port.ArriveAt(0, "\n\r\nKVR 2\r\n>");
    std::string line;
    port.ReadStringTimed(line, 511, kLineEnd, 1000);
    EXPECT_EQ(line, "KVR 2\r\n");
}

TEST(TimedReads, LineReadJoinsASplitDeliveryWithinItsLimit) {
    ScriptedPort port;
    port.ArriveAt(10, "O");
    port.ArriveAt(400, "K\r\n");
    std::string line;
    port.ReadStringTimed(line, 99, kLineEnd, 1000);
    EXPECT_EQ(line, "OK\r\n");
    EXPECT_EQ(port.NowMs(), 400u);  // returned at the line end, not at the limit
}

TEST(TimedReads, LineReadReturnsWhatCameWhenTheLimitPasses) {
    ScriptedPort port;
    port.ArriveAt(10, "O");
    port.ArriveAt(1500, "K\r\n");
    std::string line;
    EXPECT_EQ(port.ReadStringTimed(line, 99, kLineEnd, 1000), 1);
    EXPECT_EQ(line, "O");
    EXPECT_EQ(port.NowMs(), 1000u);
}

TEST(TimedReads, LineReadStopsWhenTheLengthIsFull) {
    ScriptedPort port;
    port.ArriveAt(0, "0123456789\r\n");
    std::string line;
    EXPECT_EQ(port.ReadStringTimed(line, 4, kLineEnd, 1000), 4);
    EXPECT_EQ(line, "0123");
    EXPECT_EQ(port.RxCount(), 8);
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
