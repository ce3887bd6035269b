// The three significant-digit routines, checked against hand-worked steps:
// a = |v|, e = trunc(log10 a) (less one when a < 1), d = S - e - 1, p = 10^d, y = p v,
// i = trunc(y), f = (y - i) x 100.
#include <gtest/gtest.h>

#include "output/significant_digits.h"

namespace rm {
namespace {

TEST(SignificantDigitsText, HandWorkedValues) {
    const struct {
        double v;
        int S;
        const char* text;
    } rows[] = {
        {1234.5, 3, "1230"},      // e = 3, d = -1, y = 123.45, f = 45 -> 123 / 0.1, no decimals
        {0.012345, 3, "0.0123"},  // e = -1 - 1 = -2, d = 4, y = 123.45
        {0.5, 3, "0.500"},        // e = 0 - 1 = -1, d = 3, y = 500 -> three decimals
        {1239.0, 3, "1240"},      // y = 123.9, f = 90 -> 124
        {12.345, 5, "12.345"},    // e = 1, d = 3, all digits kept
        // 9.995: d = 2, y = 999.4999..., f = 49.99999... >= 49.999999999 -> 1000, printed with
        // d = 2 decimals: one digit more than asked. 99.96: d = 1, y = 999.6 -> 100.0.
        {9.995, 3, "10.00"},
        {99.96, 3, "100.0"},
        // Negative values are truncated toward zero: f is negative and never reaches the threshold.
        {-1239.0, 3, "-1230"},
        {-0.5, 3, "-0.500"},
        {-0.012399, 3, "-0.0123"},
        {0.0, 3, "0"},
        {-0.0, 5, "0"},
        {1.23456e9, 3, "1230000000"},       // e = 9, d = -7, y = 123.456
        {0.000123456, 3, "0.000123"},       // log10 = -3.9, e = -4, d = 6
        {2.5e-12, 2, "0.0000000000025"},    // log10 = -11.6, e = -12, d = 13 decimals, y = 25
    };
    for (const auto& r : rows) EXPECT_EQ(SignificantDigitsText(r.v, r.S), r.text) << r.v << " S=" << r.S;
}

// Routine B rounds as the text does; routine C (USGS) takes an exact half to even and rounds
// down below f = 51, so 125.05 (f = 50.5) goes down there and up in B.
TEST(SignificantDigitsValue, RoutinesBAndCAgainstHandWorkedValues) {
    const struct {
        double v;
        int S;
        double b, c;
    } rows[] = {
        {1234.5, 3, 1230.0, 1230.0}, {1239.0, 3, 1240.0, 1240.0}, {-1239.0, 3, -1230.0, -1230.0},
        {0.012345, 3, 0.0123, 0.0123},
        {125.0, 2, 130.0, 120.0},    // y = 12.5, f = 50.0: C gives i = 2 trunc(13 / 2) = 12
        {135.0, 2, 140.0, 140.0},    // C: i = 2 trunc(14 / 2) = 14
        {-135.0, 2, -130.0, -130.0}, // f = -50 -> truncated toward zero
        {126.0, 2, 130.0, 130.0},    // f = 60 -> up
        {125.05, 2, 130.0, 120.0},
        {0.0, 3, 0.0, 0.0},
    };
    for (const auto& r : rows) {
        EXPECT_DOUBLE_EQ(SignificantDigitsValue(r.v, r.S), r.b) << r.v;
        EXPECT_DOUBLE_EQ(UsgsRoundedValue(r.v, r.S), r.c) << r.v;
    }
}

}  // namespace
}  // namespace rm
