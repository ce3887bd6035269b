#pragma once
// The direction of a course or water vector (x East, y North) as the edge and area computations
// take it, degrees clockwise from North in [0, 360): 0 when x exceeds 3270 (a missing or
// impossible value), for |x| below 0.001 180 when y is negative and 0 otherwise. Unlike the
// display rule, only x is tested against 3270, so a track point more than 3270 m north of the
// start still has a bearing.

namespace rm {

double CourseDirection(double x, double y);

}  // namespace rm
