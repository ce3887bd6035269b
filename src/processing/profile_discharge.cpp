// The moving-boat discharge of one profile (ComputeProfileDischarge, processing_steps.h): the
// measured layer, the top and bottom layers by constant or power-law fits, the boat vector of
// the track reference, the discharge of each part, the depth-averaged velocity and the layer
// arrays of the profile display; then, for the profiles of the selected range, the sums of the
// measurement with its edges, track values and area. Every profile gets its quality index.

#include <algorithm>

#include "processing/discharge_data.h"
#include "processing/discharge_inputs.h"
#include "processing/edge_step.h"
#include "processing/boat_speed.h"
#include "processing/gps_track.h"
#include "processing/layer_display.h"
#include "processing/mean_boat_vector.h"
#include "processing/measured_layer.h"
#include "processing/power_fit.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"
#include "processing/track_area.h"

namespace rm {

namespace {
constexpr uint8_t kShallowWaterPingMode = 2;
constexpr int kMeasurementPaused = 3;
constexpr int kDisplayNoShallow = 0, kDisplayShallowUsed = 2, kDisplayShallowNotUsed = 4;

void ClearWorkingValues(ProfileWorkingValues& w) {
    w = ProfileWorkingValues{};
    w.LayerDepth.fill(MissingValueF);
    w.LayerQ.fill(MissingValueF);
    w.CellQ.fill(MissingValueF);
    w.TopLayerEast.fill(MissingValueF);
    w.TopLayerNorth.fill(MissingValueF);
    w.BottomLayerEast.fill(MissingValueF);
    w.BottomLayerNorth.fill(MissingValueF);
}

// The discharge parts, means and boat fields of a profile that has no discharge.
void MarkNoDischarge(ProcessedProfile& p) {
    p.TotalQ = p.TopQ = p.MiddleQ = p.BottomQ = MissingValueF;
    p.VelocityError = MissingValueF;
    p.MeanEast = p.MeanNorth = MissingValueF;
    p.MeasuredEast = p.MeasuredNorth = MissingValue;
    p.BoatEast = p.BoatNorth = MissingValue;
    p.MeasuredThickness = MissingValue;
}

// The apparent motion of the bed (m/s), the negative of the boat's motion, by track reference.
Vector2 BoatVector(const ProcessingContext& ctx, int slot) {
    Vector2 b = ZeroVector();
    if (ctx.settings.TrackReference == kTrackRefGps) {
        const GpsVelocity v = SlotGpsVelocity(ctx, slot);
        if (v.east != kGpsNoVelocity) b.East = v.east * -0.001;
        if (v.north != kGpsNoVelocity) b.North = v.north * -0.001;
    } else if (ctx.settings.TrackReference == kTrackRefBottomTrack) {
        const BottomTrackResult& bt = ctx.slots[static_cast<size_t>(slot)].bottomTrack;
        if (bt.Velocity[0] < MissingValueF && bt.Velocity[1] < MissingValueF) b = MakeVector(bt.Velocity[0], bt.Velocity[1]);
    }
    return b;
}

// Depth-averaged velocity: the three layers weighted by their thickness.
double DepthAverage(double H, double D1, double D2, double top, double measured, double bottom) {
    if (top == MissingValue || measured == MissingValue || bottom == MissingValue) return MissingValue;
    return ((H - D1) * top + (D1 - D2) * measured + D2 * bottom) / H;
}

float AsPart(double q) { return q == MissingValue ? MissingValueF : static_cast<float>(q); }

// Bottom + middle + top in single precision, in that order.
float ProfileTotal(const ProcessedProfile& p) {
    if (p.TopQ == MissingValueF || p.MiddleQ == MissingValueF || p.BottomQ == MissingValueF) return MissingValueF;
    return p.BottomQ + p.MiddleQ + p.TopQ;
}

// The measured total recomputed from its parts, leaving out a part without a value.
float MeasurementTotal(const CDischargeData& d) {
    float total = 0.0f;
    for (float part : {d.TopDischarge, d.MiddleDischarge, d.BottomDischarge, d.LeftDischarge, d.RightDischarge}) {
        if (part != MissingValueF) total += part;
    }
    return total;
}

void AddPart(float& sum, float part) {
    if (part != MissingValueF) sum += part;
}

// One profile under computation.
struct Profile {
    int slot = 0;
    int index = 0;  // from 0
    ProfileRange range;
    CellGeometry geometry;
    float dt = 0.0f;
    int c = 0, w = 0;
    double H = MissingValue;
    Vector2 shallow;
    VelocityArrays velocity;
};

// The mean velocity of each layer of a profile, with the boat vector.
struct ProfileLayers {
    MeasuredLayerEdges edges;
    Vector2 top, measured, bottom;
    Vector2 boat;
};

// The layers of the profile: range means, measured layer, fits, boat vector, display arrays and
// depth-averaged velocity. False when the profile has no discharge.
bool ComputeLayers(ProcessingContext& ctx, const Profile& pr, ProfileLayers& out) {
    const ProcessingSettings& s = ctx.settings;
    ProfileWorkingValues& wv = ctx.working;
    ProcessedProfile& p = ctx.slots[static_cast<size_t>(pr.slot)].processed;
    p.MeanEast = p.MeanNorth = MissingValueF;
    if (pr.c < 1 && pr.w < 1) return false;

    const MeasuredColumn column{pr.velocity, ctx.Raw(pr.slot), pr.c, pr.w, pr.shallow, pr.geometry};
    const ExtrapolationChoice fits = ExtrapolationOf(s);
    const RangeMean topRange = TopRangeMean(column, fits.top.cells);
    const RangeMean bottomRange = BottomRangeMean(column, fits.bottom.cells);
    wv.TopRangeMean = topRange.mean;
    wv.BottomRangeMean = bottomRange.mean;
    const MeasuredLayerEdges edges = EdgesOfMeasuredLayer(pr.geometry, pr.H, pr.c, pr.w);
    wv.TopEdge = edges.TopEdge;
    wv.BottomEdge = edges.BottomEdge;
    wv.FirstCellDepth = edges.FirstCellDepth;
    wv.LastCellDepth = edges.LastCellDepth;
    const MeasuredMean measured = MeasuredLayerMean(column);
    wv.MeasuredMean = measured.mean;
    wv.GapVelocity = measured.gapVelocity;
    p.VelocityError = static_cast<float>(measured.velocityError);
    if (measured.Empty()) return false;

    FitColumn fc;
    fc.depth = pr.H;
    fc.topEdge = edges.TopEdge;
    fc.bottomEdge = edges.BottomEdge;
    fc.topRangeThickness = topRange.thickness;
    fc.bottomRangeThickness = bottomRange.thickness;
    fc.firstCellDepth = edges.FirstCellDepth;
    fc.lastCellDepth = edges.LastCellDepth;
    fc.measuredMean = measured.mean;
    fc.topRangeMean = topRange.mean;
    fc.bottomRangeMean = bottomRange.mean;
    const LayerFit top = FitTopLayer(fits.top, fc);
    const LayerFit bottom = FitBottomLayer(fits.bottom, fc);
    wv.TopMean = top.mean;
    wv.TopRatio = top.ratio;
    wv.BottomMean = bottom.mean;
    wv.BottomRatio = bottom.ratio;

    const Vector2 boat = BoatVector(ctx, pr.slot);
    const VectorDischarge q(boat, pr.dt, s.CorrectedStartBankSide);
    const LayerDisplayInputs display{q, pr.geometry, pr.velocity, ctx.Raw(pr.slot).cells, pr.c, pr.w,
                                     pr.H, edges.TopEdge, edges.BottomEdge, static_cast<float>(s.TopExponent),
                                     pr.shallow, measured.gapVelocity, measured.mean, top, bottom};
    FillLayerDisplay(display, wv);

    if (pr.H != 0.0) {
        const double D1 = edges.TopEdge, D2 = edges.BottomEdge;
        p.MeanEast = AsPart(DepthAverage(pr.H, D1, D2, top.mean.East, measured.mean.East, bottom.mean.East));
        p.MeanNorth = AsPart(DepthAverage(pr.H, D1, D2, top.mean.North, measured.mean.North, bottom.mean.North));
    }
    out = ProfileLayers{edges, top.mean, measured.mean, bottom.mean, boat};
    return true;
}

// A profile of the selected range: its discharge parts, then the mean course and the edges of
// the measurement, and its parts added to the sums.
void AddToMeasurement(ProcessingContext& ctx, const Profile& pr, const ProfileLayers& l) {
    ProcessedProfile& p = ctx.slots[static_cast<size_t>(pr.slot)].processed;
    const VectorDischarge q(l.boat, pr.dt, ctx.settings.CorrectedStartBankSide);
    const double D1 = l.edges.TopEdge, D2 = l.edges.BottomEdge;
    p.BoatEast = l.boat.East;
    p.BoatNorth = l.boat.North;
    p.MeasuredEast = Scaled(l.measured, 0.01).East;
    p.MeasuredNorth = Scaled(l.measured, 0.01).North;
    p.MeasuredThickness = D1 - D2;
    p.TopQ = AsPart(q(l.top, pr.H - D1));
    p.MiddleQ = AsPart(q(l.measured, D1 - D2));
    p.BottomQ = AsPart(q(l.bottom, D2));
    p.TotalQ = ProfileTotal(p);
    if (IsLastTakenIn(ctx, pr.index)) UpdateMeanBoatVector(ctx);
    RunEdgeStep(ctx, pr.index);
    CDischargeData& d = ctx.discharge;
    AddPart(d.TopDischarge, p.TopQ);
    AddPart(d.MiddleDischarge, p.MiddleQ);
    AddPart(d.BottomDischarge, p.BottomQ);
    d.TotalDischarge = MeasurementTotal(d);
    AddToAreaSums(ctx, pr.index, pr.slot);
}
}  // namespace

void ComputeProfileDischarge(ProcessingContext& ctx, int slot) {
    slot = NormalSlot(ctx, slot);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return;
    const ProcessingSettings& s = ctx.settings;
    ProfileWorkingValues& wv = ctx.working;
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    ClearWorkingValues(wv);

    Profile pr;
    pr.slot = slot;
    pr.index = ProfileIndexOfSlot(ctx, slot);
    pr.range = SelectedProfileRange(ctx);
    pr.geometry = CellGeometryOf(ctx);
    pr.dt = static_cast<float>(ProfileTimeStep(ctx.data));
    pr.c = std::clamp(results.waterCells, 0, kMaxCells);
    pr.w = std::max(results.shallowCells, 0);
    wv.WaterCells = pr.c;
    wv.ShallowCells = pr.w;

    const bool shallowMode = ctx.data.derived.bottomTrackMode == kShallowWaterPingMode;
    const bool useShallow = shallowMode && s.UseShallowWaterPing != 0;
    const bool flag = results.shallowWaterFlag != 0;
    if (ctx.state.measurementState == kMeasurementPaused) wv.displayState = kMeasurementPaused;
    else if (!useShallow) wv.displayState = kDisplayNoShallow;
    else wv.displayState = flag ? kDisplayShallowUsed : kDisplayShallowNotUsed;

    GetVelocities(ctx, slot, pr.velocity);
    if (shallowMode && flag) {
        std::array<float, 4> S{};
        GetShallowVelocity(ctx, slot, S);
        pr.shallow = MakeVector(S[0], S[1]);
    }
    // The boat's GPS and bottom-track velocity of the slot, also for a profile without water, so
    // that the displays show the boat's speed there too.
    RefreshBoatVelocities(ctx, slot);
    const BoatCourse course = ComputeBoatCourse(ctx, slot);
    wv.ProfileCourse = course.course;
    wv.ProfileDistance = course.distance;
    pr.H = GetDepth(ctx, slot, 0);
    results.processed.Depth = pr.H;
    wv.Depth = static_cast<float>(pr.H);
    FoldIntoCourse(ctx, pr.index, slot);

    ProfileLayers layers;
    if (!ComputeLayers(ctx, pr, layers)) MarkNoDischarge(results.processed);
    else if (pr.range.Contains(pr.index)) AddToMeasurement(ctx, pr, layers);
    UpdateTrackValues(ctx, pr.index, slot);
    ComputeQualityIndex(ctx, slot);
    if (pr.range.Contains(pr.index) && IsLastTakenIn(ctx, pr.index)) ComputeArea(ctx, slot);
}

}  // namespace rm
