// Boat velocity and track points from GPS fixes. Expected values are worked out by hand from
// R = 6378137.0 - |mean latitude| x 237.611 and k = 0.0174532925199433 rad per degree.

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "data/gps_velocity.h"

namespace rm {
namespace {

GpsBlock Block(double t0, double lat0, double lon0, double t1, double lat1, double lon1) {
    GpsBlock b;
    b.startTime = t0;
    b.startLatitude = lat0;
    b.startLongitude = lon0;
    b.endTime = t1;
    b.endLatitude = lat1;
    b.endLongitude = lon1;
    return b;
}

TEST(NmeaTime, HoursMinutesSecondsAndFraction) {
    EXPECT_DOUBLE_EQ(NmeaTimeToSeconds(123519.25), 12 * 3600 + 35 * 60 + 19.25);
    EXPECT_DOUBLE_EQ(NmeaTimeToSeconds(235959.0), 86399.0);
    EXPECT_TRUE(std::isnan(NmeaTimeToSeconds(NAN)));
}

TEST(GpsVelocity, StepsRoundedToTenthsOfMillimetresPerSecond) {
    const struct {
        const char* what;
        GpsBlock block;
        float east, north;
    } cases[] = {
        // 0.001 degree east at latitude 0 in 10 s: R = 6378137, cos 0 = 1,
        // dE = 0.001 x 6378137 x k = 111.3194908 m; 111.3194908 x 10000 / 10 = 111319.49,
        // rounded 111319, x 0.1 = 11131.9 mm/s.
        {"east at the equator", Block(120000.0, 0.0, 0.0, 120010.0, 0.0, 0.001), 11131.9f, 0.0f},
        // Westward the same, negative: rounding goes away from zero both ways.
        {"west at the equator", Block(120000.0, 0.0, 0.001, 120010.0, 0.0, 0.0), -11131.9f, 0.0f},
        // 44.9995 to 45.0005 in 5 s: mean 45, R = 6378137 - 45 x 237.611 = 6367444.505,
        // dN = 0.001 x R x k = 111.1328716 m; x 10000 / 5 = 222265.74, rounded 222266,
        // x 0.1 = 22226.6 mm/s.
        {"north at 45 degrees", Block(120000.0, 44.9995, 7.0, 120005.0, 45.0005, 7.0), 0.0f, 22226.6f},
        // 23:59:58 to 00:00:03 is 5 s: the same as above.
        {"over midnight", Block(235958.0, 44.9995, 7.0, 3.0, 45.0005, 7.0), 0.0f, 22226.6f},
        // Exactly one second is computed: 111.3194908 x 10000 / 1 = 1113194.9, rounded 1113195.
        {"one second", Block(120000.0, 0.0, 0.0, 120001.0, 0.0, 0.001), 111319.5f, 0.0f},
    };
    for (const auto& c : cases) {
        const GpsVelocity v = ComputeGpsVelocity(c.block);
        EXPECT_FLOAT_EQ(v.east, c.east) << c.what;
        EXPECT_FLOAT_EQ(v.north, c.north) << c.what;
    }
}

TEST(GpsVelocity, FixesUnderASecondApartGiveTheNoValueMark) {
    for (double dt : {0.0, 0.5, 0.99}) {
        GpsVelocity v = ComputeGpsVelocity(Block(120000.0, 0.0, 0.0, 120000.0 + dt, 0.0, 0.001));
        EXPECT_EQ(v.east, 32767.0f) << dt;
        EXPECT_EQ(v.north, 32767.0f) << dt;
        EXPECT_FALSE(v.IsValid());
    }
    // A time that is not a number cannot give a speed either.
    EXPECT_FALSE(ComputeGpsVelocity(Block(NAN, 0.0, 0.0, 120001.0, 0.0, 0.001)).IsValid());
}

TEST(GpsTrack, LostProfilePointFromTheFirstFixAndAccumulatedDistance) {
    // First point 0.001 degree east of the origin at the equator: 111.3194908 m east.
    GpsTrackPoint first = LostProfileTrackPoint(0.0, 0.0, 0.0, 0.001, nullptr);
    EXPECT_NEAR(first.East, 111.3194908, 1e-6);
    EXPECT_NEAR(first.North, 0.0, 1e-12);
    EXPECT_NEAR(first.Distance, 111.3194908, 1e-6);
    // Second point 0.001 north of that: mean latitude 0.0005, R = 6378136.8811945,
    // north = 0.001 x R x k = 111.3194887 m, east = that x cos(0.0005 degree) = 111.3194887 m;
    // the step from the first point is 111.3194887 m (east moved by 2e-6 m only).
    GpsTrackPoint second = LostProfileTrackPoint(0.0, 0.0, 0.001, 0.001, &first);
    EXPECT_NEAR(second.North, 111.3194887, 1e-6);
    EXPECT_NEAR(second.East, 111.3194887, 1e-6);
    EXPECT_NEAR(second.Distance, 111.3194908 + 111.3194887, 2e-6);
}


TEST(GpsTrack, PositionFromIsTheInverseOfTheDisplacement) {
    // Around a river at 47.5 N, 8.25 E and at a southern, western origin, out to a few km.
    for (const auto& origin : {std::pair<double, double>{47.5, 8.25}, {-33.9, -70.6}, {0.0, 0.0}}) {
        for (double east : {-2500.0, -0.4, 0.0, 130.0, 4000.0}) {
            for (double north : {-3000.0, 0.0, 0.25, 75.0, 2000.0}) {
                const GpsPosition p = PositionFrom(origin.first, origin.second, east, north);
                const GpsDisplacement back = DisplacementBetween(origin.first, origin.second, p.latitude, p.longitude);
                EXPECT_NEAR(back.east, east, 1e-6) << origin.first << " " << east << " " << north;
                EXPECT_NEAR(back.north, north, 1e-6) << origin.first << " " << east << " " << north;
            }
        }
    }
    // One degree of latitude north of the equator: the mean latitude is 0.5 degree, where R is
    // 6378137 - 0.5 x 237.611 m, so the degree is R x k metres long.
    const double metres = 1.0 * GpsEarthRadius(0.5) * 0.0174532925199433;
    EXPECT_NEAR(PositionFrom(0.0, 0.0, 0.0, metres).latitude, 1.0, 1e-9);
}

}  // namespace
}  // namespace rm
