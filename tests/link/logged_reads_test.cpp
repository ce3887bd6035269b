// Draining, the pattern wait, one echoed character, counted waits and the 0xE8 byte, with the
// raw log receiving every byte taken off the line.

#include "link/logged_reads.h"
#include "link/scripted_port.h"
#include "link_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

using test::TextWindow;

TEST(DrainReceive, EmptiesTheLineIntoTheRawLog) {
    test::ScratchDir dir;
    ScriptedPort port;
    port.ArriveAt(0, "stale bytes");
    {
        RawLog raw(dir.File("raw.bin"));
        EXPECT_EQ(DrainReceive(port, 50, &raw), 0);
    }
    EXPECT_EQ(port.RxCount(), 0);
    EXPECT_EQ(test::ReadWholeFile(dir.File("raw.bin")), "stale bytes");
}

TEST(DrainReceive, ALineFasterThanItsReaderFailsAfterTheLimit) {
    ScriptedPort port;
    port.SetReadCostUs(20);
    port.Flood(0, 10, 1000000, 'x');  // two bytes arrive for each one read
    EXPECT_EQ(DrainReceive(port, 50, nullptr), -1);
    EXPECT_GE(port.NowMs(), 50u);
    EXPECT_LE(port.NowMs(), 51u);
}

TEST(ReadUntilPattern, FindsThePatternAndShowsTheBannerInTheWindow) {
    test::ScratchDir dir;
    ScriptedPort port;
    port.ArriveAt(0, "KVR ready\r\n>rest");
    TextWindow window;
    std::string buffer;
    {
        RawLog raw(dir.File("raw.bin"));
        EXPECT_EQ(ReadUntilPattern(port, buffer, 512, ">", 1500, &window, &raw), 1);
    }
    EXPECT_EQ(buffer, "KVR ready\r\n>");
    EXPECT_EQ(window.text, buffer);
    EXPECT_EQ(test::ReadWholeFile(dir.File("raw.bin")), buffer);
    EXPECT_EQ(port.RxCount(), 4);  // one byte a round: nothing after the prompt was taken
    EXPECT_EQ(port.NowMs(), 12u);  // twelve bytes, twelve rounds of at least 1 ms
}

TEST(ReadUntilPattern, AFullBufferEndsTheWaitBeforeAPatternThatWouldCome) {
    ScriptedPort port;
    port.ArriveAt(0, "abcd>");
    std::string buffer;
    EXPECT_EQ(ReadUntilPattern(port, buffer, 4, ">", 1500, nullptr, nullptr), 0);
    EXPECT_EQ(buffer, "abcd");
    EXPECT_EQ(port.PeekChar(), '>');
}

TEST(SendCharEchoed, TheEchoComesBackIntoTheSlot) {
    ScriptedPort port;
    port.SetEcho(true, 7);
    char echo = 0;
    EXPECT_TRUE(SendCharEchoed(port, 'V', echo, nullptr));
    EXPECT_EQ(echo, 'V');
    // 5 ms after the write, then one 5 ms wait for an echo due at 7 ms.
    EXPECT_EQ(port.NowMs(), 10u);
}

TEST(SendCharEchoed, NoEchoGivesUpAfterOneHundredWaits) {
    ScriptedPort port;
    char echo = 0;
    EXPECT_FALSE(SendCharEchoed(port, 'V', echo, nullptr));
    EXPECT_EQ(port.NowMs(), 5u + 100u * 5u);
    EXPECT_EQ(port.Written(), "V");
}

TEST(WaitForRxCount, CountsItsWaits) {
    ScriptedPort port;
    port.ArriveAt(12, "0123456789");
    EXPECT_TRUE(WaitForRxCount(port, 10, 300));
    EXPECT_EQ(port.NowMs(), 15u);  // the third 5 ms wait sees the bytes
    ScriptedPort silent;
    EXPECT_FALSE(WaitForRxCount(silent, 1, 300));
    EXPECT_EQ(silent.NowMs(), 1500u);
}

TEST(ReplyMarker, OnlyAMarkerAtTheFrontIsTaken) {
    test::ScratchDir dir;
    ScriptedPort port;
    port.ArriveAt(0, "\xE8KVR");
    {
        RawLog raw(dir.File("raw.bin"));
        EXPECT_TRUE(SkipReplyMarker(port, &raw));
        EXPECT_FALSE(SkipReplyMarker(port, &raw));
    }
    EXPECT_EQ(port.PeekChar(), 'K');
    EXPECT_EQ(test::ReadWholeFile(dir.File("raw.bin")), "\xE8");
}

TEST(ReplyMarker, BlockLengthReadsLittleEndianPastUpToFourMarkers) {
    ScriptedPort port;
    // 0x0104 = 260: a 256-byte record with its length and checksum.
    port.ArriveAt(0, std::string("\xE8\xE8\xE8\xE8\x04\x01", 6));
    EXPECT_EQ(ReadBlockLength(port, nullptr), 260);
}

TEST(ReplyMarker, BlockLengthGivesUpAtTheFifthMarkerOrAMissingByte) {
    ScriptedPort five;
    five.ArriveAt(0, std::string("\xE8\xE8\xE8\xE8\xE8\x64\x00", 7));
    EXPECT_EQ(ReadBlockLength(five, nullptr), -1);
    ScriptedPort shortLine;
    shortLine.ArriveAt(0, "\x64");
    EXPECT_EQ(ReadBlockLength(shortLine, nullptr), -1);
}

}  // namespace
}  // namespace rm
