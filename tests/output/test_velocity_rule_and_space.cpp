// The speed and direction rule of the velocity set and the space check's need formula, each
// against values worked out by hand.

#include <gtest/gtest.h>

#include <cmath>

#include "output/space_check.h"
#include "output/velocity_files.h"

namespace rm {
namespace {

TEST(VelocitySpeedDirectionRule, MissingTestLooksAtTheFirstComponentOnlyAndIsOneSided) {
    const SpeedDirection atLimit = VelocitySpeedDirection(3270.0, 5.0);
    EXPECT_DOUBLE_EQ(atLimit.speed, 32767.0);
    EXPECT_DOUBLE_EQ(atLimit.direction, 0.0);
    // -3270 is a value: speed 3270, pointing west (270 degrees).
    const SpeedDirection negative = VelocitySpeedDirection(-3270.0, 0.0);
    EXPECT_DOUBLE_EQ(negative.speed, 3270.0);
    EXPECT_NEAR(negative.direction, 270.0, 1e-7);
    // A missing second component is not tested: it goes into the speed.
    EXPECT_NEAR(VelocitySpeedDirection(3.0, 32767.0).speed, std::sqrt(9.0 + 32767.0 * 32767.0), 1e-6);
}

TEST(VelocitySpeedDirectionRule, BearingsClockwiseFromTheSecondAxis) {
    const SpeedDirection east = VelocitySpeedDirection(10.0, 0.0);
    EXPECT_DOUBLE_EQ(east.speed, 10.0);
    EXPECT_NEAR(east.direction, 90.0, 1e-7);
    EXPECT_NEAR(VelocitySpeedDirection(3.0, 3.0).direction, 45.0, 1e-7);
    EXPECT_NEAR(VelocitySpeedDirection(-3.0, 3.0).direction, 315.0, 1e-7);
    EXPECT_NEAR(VelocitySpeedDirection(3.0, -3.0).direction, 135.0, 1e-7);
    EXPECT_DOUBLE_EQ(VelocitySpeedDirection(3.0, 4.0).speed, 5.0);
}

TEST(VelocitySpeedDirectionRule, NearlyZeroFirstComponentGivesNorthOrSouth) {
    EXPECT_DOUBLE_EQ(VelocitySpeedDirection(0.0009, -2.0).direction, 180.0);
    EXPECT_DOUBLE_EQ(VelocitySpeedDirection(-0.0009, 2.0).direction, 0.0);
    EXPECT_DOUBLE_EQ(VelocitySpeedDirection(0.0, 0.0).direction, 0.0);
    // At 0.001 the formula applies: just east of north.
    EXPECT_NEAR(VelocitySpeedDirection(0.001, 2.0).direction, 90.0 - std::atan2(2.0, 0.001) * 57.29577951, 1e-7);
}

TEST(VelocityFileNames, FollowTheCoordinateSystemAndTheBeamCount) {
    EXPECT_EQ(VelocityComponentExtensions(2, 4), (std::vector<std::string>{".ve", ".vn", ".vu", ".vu2"}));
    EXPECT_EQ(VelocityComponentExtensions(2, 3), (std::vector<std::string>{".ve", ".vn", ".vu"}));
    EXPECT_EQ(VelocityComponentExtensions(1, 4), (std::vector<std::string>{".vx", ".vy", ".vz", ".vz2"}));
    EXPECT_EQ(VelocityComponentExtensions(0, 3), (std::vector<std::string>{".v1", ".v2", ".v3"}));
}

TEST(AsciiSpaceCheck, NeedFormulaPerKind) {
    // Profiles 1 to 10 (n + 1 = 10), 20 cells, 4 beams.
    EXPECT_EQ(AsciiSpaceNeeded(AsciiOutputKind::Header, 1, 10, 20, 4), 41u * 10 * 3);
    EXPECT_EQ(AsciiSpaceNeeded(AsciiOutputKind::SignalStrength, 1, 10, 20, 4), 108u * 4 * 10);
    EXPECT_EQ(AsciiSpaceNeeded(AsciiOutputKind::StdDeviation, 1, 10, 20, 4), 128u * 4 * 10);
    EXPECT_EQ(AsciiSpaceNeeded(AsciiOutputKind::SnRatio, 1, 10, 20, 4), 128u * 4 * 10);
    EXPECT_EQ(AsciiSpaceNeeded(AsciiOutputKind::Gps, 1, 10, 20, 4), 1350u);
    EXPECT_EQ(AsciiSpaceNeeded(AsciiOutputKind::Velocity, 1, 10, 20, 4), 21u * 6 * 10 * 8);
    EXPECT_EQ(AsciiSpaceNeeded(AsciiOutputKind::Configuration, 1, 10, 20, 4), 10000u);
    // One profile: n + 1 = 1.
    EXPECT_EQ(AsciiSpaceNeeded(AsciiOutputKind::Gps, 7, 7, 20, 4), 135u);
}

TEST(AsciiSpaceCheck, TooSmallOnlyBelowNeedPlusTwentyWithEmptyHighHalf) {
    EXPECT_TRUE(SpaceTooSmall(1249, 1230));
    EXPECT_FALSE(SpaceTooSmall(1250, 1230));
    // 4 GiB and more always pass, even when the low half is small.
    EXPECT_FALSE(SpaceTooSmall((uint64_t{1} << 32) + 5, 1230));
}

}  // namespace
}  // namespace rm
