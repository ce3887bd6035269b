#include "processing/layer_display.h"

#include <cmath>

namespace rm {

namespace {
void Put(std::array<float, kLayerCount>& values, int index, double value) {
    if (index >= 0 && index < kLayerCount) values[static_cast<size_t>(index)] = static_cast<float>(value);
}

// The measured layer's power law u(z) ~ z^(p - 1) through its mean, averaged over the water from
// height a down to height b above the bed and taken as a velocity over `thickness`. The power
// of the lower height is kept, since the next cell's upper height is the same number.
class PowerProfile {
public:
    explicit PowerProfile(const LayerDisplayInputs& in)
        : mean_(in.measuredMean),
          p_(static_cast<double>(in.topExponent) + 1.0),
          pw_(std::pow(in.topEdge, p_) - std::pow(in.bottomEdge, p_)),
          layer_(in.topEdge - in.bottomEdge) {}

    Vector2 Velocity(double a, double b, double thickness) {
        const double powerA = a == lastHeight_ ? lastPower_ : SnappedPower(a, p_);
        lastHeight_ = b;
        lastPower_ = SnappedPower(b, p_);
        const double r = ((powerA - lastPower_) / pw_) / thickness;
        return Scaled(mean_, layer_ * r);
    }

private:
    Vector2 mean_;
    double p_, pw_, layer_;
    double lastHeight_ = std::nan(""), lastPower_ = 0.0;
};

void FillFitLayers(const LayerDisplayInputs& in, ProfileWorkingValues& out) {
    const int bottomStart = 10 + in.c + in.w;
    for (int k = 0; k < kFitLayers; ++k) {
        const size_t i = static_cast<size_t>(k);
        const Vector2& top = in.top.layers[i];
        const Vector2& bottom = in.bottom.layers[i];
        out.TopLayerEast[i] = static_cast<float>(top.East);
        out.TopLayerNorth[i] = static_cast<float>(top.North);
        out.BottomLayerEast[i] = static_cast<float>(bottom.East);
        out.BottomLayerNorth[i] = static_cast<float>(bottom.North);
        Put(out.LayerDepth, k, in.top.layerDepth[i]);
        Put(out.LayerQ, k, in.q.PerMetre(top));
        Put(out.LayerDepth, bottomStart + k, in.bottom.layerDepth[i]);
        Put(out.LayerQ, bottomStart + k, in.q.PerMetre(bottom));
    }
}

void FillShallowCell(const LayerDisplayInputs& in, PowerProfile& law, ProfileWorkingValues& out) {
    const CellGeometry& g = in.geometry;
    out.ShallowCellQ = in.q(in.shallow, g.shallow.cellSize);
    if (in.c > 0) out.GapQ = in.q(in.gapVelocity, g.CellTop() - g.ShallowBottom());
    const double a = in.depth - g.ShallowTop(), b = in.depth - g.ShallowBottom();
    Put(out.LayerQ, 10, in.q.PerMetre(law.Velocity(a, b, g.shallow.cellSize)));
    Put(out.LayerDepth, 10, g.ShallowCentre());
}

void FillCells(const LayerDisplayInputs& in, PowerProfile& law, ProfileWorkingValues& out) {
    const CellGeometry& g = in.geometry;
    for (int j = 0; j < in.cellCount && j < kMaxCells; ++j) {
        const size_t i = static_cast<size_t>(j);
        const float east = in.velocity[0][i], north = in.velocity[1][i];
        if (!(east < MissingValueF && north < MissingValueF)) continue;
        Put(out.CellQ, j, in.q(MakeVector(east, north), g.cell));
        if (j >= in.c) continue;
        const double a = in.depth - ((j - 0.5) * g.cell + g.CellCentre());
        const double b = in.depth - ((j + 0.5) * g.cell + g.CellCentre());
        Put(out.LayerQ, 10 + in.w + j, in.q.PerMetre(law.Velocity(a, b, g.cell)));
        Put(out.LayerDepth, 10 + in.w + j, j * g.cell + g.CellCentre());
    }
}
}  // namespace

void FillLayerDisplay(const LayerDisplayInputs& in, ProfileWorkingValues& out) {
    FillFitLayers(in, out);
    PowerProfile law(in);
    if (in.w > 0) FillShallowCell(in, law, out);
    FillCells(in, law, out);
}

}  // namespace rm
