#pragma once
// The unmeasured top and bottom layers of a profile, filled by a constant or by a power law
// u(z) = a z^(p - 1) in the height z above the bed, p = exponent + 1, fitted so that its mean over
// a zone of the measured water equals the measured mean there. Besides the layer's mean the fit
// gives ten equal sub-layers for the profile display: the top ones from the surface down to
// the first measured layer, the bottom ones from the last measured layer down to the bed.

#include <array>

#include "processing/discharge_vector.h"
#include "processing/processing_settings.h"
#include "processing/processing_types.h"

namespace rm {

constexpr int kFitTypeConstant = 0;
constexpr int kFitTypePower = 1;

struct FitChoice {
    int fitType = kFitTypePower;  // 1 power law, any other value a constant
    bool entireProfile = true;    // fit to the whole measured layer, else to a range of cells
    double exponent = 1.0 / 6.0;
    int cells = 1;                // cells of the range, counted from the surface or from the bed
};

// The top and bottom fits the extrapolation settings ask for, read in this one place for the
// computation and for every text that describes it. The keys count the other way round from
// what their names suggest: `SameTopBottom` 0 is "Same Top and Bottom" (the bottom takes the
// top's fit type, range choice, exponent and cell count), 1 "Independent Top and Bottom";
// `TopEntireProfile` and `BottEntireProfile` 0 are "Use entire profile", 1 "Use range of
// cells".
struct ExtrapolationChoice {
    bool sameTopBottom = true;
    FitChoice top, bottom;
};
ExtrapolationChoice ExtrapolationOf(const ProcessingSettings& settings);

// The column as the fits see it, heights above the bed and depths below the surface in m.
struct FitColumn {
    double depth = 0.0;       // H
    double topEdge = 0.0;     // D1
    double bottomEdge = 0.0;  // D2
    double topRangeThickness = 0.0;     // tT
    double bottomRangeThickness = 0.0;  // tB
    double firstCellDepth = 0.0;
    double lastCellDepth = 0.0;
    Vector2 measuredMean;     // cm/s
    Vector2 topRangeMean;
    Vector2 bottomRangeMean;
};

struct LayerFit {
    Vector2 mean;                        // cm/s; missing when its input is missing
    double ratio = MissingValue;         // layer integral over fit-zone integral
    std::array<Vector2, 10> layers{};    // sub-layer velocities, cm/s
    std::array<double, 10> layerDepth{};  // sub-layer centres below the surface, m
};

LayerFit FitTopLayer(const FitChoice& choice, const FitColumn& column);
LayerFit FitBottomLayer(const FitChoice& choice, const FitColumn& column);

// z^p, with z taken as 0 within 1e-4 of 0 (rounding must not make a height at the bed
// negative).
double SnappedPower(double z, double p);

}  // namespace rm
