#pragma once
// The bottom-track step of a profile: classification of the ensemble, its velocity in the
// requested coordinate system (m/s) and its depths per beam (m), both corrected for sound
// speed, the hold of the previous profile's values for a bad ensemble, and the bottom-track
// track point. BottomTrackStep itself is declared in processing_steps.h; the raw block and its
// bad-beam rule are in data/bottom_track_block.h.

#include "data/bottom_track_block.h"
#include "processing/processing_context.h"
#include "processing/velocity_chain.h"

namespace rm {

// The velocity of the ensemble per axis in `coordinateSystem`, m/s: all MissingValueF when
// any beam is bad, axes beyond the beams 0. Without user rotation, equal recorded and requested
// systems pass through the identity.
VelocityVector BottomTrackVelocity(const ProcessingContext& ctx, int slot, int coordinateSystem);

}  // namespace rm
