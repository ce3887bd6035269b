// The speed and direction rule of the velocity set, the names of the set and the space check's
// need formula, each against values worked out by hand.

#include <gtest/gtest.h>

#include <cmath>

#include "output/space_check.h"
#include "output/velocity_files.h"

namespace rm {
namespace {

TEST(VelocitySpeedDirectionRule, HandWorkedSpeedsAndBearings) {
    const double missingSecond = std::sqrt(9.0 + 32767.0 * 32767.0);
    const struct {
        double u, v, speed, direction;
    } rows[] = {
        // The missing test looks at the first component only and is one-sided: -3270 is a value
        // (pointing west), a missing second component goes into the speed.
        {3270.0, 5.0, 32767.0, 0.0},
        {-3270.0, 0.0, 3270.0, 270.0},
        {3.0, 32767.0, missingSecond, 90.0 - std::atan2(32767.0, 3.0) * 57.29577951},
        // Bearings clockwise from the second axis.
        {10.0, 0.0, 10.0, 90.0},
        {3.0, 3.0, std::sqrt(18.0), 45.0},
        {-3.0, 3.0, std::sqrt(18.0), 315.0},
        {3.0, -3.0, std::sqrt(18.0), 135.0},
        {3.0, 4.0, 5.0, 90.0 - std::atan2(4.0, 3.0) * 57.29577951},
        // A first component below 0.001 gives north or south; at 0.001 the formula applies.
        {0.0009, -2.0, std::hypot(0.0009, 2.0), 180.0},
        {-0.0009, 2.0, std::hypot(0.0009, 2.0), 0.0},
        {0.0, 0.0, 0.0, 0.0},
        {0.001, 2.0, std::hypot(0.001, 2.0), 90.0 - std::atan2(2.0, 0.001) * 57.29577951},
    };
    for (const auto& r : rows) {
        const SpeedDirection sd = VelocitySpeedDirection(r.u, r.v);
        EXPECT_NEAR(sd.speed, r.speed, 1e-6) << r.u << ", " << r.v;
        EXPECT_NEAR(sd.direction, r.direction, 1e-7) << r.u << ", " << r.v;
    }
}

TEST(VelocityFileNames, FollowTheCoordinateSystemAndTheBeamCount) {
    EXPECT_EQ(VelocityComponentExtensions(2, 4), (std::vector<std::string>{".ve", ".vn", ".vu", ".vu2"}));
    EXPECT_EQ(VelocityComponentExtensions(2, 3), (std::vector<std::string>{".ve", ".vn", ".vu"}));
    EXPECT_EQ(VelocityComponentExtensions(1, 4), (std::vector<std::string>{".vx", ".vy", ".vz", ".vz2"}));
    EXPECT_EQ(VelocityComponentExtensions(0, 3), (std::vector<std::string>{".v1", ".v2", ".v3"}));
}

TEST(AsciiSpaceCheck, NeedFormulaPerKindAndTheTooSmallTest) {
    // Profiles 1 to 10 (n + 1 = 10), 20 cells, 4 beams; one profile (7 to 7) has n + 1 = 1.
    const struct {
        AsciiOutputKind kind;
        int first, last;
        uint64_t need;
    } rows[] = {
        {AsciiOutputKind::Header, 1, 10, 41u * 10 * 3},
        {AsciiOutputKind::SignalStrength, 1, 10, 108u * 4 * 10},  // (5 c + 8) b
        {AsciiOutputKind::StdDeviation, 1, 10, 128u * 4 * 10},    // (6 c + 8) b
        {AsciiOutputKind::SnRatio, 1, 10, 128u * 4 * 10},
        {AsciiOutputKind::Gps, 1, 10, 1350u},
        {AsciiOutputKind::Velocity, 1, 10, 21u * 6 * 10 * 8},     // (c + 1)(b + 2) x 8
        {AsciiOutputKind::Configuration, 1, 10, 10000u},
        {AsciiOutputKind::Gps, 7, 7, 135u},
    };
    for (const auto& r : rows) {
        EXPECT_EQ(AsciiSpaceNeeded(r.kind, r.first, r.last, 20, 4), r.need) << static_cast<int>(r.kind);
    }
    // Too small only below the need plus 20, and never with a non-empty high half (4 GiB and more).
    EXPECT_TRUE(SpaceTooSmall(1249, 1230));
    EXPECT_FALSE(SpaceTooSmall(1250, 1230));
    EXPECT_FALSE(SpaceTooSmall((uint64_t{1} << 32) + 5, 1230));
}

}  // namespace
}  // namespace rm
