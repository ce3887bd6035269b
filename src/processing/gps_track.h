#pragma once
// GPS velocity of a profile and the GPS track. The velocity over ground comes from the two
// fixes of the profile's GPS block (data/gps_velocity.h) in mm/s; the track point of a profile
// is the end fix of its block in metres from the track's origin fix. GpsTrackStep itself is
// declared in processing_steps.h.

#include "data/gps_velocity.h"
#include "processing/processing_context.h"

namespace rm {

// A velocity of this many mm/s or more in either component marks the fix bad.
constexpr double kGpsBadSpeed = 15000.0;

// The GPS velocity of the slot's block, mm/s; both components MissingValue without a block or
// with fixes less than a second apart.
GpsVelocity SlotGpsVelocity(const ProcessingContext& ctx, int slot);

}  // namespace rm
