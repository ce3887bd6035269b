// The orientation matrix's axes and signs, its products, the user rotation and the inverse.

#include <gtest/gtest.h>

#include <cmath>

#include "processing/orientation_matrix.h"

namespace rm {
namespace {

constexpr double kRad = 3.14159265358979 / 180.0;

std::array<double, 3> Apply(const FloatMatrix& m, std::array<double, 3> v) {
    std::array<double, 3> r{};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) r[i] += m.at(i, j) * v[j];
    return r;
}

TEST(OrientationMatrix, BowPointsAlongTheHeading) {
    // X (the bow) has East sin h and North cos h when level.
    for (double h : {0.0, 90.0, 217.5}) {
        const auto x = Apply(OrientationMatrix(h, 0.0, 0.0), {1, 0, 0});
        EXPECT_NEAR(x[0], std::sin(h * kRad), 1e-6);
        EXPECT_NEAR(x[1], std::cos(h * kRad), 1e-6);
        EXPECT_NEAR(x[2], 0.0, 1e-6);
    }
}

TEST(OrientationMatrix, PositivePitchRaisesTheBowAndPositiveRollThePortSide) {
    const auto bow = Apply(OrientationMatrix(0.0, 10.0, 0.0), {1, 0, 0});
    EXPECT_NEAR(bow[1], std::cos(10 * kRad), 1e-6);
    EXPECT_NEAR(bow[2], std::sin(10 * kRad), 1e-6);
    const auto port = Apply(OrientationMatrix(0.0, 0.0, 10.0), {0, 1, 0});
    EXPECT_NEAR(port[0], -std::cos(10 * kRad), 1e-6);  // heading North: port is West
    EXPECT_NEAR(port[2], std::sin(10 * kRad), 1e-6);
}

TEST(MatrixInverse, NeedsRowExchangeForAZeroPivot) {
    FloatMatrix m = FloatMatrix::Zero(3);
    m.at(0, 1) = 2;  // (0 2 0; 1 0 0; 0 0 4), inverse (0 1 0; 0.5 0 0; 0 0 0.25)
    m.at(1, 0) = 1;
    m.at(2, 2) = 4;
    FloatMatrix inv;
    ASSERT_TRUE(Invert(m, inv));
    EXPECT_FLOAT_EQ(inv.at(0, 1), 1.0f);
    EXPECT_FLOAT_EQ(inv.at(1, 0), 0.5f);
    EXPECT_FLOAT_EQ(inv.at(2, 2), 0.25f);
    EXPECT_FLOAT_EQ(inv.at(0, 0), 0.0f);
}

TEST(MatrixInverse, SingularOrOversizedGivesZeros) {
    FloatMatrix m = FloatMatrix::Identity(3);
    m.at(2, 2) = 1e-31f;
    FloatMatrix inv = FloatMatrix::Identity(3);
    EXPECT_FALSE(Invert(m, inv));
    for (float v : inv.a) EXPECT_EQ(v, 0.0f);
    FloatMatrix oversized;
    oversized.n = 9;
    EXPECT_FALSE(Invert(oversized, inv));
    EXPECT_FALSE(Invert(FloatMatrix::Zero(0), inv));
}

}  // namespace
}  // namespace rm
