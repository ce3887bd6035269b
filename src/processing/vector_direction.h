#pragma once
// Magnitude and direction of a horizontal vector (x East, y North) as displays and exports
// show them: a vector whose x exceeds 3270 counts as missing (magnitude MissingValue,
// direction 0); the direction is clockwise from North in [0, 360), and for |x| below 0.001
// it is 180 when y is negative, else 0.

namespace rm {

double VectorMagnitude(double x, double y);
double VectorDirection(double x, double y);

}  // namespace rm
