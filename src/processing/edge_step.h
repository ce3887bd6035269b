#pragma once
// When the edges of a measurement are computed. During the pass over the selected profiles the
// edge at a bank is (re)computed as soon as the profiles it averages have been taken in; during
// a live measurement only the edge of the start bank, since the other bank has not been
// reached. UpdateEdgesAtEnd (processing_steps.h) fills an edge still missing at the end of a
// transect.

#include "processing/processing_context.h"

namespace rm {

// The edge step of the profile `profileIndex` (from 0) of the selected range: computes and
// stores the left and right edge discharge and distance whose profiles are complete.
void RunEdgeStep(ProcessingContext& ctx, int profileIndex);

}  // namespace rm
