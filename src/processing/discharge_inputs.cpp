#include "processing/discharge_inputs.h"

#include <algorithm>

#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {
constexpr float kCentimetresToMetresF = 0.01f;  // kept in single precision
}  // namespace

CellGeometry CellGeometryOf(const ProcessingContext& ctx) {
    CellGeometry g;
    g.transducer = GetTransducerDepth(ctx);
    g.blank = ctx.data.user.BlankDistance * 0.01;
    g.cell = ctx.data.user.CellSizeCm * 0.01;
    g.shallow = ShallowCellGeometryOf(ctx.data.conf);
    return g;
}

MeasuredLayerEdges EdgesOfMeasuredLayer(const CellGeometry& g, double depth, int c, int w) {
    MeasuredLayerEdges e;
    const double lastCellCentre = (c - 1) * g.cell + g.CellCentre();
    if (w > 0) {
        e.FirstCellDepth = g.ShallowCentre();
        e.TopEdge = depth - g.ShallowTop();
        if (c == 0) {
            e.LastCellDepth = e.FirstCellDepth;
            e.BottomEdge = depth - g.ShallowBottom();
        } else {
            e.LastCellDepth = lastCellCentre;
            e.BottomEdge = depth - e.LastCellDepth - g.cell / 2.0;
        }
    } else {
        e.FirstCellDepth = g.CellCentre();
        e.LastCellDepth = lastCellCentre;
        e.TopEdge = depth - g.CellCentre() + g.cell / 2.0;
        e.BottomEdge = depth - e.LastCellDepth - g.cell / 2.0;
    }
    return e;
}

ProfileRange SelectedProfileRange(const ProcessingContext& ctx) {
    ProfileRange r;
    r.L0 = ctx.settings.LeftProfile - 1;
    if (ctx.settings.RightProfile >= 1) {
        r.R0 = ctx.settings.RightProfile - 1;
    } else {
        r.R0 = std::max(ctx.data.ProfileCount(), ctx.state.count) - 1;
    }
    r.first = std::min(r.L0, r.R0);
    r.last = std::max(r.L0, r.R0);
    return r;
}

int ProfileIndexOfSlot(const ProcessingContext& ctx, int slot) {
    const int ring = RingSize(ctx);
    slot = NormalSlot(ctx, slot);
    const int latest = ctx.state.count - 1;
    if (latest < 0) return slot;
    return latest - ((latest - slot) % ring + ring) % ring;
}

bool IsLastTakenIn(const ProcessingContext& ctx, int profileIndex) { return profileIndex == ctx.state.count - 1; }

bool IsHeldInRing(const ProcessingContext& ctx, int profileIndex) {
    return profileIndex >= 0 && profileIndex < ctx.state.count && profileIndex >= ctx.state.count - RingSize(ctx);
}

VectorDischarge::VectorDischarge(const Vector2& boat, float dt, int startBankSide)
    : boat_(boat), dt_(dt), sign_(startBankSide == 1 ? -1.0 : 1.0) {}

double VectorDischarge::operator()(const Vector2& v, double thickness) const {
    if (HoldsMissing(v)) return MissingValue;
    return (boat_.North * v.East - boat_.East * v.North) * thickness * dt_ * kCentimetresToMetresF * sign_;
}

double VectorDischarge::PerMetre(const Vector2& v) const {
    if (HoldsMissing(v)) return MissingValue;
    return (boat_.North * v.East - boat_.East * v.North) * dt_ * kCentimetresToMetresF * sign_;
}

}  // namespace rm
