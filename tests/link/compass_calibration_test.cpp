// Compass calibration: the scoring report for each kind of result, and the start and stop of a
// calibration against a scripted instrument with its log file.

#include "link/compass_calibration.h"
#include "transfer_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

std::string Report(const std::string& reply) {
    std::string report;
    EXPECT_TRUE(ScoreCompassReply(reply, report)) << reply;
    return report;
}

TEST(CompassScoringTest, PerfectScoresInALowFieldPassWithTheWholeReport) {
    const std::string expected =
        "Calibration score results:\n--------------------------"
        "\nHorizontal calibration score (0-9):         9 (EXCELLENT)"
        "\nVertical calibration score (0-9):           9 (EXCELLENT)"
        "\nAmbient magnetic field strength (0-100): 5.00 (EXCELLENT)\n"
        "\nThe horizontal and vertical scores are excellent."
        "\nThe ambient magnetic field strength is very low."
        "\nThere was very little magnetic distortion measured."
        "\n\nResults: PASS\n";
    EXPECT_EQ(Report("\r\nH9V9M05.0;\r\n>"), expected);
}

TEST(CompassScoringTest, FairScoresAndBoundaryFieldsAskForAnotherTry) {
    const std::string fair = Report("H9V7M05.0");
    EXPECT_NE(fair.find("\nVertical calibration score (0-9):           7 (FAIR)"), std::string::npos);
    EXPECT_NE(fair.find("\nThe horizontal and vertical scores are fair, but could probably be better for good compass "
                        "accuracy.\nConsider repeating the calibration.\nHowever, the ambient"),
              std::string::npos);
    EXPECT_EQ(fair.substr(fair.find("\n\nResults")), "\n\nResults: PASS (consider repeating calibration)\n");

    // A field of exactly 20 is no longer "under 20", but still "up to 20".
    const std::string twenty = Report("H9V9M20");
    EXPECT_NE(twenty.find("\nHowever, the ambient magnetic field strength is fairly low.\n\nResults: PASS (consider "
                          "repeating calibration)\n"),
              std::string::npos);
    // Its index: truncation of 10 - 2 = 8.
    EXPECT_NE(twenty.find("(0-100): 20.00 (GOOD)"), std::string::npos);

    const std::string high = Report("H8V8M25.5;");
    EXPECT_NE(high.find("sufficient for good compass accuracy.\nHowever, the ambient magnetic field strength is "
                        "fairly high.\nConsider alternate mounting locations for the compass or\nRemoving any magnetic "
                        "material from the vicinity of the compass may help as well.\n\nResults: PASS (consider"),
              std::string::npos);
}

TEST(CompassScoringTest, LowScoresEndTheReportWithoutAVerdict) {
    const std::string low = Report("H5V9M05.0");
    const std::string end = "\nThe horizontal and vertical scores are not sufficient for good compass accuracy."
                            "\nPlease repeat the calibration.";
    ASSERT_GE(low.size(), end.size());
    EXPECT_EQ(low.substr(low.size() - end.size()), end);
    EXPECT_EQ(low.find("Results"), std::string::npos);
    // A score that is not a digit counts as 0.
    EXPECT_NE(Report("HxV9M05").find("score (0-9):         0 (VERY POOR)"), std::string::npos);
}

TEST(CompassScoringTest, AFieldOutsideItsRangeCountsAsTheStrongestAndFails) {
    const std::string strong = Report("H9V9M150;");
    EXPECT_NE(strong.find("(0-100): 100.00 (VERY POOR)"), std::string::npos);
    EXPECT_NE(strong.find("\nHowever, the ambient magnetic field strength is very high."), std::string::npos);
    EXPECT_EQ(strong.substr(strong.find("\n\nResults")), "\n\nResults: FAIL\n");
    // 35 gives the index trunc(6.5) = 6.
    EXPECT_NE(Report("H9V9M35").find("(0-100): 35.00 (FAIR)"), std::string::npos);
}

TEST(CompassScoringTest, TextsWithoutThePatternAreUnreadable) {
    std::string report;
    // "H9V9M;" has no field value at all.
    for (const char* reply : {"\r\nERROR\r\n>", "H9X9M05", "H9V9", "H9V9M;", "no score"})
        EXPECT_FALSE(ScoreCompassReply(reply, report)) << reply;
}

using test::TextWindow;

class CompassRunTest : public test::TransferTest {
protected:
    std::string LogPath() const { return dir.File("turn.compass"); }
    TextWindow window;
    CompassCalibration calibration{dialogue, &window};
};

TEST_F(CompassRunTest, AWholeCalibrationIsLoggedAndScored) {
    prompt.savePath = LogPath();
    port.OnWrite("compass cal\r", "\r\nCalibrating, turn the compass\r\n");
    port.OnWrite("compass cal\r\r", "\r\nH9V9M05.0;\r\n>");  // the stop key after the command
    Ready();
    ASSERT_EQ(calibration.Start(), 1);
    EXPECT_TRUE(calibration.Running());
    EXPECT_EQ(window.text, kCompassTurnText);
    port.ArriveAfter(300, "Heading 271\r\n");
    port.SleepMs(kCompassTimerPeriodMs);
    calibration.Tick();
    EXPECT_NE(window.text.find("Heading 271"), std::string::npos);

    EXPECT_EQ(calibration.Stop(), 1);
    EXPECT_FALSE(calibration.Running());
    EXPECT_NE(calibration.Report().find("Results: PASS\n"), std::string::npos);
    EXPECT_EQ(window.text.substr(window.text.size() - calibration.Report().size()), calibration.Report());

    const std::string log = test::ReadWholeFile(LogPath());
    EXPECT_EQ(log.rfind("Compass Calibration File\r\n", 0), 0u);
    EXPECT_NE(log.find("Heading 271"), std::string::npos);
    EXPECT_NE(log.find("H9V9M05.0;"), std::string::npos);
    EXPECT_TRUE(prompt.messages.empty());
}

TEST_F(CompassRunTest, StartFailuresAreShownAndLeaveItStopped) {
    prompt.savePath = "";
    EXPECT_EQ(calibration.Start(), 0);  // cancelled: nothing to say
    EXPECT_TRUE(prompt.messages.empty());

    prompt.savePath = dir.File("missing/folder/x.compass");
    EXPECT_EQ(calibration.Start(), -1);
    EXPECT_EQ(prompt.titles.back(), "Error opening depth log file");
    EXPECT_EQ(prompt.messages.back(), "Unable to open logfile - " + prompt.savePath);

    prompt.savePath = LogPath();  // nothing answers on the line
    EXPECT_EQ(calibration.Start(), -2);
    EXPECT_EQ(prompt.titles.back(), "Communication Error");
    EXPECT_EQ(prompt.messages.back(), "Unable to wake up system");
    EXPECT_FALSE(calibration.Running());
    EXPECT_EQ(calibration.Stop(), -1);
}

TEST_F(CompassRunTest, AnUnreadableResultAsksForAnotherCalibration) {
    prompt.savePath = LogPath();
    port.OnWrite("compass cal\r\r", "\r\nCalibration aborted\r\n>");
    Ready();
    ASSERT_EQ(calibration.Start(), 1);
    EXPECT_EQ(calibration.Stop(), 0);
    EXPECT_EQ(prompt.titles, std::vector<std::string>{"Communication Error"});
    EXPECT_EQ(prompt.messages,
              std::vector<std::string>{"The compass results are unreadable.\nPlease repeat the calibration procedure."});
}

}  // namespace
}  // namespace rm
