#include "processing/power_fit.h"

#include <cmath>

namespace rm {

namespace {
constexpr double kSnap = 0.0001;

// The mean of the power law over a sub-layer from height a down to height b, given the factor
// U (zone thickness) / P that ties it to the fit zone.
Vector2 SubLayerVelocity(const Vector2& u, double zone, double P, double a, double b, double p, double h) {
    const double share = (SnappedPower(a, p) - SnappedPower(b, p)) / P;
    return MakeVector(u.East * zone * share / h, u.North * zone * share / h);
}

void FillLayers(LayerFit& fit, const Vector2& v) {
    for (Vector2& layer : fit.layers) layer = v;
}
}  // namespace

double SnappedPower(double z, double p) {
    if (std::fabs(z) <= kSnap) z = 0.0;
    return std::pow(z, p);
}

LayerFit FitTopLayer(const FitChoice& choice, const FitColumn& col) {
    LayerFit fit;
    const double H = col.depth, D1 = col.topEdge;
    if (choice.fitType != kFitTypePower) {
        fit.mean = col.topRangeMean;
        fit.ratio = (H - D1) / H;
        FillLayers(fit, col.topRangeMean);
        for (int k = 0; k < 10; ++k) fit.layerDepth[static_cast<size_t>(k)] = (k + 0.5) * col.firstCellDepth * 0.1;
        return fit;
    }
    const double p = choice.exponent + 1.0;
    const double h = col.firstCellDepth / 10.0;
    for (int k = 0; k < 10; ++k) fit.layerDepth[static_cast<size_t>(k)] = (k + 0.5) * h;
    const Vector2 u = choice.entireProfile ? col.measuredMean : col.topRangeMean;
    const double zLow = choice.entireProfile ? col.bottomEdge : D1 - col.topRangeThickness;
    const double P = std::pow(D1, p) - std::pow(zLow, p);
    if (P <= 0.0) {
        fit.mean = ZeroVector();
        FillLayers(fit, ZeroVector());
        return fit;
    }
    fit.ratio = (std::pow(H, p) - std::pow(D1, p)) / P;
    if (HoldsMissing(u)) {
        fit.mean = MissingVector();
        FillLayers(fit, MissingVector());
        return fit;
    }
    const double zone = D1 - zLow;
    fit.mean = MakeVector(u.East * zone * fit.ratio / (H - D1), u.North * zone * fit.ratio / (H - D1));
    for (int k = 0; k < 10; ++k) {
        const double a = H - k * h, b = H - (k + 1) * h;
        fit.layers[static_cast<size_t>(k)] = SubLayerVelocity(u, zone, P, a, b, p, h);
    }
    return fit;
}

LayerFit FitBottomLayer(const FitChoice& choice, const FitColumn& col) {
    LayerFit fit;
    const double H = col.depth, D2 = col.bottomEdge;
    const double below = H - col.lastCellDepth;  // from the last measured layer to the bed
    if (choice.fitType != kFitTypePower) {
        fit.mean = col.bottomRangeMean;
        fit.ratio = D2 / H;
        FillLayers(fit, col.bottomRangeMean);
        for (int k = 0; k < 10; ++k) {
            fit.layerDepth[static_cast<size_t>(k)] = (k + 0.5) * below * 0.1 + col.lastCellDepth;
        }
        return fit;
    }
    const double p = choice.exponent + 1.0;
    const double h = below / 10.0;
    for (int k = 0; k < 10; ++k) fit.layerDepth[static_cast<size_t>(k)] = (k + 0.5) * h + col.lastCellDepth;
    const Vector2 u = choice.entireProfile ? col.measuredMean : col.bottomRangeMean;
    const double zUp = choice.entireProfile ? col.topEdge : D2 + col.bottomRangeThickness;
    const double P = std::pow(zUp, p) - std::pow(D2, p);
    if (P <= 0.0) {
        fit.mean = ZeroVector();
        FillLayers(fit, ZeroVector());
        return fit;
    }
    fit.ratio = std::pow(D2, p) / P;
    if (HoldsMissing(u)) {
        fit.mean = MissingVector();
        FillLayers(fit, MissingVector());
        return fit;
    }
    const double zone = zUp - D2;
    fit.mean = MakeVector(u.East * fit.ratio / D2 * zone, u.North * fit.ratio / D2 * zone);
    for (int k = 0; k < 10; ++k) {
        const double a = below - k * h, b = below - (k + 1) * h;
        fit.layers[static_cast<size_t>(k)] = SubLayerVelocity(u, zone, P, a, b, p, h);
    }
    return fit;
}

ExtrapolationChoice ExtrapolationOf(const ProcessingSettings& s) {
    ExtrapolationChoice e;
    e.sameTopBottom = s.SameTopBottom == 0;
    e.top = {s.TopFitType, s.TopEntireProfile == 0, s.TopExponent, s.NumTopCells};
    e.bottom = e.sameTopBottom
                   ? e.top
                   : FitChoice{s.BottomFitType, s.BottEntireProfile == 0, s.BottomExponent, s.NumBottomCells};
    return e;
}

}  // namespace rm
