#pragma once
// The true discharge of the virtual river through the span that the boat crosses, its split
// into the unmeasured top, the measured middle and the unmeasured bottom, and the parts of the
// section between the span and the banks.
//
// The span is the vertical surface over the straight path of the boat from the position at the
// start of the first profile's averaging interval to the position at the end of the last
// profile's interval. Each profile samples the river at the middle of its interval, so a sum
// over profiles is the midpoint rule of the span's integral.
//
// The top/middle/bottom split follows the cell layout of the recording and the processing's
// default cell count rule: the top reaches from the surface down to the top edge of cell 0, the
// middle covers the counted cells, the bottom the rest down to the bed. A column too shallow
// for one counted cell goes whole into `unmeasured`.
//
// The discrete cell count makes the layer boundaries jump across the section; a sum over
// profiles samples those jumps and differs from the integral by a few tenths of a percent in
// the bottom layer. SampledLayerFlows gives that sum (the midpoint rule over the profiles), which
// a correct processing of a noise-free recording reproduces closely, layer by layer.
//
// Integrals across the section use adaptive Simpson cut at every kink and every change of the
// counted cells, relative tolerance 1e-11; integrals over the vertical are closed forms.

#include "sim/crossing_plan.h"
#include "sim/virtual_river.h"

namespace rm::sim {

// Where the cells of the profiler lie in the water column and how many count as measured.
struct CellLayout {
    double transducerDepthM = 0.2;
    double blankM = 0.25;
    double cellM = 0.25;
    int cells = 20;
    double discardPercent = 10.0;  // part of the depth below the transducer left out at the bed

    // Depth below the surface of the top edge of cell 0, metres.
    double MeasuredTop() const { return transducerDepthM + blankM + 0.5 * cellM; }
    // Depth below the surface of the bottom edge of the last of `counted` cells.
    double MeasuredBottom(int counted) const { return MeasuredTop() + counted * cellM; }
    // Depth below the surface of the centre of cell i (from 0).
    double CellCentre(int i) const { return transducerDepthM + blankM + cellM * (i + 1); }
    // Cells counted as measured over a column of the given depth: the cells whose bottom edge
    // lies above the discarded part near the bed, at most `cells`.
    int CountedCells(double depth) const;
    // The smallest depth at which `counted` cells count.
    double DepthForCountedCells(int counted) const;
};

struct LayerFlows {
    double top = 0.0, middle = 0.0, bottom = 0.0, unmeasured = 0.0;
    double Total() const { return top + middle + bottom + unmeasured; }
};

// Flow per unit width through the column at y, split into layers, m2/s.
LayerFlows ColumnLayerFlows(const VirtualRiver& river, double y, const CellLayout& layout);

// Width, wetted area and discharge of a part of the section.
struct SectionPart {
    double width = 0.0;      // m
    double area = 0.0;       // m2
    double discharge = 0.0;  // m3/s, positive downstream
};

struct SpanTruth {
    double startY = 0.0, endY = 0.0;  // cross-stream ends of the span, from the left bank, m
    SectionPart span;
    LayerFlows layers;                        // the span's discharge by layer, m3/s
    double meanVelocity = 0.0;                // discharge / area, m/s
    SectionPart leftEdge;                     // from the left bank to the span
    SectionPart rightEdge;                    // from the span to the right bank
    SectionPart river;                        // bank to bank
    double startDepth = 0.0, endDepth = 0.0;  // depth at the span ends, m
};

// The truth of the span between cross-stream positions yStart and yEnd (either order).
SpanTruth ComputeSpanTruth(const VirtualRiver& river, double yStart, double yEnd, const CellLayout& layout);

// The sum over the plan's profiles of the column's layer flows at the middle of each interval
// times the distance across the channel covered in the interval, m3/s.
LayerFlows SampledLayerFlows(const VirtualRiver& river, const CrossingPlan& plan, const CellLayout& layout);

// Width, area and discharge between two cross-stream positions, by numerical integration.
SectionPart IntegrateSection(const VirtualRiver& river, double yA, double yB);

}  // namespace rm::sim
