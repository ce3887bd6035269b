#pragma once
// Significant-digit rounding of discharge figures, as every report of the program prints them.
// Three routines share the same first steps; they differ in when the kept digits round up.
//
// With a = |v|, e = log10(a) truncated toward zero (one less when a < 1), d = S - e - 1 and
// p = 10^d: y = p v, i = y truncated toward zero, f = (y - i) x 100.
//   SignificantDigitsText   rounds i up when f >= 49.999999999 and prints i / p with max(d, 0)
//                           decimals ("the rounding text": summary, .sum file, dialogs, panels).
//   SignificantDigitsValue  the same rounding, the number i / p instead of the text.
//   UsgsRoundedValue        rounds up when f >= 50.999999999, an exact half (f == 50.0) to even,
//                           anything in between down; returns i / p.
// For a negative v, f is negative, so negative values are truncated toward zero rather than
// rounded: this asymmetry is the program's and is kept. v = 0 gives "0" and 0.

#include <string>

namespace rm {

std::string SignificantDigitsText(double value, int digits);
double SignificantDigitsValue(double value, int digits);
double UsgsRoundedValue(double value, int digits);

}  // namespace rm
