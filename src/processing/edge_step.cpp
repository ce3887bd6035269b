#include "processing/edge_step.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "processing/discharge_data.h"
#include "processing/discharge_inputs.h"
#include "processing/edges.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {
constexpr int kPhaseLiveMeasurement = 2;
constexpr double kEdgeUnset = 0.0001;

// The first profile of an edge and the profile from which on it can be computed. At the start
// bank the edge takes the first nL (nR) profiles of the range, at the other bank the last ones.
struct EdgePlan {
    int firstIndex = 0;
    int threshold = 0;
};

EdgePlan PlanFor(const ProcessingContext& ctx, int side, int lastSeen) {
    const ProcessingSettings& s = ctx.settings;
    const ProfileRange range = SelectedProfileRange(ctx);
    const int S = s.CorrectedStartBankSide;
    if (side == kSideLeft) {
        const int nL = s.LeftNumProfiles;
        if (S == 0) return {range.L0, std::max(lastSeen, range.L0 + nL - 1)};
        return {range.L0 - nL + 1, std::max(lastSeen, range.L0)};
    }
    const int nR = s.RightNumProfiles;
    if (S == 1) return {range.R0, std::max(lastSeen, range.R0 + nR - 1)};
    return {range.R0 - nR + 1, std::max(lastSeen, range.R0)};
}

EdgeRequest RequestFor(const ProcessingContext& ctx, int side, int firstIndex) {
    const ProcessingSettings& s = ctx.settings;
    const bool left = side == kSideLeft;
    EdgeRequest r;
    r.startBank = s.CorrectedStartBankSide;
    r.side = side;
    r.method = left ? s.LeftBankMethod : s.RightBankMethod;
    r.firstIndex = firstIndex;
    r.numProfiles = left ? s.LeftNumProfiles : s.RightNumProfiles;
    r.distance = left ? s.CorrectedLeftDistance : s.CorrectedRightDistance;
    r.coefficient = left ? s.LeftBankSlope : s.RightBankSlope;
    r.userEstimate = left ? s.LeftUserEstimate : s.RightUserEstimate;
    r.courseEast = ctx.discharge.MeanBoatEast;
    r.courseNorth = ctx.discharge.MeanBoatNorth;
    return r;
}

// Computes the edge of `side` and stores its discharge and distance in the record.
double ComputeAndStore(ProcessingContext& ctx, int side, int firstIndex) {
    const EdgeRequest r = RequestFor(ctx, side, firstIndex);
    const double q = ComputeEdge(ctx, r);
    if (side == kSideLeft) {
        ctx.discharge.LeftDischarge = static_cast<float>(q);
        ctx.discharge.LeftDistance = static_cast<float>(r.distance);
    } else {
        ctx.discharge.RightDischarge = static_cast<float>(q);
        ctx.discharge.RightDistance = static_cast<float>(r.distance);
    }
    return q;
}

// The edge's profiles have not left the ring; once they have, the stored edge stands.
bool ProfilesStillHeld(const ProcessingContext& ctx, int firstIndex) {
    return std::max(firstIndex, 0) >= ctx.state.count - RingSize(ctx);
}

bool Reached(int profileIndex, int threshold) {
    return static_cast<uint32_t>(profileIndex) >= static_cast<uint32_t>(threshold);
}
}  // namespace

void RunEdgeStep(ProcessingContext& ctx, int profileIndex) {
    const int S = ctx.settings.CorrectedStartBankSide;
    const bool live = ctx.state.phase == kPhaseLiveMeasurement;
    const int lastSeen = ctx.state.count - 1;

    const EdgePlan left = PlanFor(ctx, kSideLeft, lastSeen);
    if (Reached(profileIndex, left.threshold) && !(S == 1 && live) && ProfilesStillHeld(ctx, left.firstIndex)) {
        ComputeAndStore(ctx, kSideLeft, left.firstIndex);
    }
    const EdgePlan right = PlanFor(ctx, kSideRight, lastSeen);
    if (Reached(profileIndex, right.threshold) && !(S == 0 && live) && ProfilesStillHeld(ctx, right.firstIndex)) {
        ComputeAndStore(ctx, kSideRight, right.firstIndex);
    }
}

void UpdateEdgesAtEnd(ProcessingContext& ctx, bool endOfTransect) {
    const int S = ctx.settings.CorrectedStartBankSide;
    if (S != 0 && S != 1) return;
    // With the flag set the edge of the start bank, otherwise that of the other bank.
    const bool left = endOfTransect ? S == 0 : S == 1;
    const int side = left ? kSideLeft : kSideRight;
    const EdgePlan plan = PlanFor(ctx, side, ctx.state.count - 1);
    const float stored = left ? ctx.discharge.LeftDischarge : ctx.discharge.RightDischarge;
    if (std::fabs(stored) > kEdgeUnset || ctx.state.count <= plan.threshold) return;
    const double q = ComputeAndStore(ctx, side, plan.firstIndex);
    ctx.discharge.TotalWidth += left ? ctx.discharge.LeftDistance : ctx.discharge.RightDistance;
    ctx.discharge.TotalDischarge += static_cast<float>(q);
}

}  // namespace rm
