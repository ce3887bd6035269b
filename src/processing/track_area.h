#pragma once
// What a measurement reports besides discharge, from the running track of the track reference
// and the per-profile results: track length, distance and speed made good, total width, the
// times of the range, and the cross-section area with the mean velocity through it.

#include "processing/processing_context.h"

namespace rm {

// Track values of the record at profile `profileIndex` (from 0) held in `slot`: inside the
// selected range the profile count, track length, made good distance and speed, total width
// and the start and end times; before the range a profile count of 0.
void UpdateTrackValues(ProcessingContext& ctx, int profileIndex, int slot);

// Folds the profile's boat vector and depth into the area sums; only profiles of the range
// with all three discharge parts and a mean velocity count, each once.
void AddToAreaSums(ProcessingContext& ctx, int profileIndex, int slot);

// The area of the measurement, projected on the line from the start to the final track point
// of `slot` (the course over the whole transect, whatever area method the settings name), plus
// the two edge areas; and the mean velocity = |total discharge / area| when the area is not 0.
void ComputeArea(ProcessingContext& ctx, int slot);

}  // namespace rm
