#include "sim/truth.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "sim/quadrature.h"

namespace rm::sim {

int CellLayout::CountedCells(double depth) const {
    const double below = depth - transducerDepthM;
    if (!(below > 0.0) || !(cellM > 0.0)) return 0;
    const double x = (below * (100.0 - discardPercent) * 0.01 - blankM - 0.5 * cellM) / cellM;
    if (!(x >= 1.0)) return 0;
    return std::min(cells, static_cast<int>(x));
}

double CellLayout::DepthForCountedCells(int counted) const {
    return transducerDepthM + (counted * cellM + blankM + 0.5 * cellM) / ((100.0 - discardPercent) * 0.01);
}

LayerFlows ColumnLayerFlows(const VirtualRiver& river, double y, const CellLayout& layout) {
    LayerFlows flows;
    const double h = river.Depth(y);
    if (h <= 0.0) return flows;
    const int counted = layout.CountedCells(h);
    if (counted < 1) {
        flows.unmeasured = river.UnitDischarge(y);
        return flows;
    }
    // Heights above the bed of the edges of the measured layer.
    const double d1 = h - layout.MeasuredTop();
    const double d2 = h - layout.MeasuredBottom(counted);
    flows.top = river.LayerUnitDischarge(y, d1, h);
    flows.middle = river.LayerUnitDischarge(y, d2, d1);
    flows.bottom = river.LayerUnitDischarge(y, 0.0, d2);
    return flows;
}

namespace {

// Cross-stream positions where the integrands change form: the deepest point, where the bed
// law has its kink for shapes other than even powers, and where the counted cells change.
std::vector<double> BreakPoints(const VirtualRiver& river, const CellLayout& layout) {
    std::vector<double> points{0.5 * river.widthM};
    for (int k = 1; k <= layout.cells; ++k) {
        double at[2];
        const int n = river.PositionsOfDepth(layout.DepthForCountedCells(k), at);
        if (n == 0) break;
        points.insert(points.end(), at, at + n);
    }
    return points;
}

}  // namespace

LayerFlows SampledLayerFlows(const VirtualRiver& river, const CrossingPlan& plan, const CellLayout& layout) {
    const EnVector across = river.TowardRightBank();
    LayerFlows sum;
    for (const ProfileState& state : plan.profiles) {
        const EnVector step = state.endPosition - state.startPosition;
        const double width = std::fabs(step.east * across.east + step.north * across.north);
        const LayerFlows column = ColumnLayerFlows(river, state.y, layout);
        sum.top += column.top * width;
        sum.middle += column.middle * width;
        sum.bottom += column.bottom * width;
        sum.unmeasured += column.unmeasured * width;
    }
    return sum;
}

SectionPart IntegrateSection(const VirtualRiver& river, double yA, double yB) {
    const double lo = std::clamp(std::min(yA, yB), 0.0, river.widthM);
    const double hi = std::clamp(std::max(yA, yB), 0.0, river.widthM);
    SectionPart part;
    part.width = std::max(yA, yB) - std::min(yA, yB);
    const std::vector<double> mid{0.5 * river.widthM};
    part.area = IntegratePiecewise([&](double y) { return river.Depth(y); }, lo, hi, mid);
    part.discharge = IntegratePiecewise([&](double y) { return river.UnitDischarge(y); }, lo, hi, mid);
    return part;
}

SpanTruth ComputeSpanTruth(const VirtualRiver& river, double yStart, double yEnd, const CellLayout& layout) {
    SpanTruth truth;
    truth.startY = yStart;
    truth.endY = yEnd;
    truth.startDepth = river.Depth(yStart);
    truth.endDepth = river.Depth(yEnd);
    const double lo = std::min(yStart, yEnd);
    const double hi = std::max(yStart, yEnd);

    truth.span = IntegrateSection(river, lo, hi);
    truth.leftEdge = IntegrateSection(river, 0.0, lo);
    truth.rightEdge = IntegrateSection(river, hi, river.widthM);
    truth.river = IntegrateSection(river, 0.0, river.widthM);
    truth.meanVelocity = truth.span.area > 0.0 ? truth.span.discharge / truth.span.area : 0.0;

    const std::vector<double> breaks = BreakPoints(river, layout);
    auto layer = [&](double LayerFlows::*member) {
        return IntegratePiecewise([&](double y) { return ColumnLayerFlows(river, y, layout).*member; }, lo, hi, breaks);
    };
    truth.layers.top = layer(&LayerFlows::top);
    truth.layers.middle = layer(&LayerFlows::middle);
    truth.layers.bottom = layer(&LayerFlows::bottom);
    truth.layers.unmeasured = layer(&LayerFlows::unmeasured);
    return truth;
}

}  // namespace rm::sim
