#pragma once
// The colour of a value on the legend's range a..b (w = b - a, t = v - a), by bands:
//
//   v <= a + 0.125 w   red 0                          green 0                          blue 1024 t / w + 127
//   up to a + 0.375 w  red 0                          green 1020 (t - 0.125 w) / w     blue 255
//   up to a + 0.625 w  red 1020 (t - 0.375 w) / w     green 255                        blue 255 - 1020 (t - 0.375 w) / w
//   up to a + 0.875 w  red 255                        green 255 - 1020 (t - 0.625 w) / w  blue 0
//   above              red 255 - 1024 (t - 0.875 w) / w  green 0                       blue 0
//
// Each component is truncated toward zero and only its low eight bits are kept: values beyond
// the range are not clamped, so a value far outside wraps around. A missing value (32767.0) is
// coloured by the same rule. The legend draws this same rule.

#include <QRgb>

namespace rm {

// The colour of `v` on the range a..b (b != a; the range is checked where it is entered).
QRgb ContourColour(double v, double a, double b);

}  // namespace rm
