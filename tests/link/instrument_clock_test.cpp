// Reading and setting the instrument's clock.

#include "link/instrument_clock.h"
#include "transfer_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

// 2024-03-09 07:05:01
ClockTime Known() { return ClockTime{2024, 3, 9, 7, 5, 1}; }

TEST(ClockTextTest, AnswersScanWithOrWithoutTheirLabel) {
    ClockTime t;
    EXPECT_TRUE(ParseDateAnswer("Current date is 2023/12/31\r\n>", t));
    EXPECT_EQ(t.year, 2023);
    EXPECT_EQ(t.month, 12);
    EXPECT_EQ(t.day, 31);
    EXPECT_TRUE(ParseDateAnswer("2022/01/02\r\n>", t));
    EXPECT_EQ(t.year, 2022);
    EXPECT_EQ(t.day, 2);
    EXPECT_TRUE(ParseTimeAnswer("Current time is 23:59:58\r\n>", t));
    EXPECT_EQ(t.hour, 23);
    EXPECT_EQ(t.second, 58);
    EXPECT_EQ(t.year, 2022);  // the date stays

    EXPECT_FALSE(ParseDateAnswer("Current date is unknown\r\n>", t));
    EXPECT_EQ(t.year, 2022);
    EXPECT_FALSE(ParseTimeAnswer("Current time is 12:30\r\n>", t));
}

class ClockDialogueTest : public test::TransferTest {};

TEST_F(ClockDialogueTest, ReadingWakesWithABreakAndAsksDateThenTime) {
    Answer("Date", "\r\nCurrent date is 2024/05/07\r\n>");
    Answer("Time", "\r\nCurrent time is 13:04:59\r\n>");
    Ready();
    ClockTime t;
    ASSERT_EQ(ReadInstrumentClock(dialogue, t), 1);
    EXPECT_EQ(port.Breaks(), std::vector<uint32_t>{200});
    EXPECT_EQ(Commands(), (std::vector<std::string>{"Ver", "Date", "Time"}));
    EXPECT_EQ((std::vector<int>{t.year, t.month, t.day, t.hour, t.minute, t.second}),
              (std::vector<int>{2024, 5, 7, 13, 4, 59}));
}

TEST_F(ClockDialogueTest, AnUnreadableAnswerIsACommunicationsError) {
    Answer("Date", "\r\nCurrent date is 2024/05/07\r\n>");
    Answer("Time", "\r\nbusy\r\n>");
    Ready();
    ClockTime t;
    t.year = 1999;
    EXPECT_EQ(ReadInstrumentClock(dialogue, t), 0);
    EXPECT_EQ(t.year, 1999);
    EXPECT_EQ(prompt.titles, std::vector<std::string>{"Communications Error"});
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"Unable to get system time."});
}

TEST_F(ClockDialogueTest, SettingSendsDateAndTimeAndConfirms) {
    Answer("Date 2024/03/09", "\r\nOK\r\n>");
    Answer("Time 07:05:01", "\r\nOK\r\n>");
    Ready();
    EXPECT_EQ(SetInstrumentClock(dialogue, Known()), 1);
    EXPECT_EQ(Commands(), (std::vector<std::string>{"Ver", "Date 2024/03/09", "Time 07:05:01"}));
    EXPECT_EQ(prompt.titles, std::vector<std::string>{"System Time"});
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"System time has been set to 07:05:01 03/09/2024"});
}

TEST_F(ClockDialogueTest, EachSettingStepFailsWithItsOwnWords) {
    Answer("Date 2024/03/09", "\r\nOK\r\n>");
    Answer("Time 07:05:01", "\r\nERROR\r\n>");
    Answer("Date 2024/03/09", "\r\nERROR\r\n>");
    Ready();
    EXPECT_EQ(SetInstrumentClock(dialogue, Known()), 0);
    EXPECT_EQ(SetInstrumentClock(dialogue, Known()), 0);
    EXPECT_EQ(prompt.messages, (std::vector<std::string>{"Unable to set system time.", "Unable to set system date."}));
}

}  // namespace
}  // namespace rm
