// Polling GPS and echo sounder ports, the raw copies, and the timed waits, on a scripted port
// in virtual time.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/nmea_port_reader.h"
#include "link/scripted_port.h"
#include "link_test_support.h"

namespace rm {
namespace {

const std::string kGga = "$GPGGA,123519.00,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47\r\n";
const std::string kGxp = "$GPGXP,101010,3000.0,S,1130.0,W\r\n";
const std::string kRmcWest = "$GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W*6A\r\n";

// Keeps every progress call, to check the steps of a wait.
class ProgressLog : public RecordingPrompt {
public:
    std::vector<int> done;
    int total = -1;
    void Progress(int d, int t, const std::string&) override {
        done.push_back(d);
        total = t;
    }
};

TEST(NmeaPoll, FeedsTheStreamAndAppendsRawBytesBesideTheDataFileWhileRecording) {
    test::ScratchDir dir;
    const std::string dataFile = dir.File("river01.kvr");
    ScriptedPort port;
    port.ArriveAt(0, kGga + "$GPRMC,1");
    port.ArriveAt(50, "23519,A\r\n");

    NmeaPortReader gps = MakeGpsPortReader();
    gps.SetRecordingDataFile(dataFile);
    EXPECT_EQ(gps.RawCopyFile(), dir.File("river01.raw_gps"));  // ".kvr" dropped
    EXPECT_EQ(PollGpsPort(gps, &port), static_cast<int>(kGga.size() + 8));
    EXPECT_EQ(SentenceLine(gps.Sentences(), "GGA"), kGga.substr(0, kGga.size() - 2));
    EXPECT_EQ(gps.Sentences().FindIndex("RMC"), -1);  // its line has not ended yet

    port.SleepMs(50);
    EXPECT_EQ(PollGpsPort(gps, &port), 9);
    EXPECT_EQ(SentenceLine(gps.Sentences(), "RMC"), "$GPRMC,123519,A");
    EXPECT_EQ(test::ReadWholeFile(gps.RawCopyFile()), kGga + "$GPRMC,123519,A\r\n");
    EXPECT_FALSE(gps.RawCopyFailed());

    // Stopping the recording stops the copy; a poll with nothing read writes nothing.
    gps.SetRecordingDataFile("");
    port.ArriveAt(60, kGxp);
    port.SleepMs(10);
    EXPECT_EQ(PollGpsPort(gps, &port), static_cast<int>(kGxp.size()));
    EXPECT_EQ(test::ReadWholeFile(dir.File("river01.raw_gps")), kGga + "$GPRMC,123519,A\r\n");
}

TEST(NmeaPoll, TakesAtMostOneBufferNothingFromAMissingPortAndFlagsAnUnwritableCopy) {
    ScriptedPort port;
    port.ArriveAt(0, std::string(15000, 'x'));
    NmeaPortReader gps = MakeGpsPortReader();
    EXPECT_EQ(gps.Poll(&port), kNmeaReadBufferSize);
    EXPECT_EQ(gps.Poll(&port), 15000 - kNmeaReadBufferSize);
    EXPECT_EQ(gps.Poll(&port), 0);
    EXPECT_EQ(gps.Poll(nullptr), 0);
    port.ArriveAt(0, kGga);
    port.Close();
    EXPECT_EQ(gps.Poll(&port), 0);
    int bytes = 7;
    EXPECT_EQ(WaitForFix(gps, nullptr, 1000, nullptr, bytes), 0);
    EXPECT_EQ(bytes, 0);

    // A raw copy that cannot be written is flagged, and the sentences still count.
    ScriptedPort fixes;
    fixes.ArriveAt(0, kGga);
    NmeaPortReader copying = MakeGpsPortReader();
    copying.SetRecordingDataFile("/nonexistent-folder-for-nmea-test/a.kvr");
    EXPECT_EQ(copying.Poll(&fixes), static_cast<int>(kGga.size()));
    EXPECT_TRUE(copying.RawCopyFailed());
    GpsFix fix;
    EXPECT_EQ(TakeNewestFix(copying.Sentences(), fix), 1);
}

TEST(WaitForFix, DrainsOldBytesThenTakesTheFirstFixThatDecodes) {
    ScriptedPort port;
    port.ArriveAt(0, kGga);     // old: drained before the wait listens
    port.ArriveAt(300, kGxp);   // the first fix heard
    port.ArriveAt(700, kGga);
    NmeaPortReader gps = MakeGpsPortReader();
    ProgressLog progress;
    int bytes = -1;
    GpsFix fix;
    ASSERT_EQ(WaitForFix(gps, &port, 5000, &progress, bytes, &fix), 1);
    EXPECT_DOUBLE_EQ(fix.Time, 101010.0);
    EXPECT_EQ(bytes, static_cast<int>(kGxp.size()));
    EXPECT_GE(port.NowMs(), 300u);
    EXPECT_LT(port.NowMs(), 700u);
    EXPECT_EQ(progress.total, 25);  // 5000 ms in steps of 200
    EXPECT_EQ(progress.done.front(), 0);
    EXPECT_EQ(progress.done.back(), 25);
}

TEST(WaitForFix, GivesUpAtTheLimitKeepingWhatWasHeardAndSteppingProgress) {
    ScriptedPort port;
    port.ArriveAt(100, "$GPGGA,123519,,,,,0,00,,,M,,M,,*66\r\n");
    NmeaPortReader gps = MakeGpsPortReader();
    ProgressLog progress;
    int bytes = 0;
    EXPECT_EQ(WaitForFix(gps, &port, 1000, &progress, bytes), 0);
    EXPECT_GE(port.NowMs(), 1000u);
    EXPECT_LT(port.NowMs(), 1100u);
    EXPECT_GT(bytes, 0);
    EXPECT_NE(gps.Sentences().FindIndex("GGA"), -1);  // the connection check names it
    EXPECT_EQ(progress.total, 5);
    // Each step shown once, in order, ending at the total.
    std::vector<int> expected = {0, 1, 2, 3, 4, 5};
    EXPECT_EQ(progress.done, expected);
}

TEST(WaitForFix, LineThatNeverGoesQuietStillEndsAtTheLimit) {
    ScriptedPort port;
    port.Flood(0, 100, 100000, 'x');  // one byte every 0.1 ms for 10 s, no line end
    NmeaPortReader gps = MakeGpsPortReader();
    int bytes = 0;
    EXPECT_EQ(WaitForFix(gps, &port, 1000, nullptr, bytes), 0);
    EXPECT_GE(port.NowMs(), 1000u);
    EXPECT_LT(port.NowMs(), 1300u);
    EXPECT_LT(gps.Stream().Lines().Pending().size(), NmeaLineReader::kCapacity);
}

TEST(WaitForDepth, StopsAtADptOrDbtThatDecodes) {
    ScriptedPort port;
    port.ArriveAt(100, "$SDDPT,,0.5\r\n");
    port.ArriveAt(400, "$SDDBT,30.0,f,9.1,M,5.0,F\r\n");
    port.ArriveAt(0, "$SDDPT,7.0\r\n");  // old: drained
    port.ArriveAt(200, "$GPDPT,1.0\r\n");  // other talker
    NmeaPortReader echo = MakeEchoPortReader(EchoSounderSettings{});
    test::ScratchDir dir;
    echo.SetRecordingDataFile(dir.File("x.kvr"));
    int bytes = 0;
    ASSERT_EQ(WaitForDepth(echo, &port, 2000, nullptr, bytes), 1);
    EXPECT_TRUE(std::filesystem::exists(dir.File("x.raw_echo")));
    EXPECT_GE(port.NowMs(), 400u);
    EXPECT_LT(port.NowMs(), 500u);
    EXPECT_DOUBLE_EQ(ReadEchoDepth(echo.Sentences(), EchoSounderSettings{}, 0, 0, 1), 9.1);

    ScriptedPort silentOnDepth;
    silentOnDepth.ArriveAt(100, "$SDMTW,12.0,C\r\n");
    EXPECT_EQ(WaitForDepth(echo, &silentOnDepth, 600, nullptr, bytes), 0);
}

TEST(ReadDeclination, FindsTheRmcWithinTheLimitOrFails) {
    ScriptedPort port;
    port.ArriveAt(1200, kGga + kRmcWest);
    NmeaPortReader gps = MakeGpsPortReader();
    double degrees = 0.0;
    ASSERT_EQ(ReadDeclination(gps, &port, kDeclinationLimitMs, degrees), 1);
    EXPECT_DOUBLE_EQ(degrees, -3.1);

    ScriptedPort onlyFixes;
    onlyFixes.ArriveAt(100, kGga);
    degrees = 42.0;
    EXPECT_EQ(ReadDeclination(gps, &onlyFixes, kDeclinationLimitMs, degrees), 0);
    EXPECT_EQ(degrees, 42.0);
    EXPECT_GE(onlyFixes.NowMs(), 5000u);
}

}  // namespace
}  // namespace rm
