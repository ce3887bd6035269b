// The single-precision statistics routine of the summary against hand-worked sums.
#include <gtest/gtest.h>

#include <cmath>

#include "output/summary_statistics.h"

namespace rm {
namespace {

TEST(SummaryStatistics, SevenResultsOfFourValuesWithMissingOnesLeftOut) {
    SummaryStatistics s;
    ASSERT_TRUE(ComputeSummaryStatistics({1.0f, 2.0f, 32767.0f, 3.0f, 4.0f}, s));
    // Mean 2.5; squares 2.25 + 0.25 + 0.25 + 2.25 = 5 over n - 1 = 3.
    EXPECT_FLOAT_EQ(s.mean, 2.5f);
    EXPECT_FLOAT_EQ(s.variance, 5.0f / 3.0f);
    EXPECT_FLOAT_EQ(s.deviation, std::sqrt(5.0f / 3.0f));
    EXPECT_FLOAT_EQ(s.minimum, 1.0f);
    EXPECT_FLOAT_EQ(s.maximum, 4.0f);
    EXPECT_NEAR(s.skewness, 0.0f, 1e-6f);
    // z^2 = 1.35 and 0.15, z^4 = 1.8225 and 0.0225: 3.69 / 4 - 3.
    EXPECT_NEAR(s.kurtosis, 0.9225f - 3.0f, 1e-5f);
}

TEST(SummaryStatistics, OneValueHasNoSpreadAndNoValueIsAFailureWithZeros) {
    SummaryStatistics s;
    ASSERT_TRUE(ComputeSummaryStatistics({-7.5f}, s));
    EXPECT_FLOAT_EQ(s.mean, -7.5f);
    EXPECT_EQ(s.deviation, 0.0f);
    EXPECT_EQ(s.variance, 0.0f);
    EXPECT_EQ(s.skewness, 0.0f);
    EXPECT_EQ(s.kurtosis, 0.0f);
    s.mean = 9.0f;
    EXPECT_FALSE(ComputeSummaryStatistics({}, s));
    EXPECT_EQ(s.mean, 0.0f);
    EXPECT_FALSE(ComputeSummaryStatistics({32767.0f, 32767.0f}, s));
    EXPECT_EQ(s.mean, 0.0f);
    EXPECT_EQ(s.deviation, 0.0f);
}

}  // namespace
}  // namespace rm
