#pragma once
// The boat's velocity fields of a ProcessedProfile and the boat speed taken from them: the
// vector of the track reference (GPS or bottom track), in m/s.

#include "processing/processing_context.h"

namespace rm {

// Copies the GPS velocity (times -0.001, so m/s as the apparent motion of the bed) when the
// slot has GPS, and the bottom-track velocity when the file has bottom track, into the slot's
// ProcessedProfile. A missing GPS velocity is stored as MissingValue.
void RefreshBoatVelocities(ProcessingContext& ctx, int slot);

// Speed of the track reference's vector of the slot's ProcessedProfile, m/s; MissingValue
// when a component is missing; 0 for a track reference other than 1 or 2.
double BoatSpeed(const ProcessingContext& ctx, int slot);

}  // namespace rm
