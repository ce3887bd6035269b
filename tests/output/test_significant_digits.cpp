// The three significant-digit routines, checked against hand-worked steps:
// a = |v|, e = trunc(log10 a) (less one when a < 1), d = S - e - 1, p = 10^d, y = p v,
// i = trunc(y), f = (y - i) x 100.
#include <gtest/gtest.h>

#include "output/significant_digits.h"

namespace rm {
namespace {

TEST(SignificantDigitsText, RoundsToTheRequestedDigits) {
    // 1234.5: e = 3, d = -1, y = 123.45, f = 45 -> 123 / 0.1, no decimals.
    EXPECT_EQ(SignificantDigitsText(1234.5, 3), "1230");
    // 0.012345: e = -1 - 1 = -2, d = 4, y = 123.45 -> 0.0123.
    EXPECT_EQ(SignificantDigitsText(0.012345, 3), "0.0123");
    // 0.5: e = 0 - 1 = -1, d = 3, y = 500 -> three decimals.
    EXPECT_EQ(SignificantDigitsText(0.5, 3), "0.500");
    // 1239: y = 123.9, f = 90 -> 124 -> 1240.
    EXPECT_EQ(SignificantDigitsText(1239.0, 3), "1240");
    // 12.345 with five digits: e = 1, d = 3, all digits kept.
    EXPECT_EQ(SignificantDigitsText(12.345, 5), "12.345");
}

TEST(SignificantDigitsText, CarryIntoANewDigitKeepsTheOldDecimals) {
    // 9.995: e = 0, d = 2, y = 999.4999..., i = 999, f = 49.99999... >= 49.999999999 -> 1000,
    // printed with d = 2 decimals: one digit more than asked.
    EXPECT_EQ(SignificantDigitsText(9.995, 3), "10.00");
    // 99.96 with S = 3: d = 1, y = 999.6 -> 1000 / 10 = 100.0.
    EXPECT_EQ(SignificantDigitsText(99.96, 3), "100.0");
}

TEST(SignificantDigitsText, NegativeValuesAreTruncatedTowardZero) {
    // -1239: y = -123.9, i = -123, f = -90 never reaches the threshold.
    EXPECT_EQ(SignificantDigitsText(-1239.0, 3), "-1230");
    // -0.5: d = 3, y = -500 exactly.
    EXPECT_EQ(SignificantDigitsText(-0.5, 3), "-0.500");
    EXPECT_EQ(SignificantDigitsText(-0.012399, 3), "-0.0123");
}

TEST(SignificantDigitsText, ZeroAndExtremeMagnitudes) {
    EXPECT_EQ(SignificantDigitsText(0.0, 3), "0");
    EXPECT_EQ(SignificantDigitsText(-0.0, 5), "0");
    // 1.23456e9: e = 9, d = -7, y = 123.456 -> 123e7.
    EXPECT_EQ(SignificantDigitsText(1.23456e9, 3), "1230000000");
    // 0.000123456: log10 = -3.9, e = -3 - 1 = -4, d = 6, y = 123.456 -> 0.000123.
    EXPECT_EQ(SignificantDigitsText(0.000123456, 3), "0.000123");
    // 2.5e-12 with S = 2: log10 = -11.6, e = -11 - 1 = -12, d = 13 decimals, y = 25.
    EXPECT_EQ(SignificantDigitsText(2.5e-12, 2), "0.0000000000025");
}

TEST(SignificantDigitsValue, SameRoundingAsTheText) {
    EXPECT_DOUBLE_EQ(SignificantDigitsValue(1234.5, 3), 1230.0);
    EXPECT_DOUBLE_EQ(SignificantDigitsValue(1239.0, 3), 1240.0);
    EXPECT_DOUBLE_EQ(SignificantDigitsValue(-1239.0, 3), -1230.0);
    EXPECT_DOUBLE_EQ(SignificantDigitsValue(0.012345, 3), 0.0123);
    EXPECT_DOUBLE_EQ(SignificantDigitsValue(125.0, 2), 130.0);  // f = 50 rounds up here
    EXPECT_EQ(SignificantDigitsValue(0.0, 3), 0.0);
}

TEST(UsgsRoundedValue, ExactHalvesGoToEvenOthersDownBelowFiftyOne) {
    // 125: y = 12.5, f = 50.0 exactly, i = 2 trunc(13 / 2) = 12.
    EXPECT_DOUBLE_EQ(UsgsRoundedValue(125.0, 2), 120.0);
    // 135: y = 13.5, i = 2 trunc(14 / 2) = 14.
    EXPECT_DOUBLE_EQ(UsgsRoundedValue(135.0, 2), 140.0);
    // -135: f = -50 -> truncated toward zero.
    EXPECT_DOUBLE_EQ(UsgsRoundedValue(-135.0, 2), -130.0);
    // 126: f = 60 -> up.
    EXPECT_DOUBLE_EQ(UsgsRoundedValue(126.0, 2), 130.0);
    // 125.05: f = 50.5, neither exact half nor 51 -> down, where the text routine goes up.
    EXPECT_DOUBLE_EQ(UsgsRoundedValue(125.05, 2), 120.0);
    EXPECT_DOUBLE_EQ(SignificantDigitsValue(125.05, 2), 130.0);
    EXPECT_EQ(UsgsRoundedValue(0.0, 2), 0.0);
}

}  // namespace
}  // namespace rm
