// Reading the instrument's limits out of its complaint about a value far too large.

#include "link/limit_fishing.h"
#include "transfer_test_support.h"

#include <gtest/gtest.h>

namespace rm {
namespace {

TEST(LimitAnswerTest, NineWordsWithTheRightOpeningGiveTheNumbers) {
    double lo = -1, hi = -1;
    EXPECT_TRUE(ParseCellSizeLimits("Cell Size out of range: 0.10 to 4.00 m\r\n", lo, hi));
    EXPECT_DOUBLE_EQ(lo, 0.10);
    EXPECT_DOUBLE_EQ(hi, 4.00);
    int cells = -1;
    EXPECT_TRUE(ParseNumberOfCellsLimit("Number of Cells out of range:  1 to 128\r\n", cells));
    EXPECT_EQ(cells, 128);
}

TEST(LimitAnswerTest, AnyOtherFormLeavesTheOutputsAlone) {
    double lo = -1, hi = -1;
    EXPECT_FALSE(ParseCellSizeLimits("Cell Size out of range: 0.10 to 4.00", lo, hi));          // 8 words
    EXPECT_FALSE(ParseCellSizeLimits("Cell Size is out of range: 0.10 to 4.00 m", lo, hi));     // 10 words
    EXPECT_FALSE(ParseCellSizeLimits("Cell size out of range: 0.10 to 4.00 m", lo, hi));        // "size"
    EXPECT_FALSE(ParseCellSizeLimits("Cell Size out of range: low to 4.00 m", lo, hi));         // no number
    EXPECT_EQ(lo, -1);
    EXPECT_EQ(hi, -1);
    int cells = -1;
    EXPECT_FALSE(ParseNumberOfCellsLimit("Number of Cells out of range: 1 to 12x", cells));
    EXPECT_FALSE(ParseNumberOfCellsLimit("Number in Cells out of range: 1 to 128", cells));
    EXPECT_EQ(cells, -1);
}

class LimitFishingTest : public test::TransferTest {};

TEST_F(LimitFishingTest, TheSecondLineAfterTheCommandIsTheAnswerAndATenWordOneFails) {
    Answer("cs 9999", "\r\nCell Size out of range: 0.05 to 2.00 m\r\n>");
    Answer("nc 99999", "\r\nNumber of Cells out of range: 1 to 100\r\n>");
    Answer("cs 9999", "\r\nCell Size is out of range: 0.05 to 2.00 m\r\n>");
    Ready();
    double lo = 0, hi = 0;
    int cells = 0;
    EXPECT_EQ(GetCellSizeLimits(dialogue, lo, hi), 1);
    EXPECT_EQ(GetNumberOfCellsLimit(dialogue, cells), 1);
    EXPECT_DOUBLE_EQ(lo, 0.05);
    EXPECT_DOUBLE_EQ(hi, 2.00);
    EXPECT_EQ(cells, 100);
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(GetCellSizeLimits(dialogue, lo, hi), 0);
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"Failed to get System Limits"});
    EXPECT_EQ(Commands(), (std::vector<std::string>{"cs 9999", "nc 99999", "cs 9999"}));
}

}  // namespace
}  // namespace rm
