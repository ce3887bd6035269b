#pragma once
// The velocity set of the "ASCII File Output": one file per axis or beam, named by the
// coordinate system (ENU .ve .vn .vu .vu2, XYZ .vx .vy .vz .vz2, beam .v1 .v2 .v3 .v4; the
// fourth only with more than three beams), and .spd and .dir from the first two components.

#include <string>
#include <vector>

namespace rm {

struct SpeedDirection {
    double speed = 0.0;
    double direction = 0.0;  // degrees clockwise from the second component's axis, [0, 360)
};

// Speed and direction of (u, v). A u of 3270.0 or more (u alone is tested) gives speed 32767.0
// and direction 0. Otherwise speed = sqrt(v^2 + u^2); for |u| >= 0.001 the direction is
// 90 - atan2(v, u) x 57.29577951 raised by 360 when negative, else 180 for a negative v and 0.
SpeedDirection VelocitySpeedDirection(double u, double v);

// The extensions of the component files for a coordinate system (0 beam, 1 XYZ, 2 ENU) and a
// beam count; then ".spd" and ".dir" are written beside them.
std::vector<std::string> VelocityComponentExtensions(int coordinateSystem, int beams);

}  // namespace rm
