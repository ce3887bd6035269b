#pragma once
// The mean boat vector of a measurement, the reference direction of the edge estimates. With
// bottom track as the track reference it is the mean of the boat's motion over the profiles
// with a bottom-track velocity; with GPS it is the last valid GPS velocity (times 0.1) divided
// by the number of valid GPS velocities: only the direction matters to its users, and this is
// how the system has always formed it.

#include "processing/processing_context.h"

namespace rm {

// Folds the profile `profileIndex` (from 0), held in `slot`, into the running course sums; a
// profile already folded in is not counted twice.
void FoldIntoCourse(ProcessingContext& ctx, int profileIndex, int slot);

// Stores the mean boat vector of the profiles folded in so far into the measurement record:
// MissingValue in both components when no profile had a valid velocity of the track reference,
// or for a track reference other than bottom track (1) and GPS (2).
void UpdateMeanBoatVector(ProcessingContext& ctx);

}  // namespace rm
