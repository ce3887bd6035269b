#include "processing/edges.h"

#include <algorithm>
#include <cmath>

#include "processing/course_direction.h"
#include "processing/discharge_data.h"
#include "processing/discharge_inputs.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"
#include "processing/shallow_water_cell.h"

namespace rm {

namespace {
constexpr double kCourseTolerance = 0.0032767;
constexpr double kLargestComponent = 3270.0;

constexpr int kPhaseRecomputation = 3;

bool NearMissing(double v) { return std::fabs(v - MissingValue) <= kCourseTolerance; }

// Folds one profile's water into the buffer `w`, which still holds the previous profile's mean:
// the shallow cell blends with that earlier value, then the cells are added to it and the sum
// is divided by the cell count n (skipped cells included). This carry-over from profile to
// profile is how the system has always averaged the edge water and is kept on purpose.
void FoldProfileWater(ProcessingContext& ctx, int slot, std::array<double, 2>& w) {
    const int8_t flag = ctx.slots[static_cast<size_t>(slot)].shallowWaterFlag;
    int shallowCells = 0;
    const int n = CountWaterCells(ctx, slot, flag != 0, shallowCells);
    const double cell = ctx.data.user.CellSizeCm * 0.01;
    if (shallowCells > 0) {
        const double C = ShallowCellGeometryOf(ctx.data.conf).cellSize;
        std::array<float, 4> S{};
        GetShallowVelocity(ctx, slot, S);
        for (size_t k = 0; k < w.size(); ++k) {
            if (S[k] < MissingValueF) w[k] = (n * w[k] * cell + S[k] * C) / (n * cell + C);
        }
    }
    if (n <= 0 || n > ctx.Raw(slot).cells) return;
    VelocityArrays v;
    GetVelocities(ctx, slot, v);
    for (size_t k = 0; k < w.size(); ++k) {
        for (int j = 0; j < n && j < kMaxCells; ++j) {
            const size_t cellIndex = static_cast<size_t>(j);
            if (v[0][cellIndex] != MissingValueF && v[1][cellIndex] != MissingValueF) w[k] += v[k][cellIndex];
        }
        w[k] = w[k] / n;
    }
}
}  // namespace

std::vector<EdgeWaterEntry> CollectEdgeWater(ProcessingContext& ctx, int a, int b) {
    std::vector<EdgeWaterEntry> entries;
    std::array<double, 2> w{0.0, 0.0};  // cleared once for the whole run of profiles
    for (int i = a; i < b; ++i) {
        if (!IsHeldInRing(ctx, i)) continue;
        const int slot = NormalSlot(ctx, i);
        FoldProfileWater(ctx, slot, w);
        const double H = GetDepth(ctx, slot, 0);
        if (w[0] < MissingValue && w[1] < MissingValue && H < MissingValue) entries.push_back({w[0], w[1], H});
    }
    return entries;
}

EdgeWater MeanEdgeWater(const std::vector<EdgeWaterEntry>& entries, double courseDirection) {
    double sumH = 0.0, sumV = 0.0;
    for (const EdgeWaterEntry& e : entries) {
        sumH += e.depth;
        double speed = MissingValue, direction = 0.0;
        if (e.east <= kLargestComponent) {
            speed = std::sqrt(e.east * e.east + e.north * e.north);
            direction = CourseDirection(e.east, e.north);
        }
        double diff = courseDirection - direction;
        if (diff < 0.0) diff += 360.0;
        if (diff > 360.0) diff -= 360.0;
        sumV += (diff > 180.0 ? -1.0 : 1.0) * speed;
    }
    EdgeWater out;
    out.profiles = static_cast<int>(entries.size());
    if (out.profiles > 0) {
        out.depth = sumH / out.profiles;
        out.speed = sumV * 0.01 / out.profiles;
    }
    return out;
}

namespace {
// The edge water of [a, b): during a recomputation collected once per bank and pass, else afresh,
// since live settings may change between profiles.
const std::vector<EdgeWaterEntry>& EdgeWaterOf(ProcessingContext& ctx, int side, int a, int b) {
    EdgeWaterRun& run =
        side == kSideLeft ? ctx.state.dischargeSums.leftEdgeWater : ctx.state.dischargeSums.rightEdgeWater;
    if (ctx.state.phase != kPhaseRecomputation || run.a != a || run.b != b) {
        run.a = ctx.state.phase == kPhaseRecomputation ? a : -1;
        run.b = b;
        run.entries = CollectEdgeWater(ctx, a, b);
    }
    return run.entries;
}
}  // namespace

double ComputeEdge(ProcessingContext& ctx, const EdgeRequest& r) {
    if (r.method == kBankMethodUserInput) return r.userEstimate;
    if (NearMissing(r.courseEast) || NearMissing(r.courseNorth)) return 0.0;
    const double theta = CourseDirection(r.courseEast, r.courseNorth);

    const int a = std::max(r.firstIndex, 0);
    int b = std::min(a + r.numProfiles, ctx.state.count);
    // A file being recorded has no profile count yet; the profiles taken in bound the run then.
    if (ctx.data.ProfileCount() > 0) b = std::min(b, ctx.data.ProfileCount());
    const EdgeWater water = MeanEdgeWater(EdgeWaterOf(ctx, r.side, a, b), theta);
    const double H = water.depth, V = water.speed, d = r.distance;
    const double A = H * d;

    double q = 0.0, area = 0.0;
    if (r.method == kBankMethodVertical) {
        if (H > 0.0 && d > 0.0) {
            const double e = std::exp(-4.0 * d / H);
            q = (1.0 - (H * 0.0875 / d) * (1.0 - e)) * A * V / (1.0 - 0.35 * e);
            area = A;
        }
    } else {
        area = A / 2.0;
        q = (A / 2.0) * V * r.coefficient;
    }
    if (r.side == kSideLeft) ctx.discharge.LeftEdgeArea = area;
    else ctx.discharge.RightEdgeArea = area;
    if (r.startBank == 1) q = -q;
    return q == 0.0 ? 0.0 : q;  // no negative zero in the record
}

}  // namespace rm
