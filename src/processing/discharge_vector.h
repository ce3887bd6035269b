#pragma once
// Arithmetic on the horizontal velocity vectors (East, North) of the discharge computation.
// A vector whose component equals MissingValue carries no value; the results built from it
// carry none either, so a missing input never turns into a number.

#include "processing/processing_context.h"

namespace rm {

inline Vector2 MissingVector() { return Vector2{}; }
inline Vector2 ZeroVector() { return Vector2{0.0, 0.0}; }
inline Vector2 MakeVector(double east, double north) { return Vector2{east, north}; }

// True when a component holds the missing marker itself (a computed infinity is a value).
inline bool HoldsMissing(const Vector2& v) { return v.East == MissingValue || v.North == MissingValue; }

inline Vector2 Scaled(const Vector2& v, double k) {
    if (HoldsMissing(v)) return v;
    return Vector2{v.East * k, v.North * k};
}

}  // namespace rm
