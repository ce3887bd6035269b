#include "sim/virtual_river.h"

#include <algorithm>
#include <cmath>

namespace rm::sim {

namespace {
constexpr double kDegToRad = 0.017453292519943295;

bool Finite(double v) { return std::isfinite(v); }
}  // namespace

std::string VirtualRiver::Validate() const {
    if (!Finite(widthM) || widthM <= 0.0) return "the river width must be a positive number of metres";
    // Bottom-track depths are 16-bit centimetres.
    if (!Finite(maxDepthM) || maxDepthM <= 0.0 || maxDepthM > 300.0)
        return "the maximum depth must be above 0 and at most 300 m";
    if (!Finite(bedShapeExponent) || bedShapeExponent < 1.0) return "the bed shape exponent must be 1 or more";
    if (!Finite(maxVelocityMs) || maxVelocityMs < 0.0 || maxVelocityMs > 10.0)
        return "the maximum water velocity must be between 0 and 10 m/s";
    if (!Finite(velocityDepthExponent) || velocityDepthExponent < 0.0 || velocityDepthExponent > 5.0)
        return "the velocity depth exponent must be between 0 and 5";
    if (!Finite(verticalExponent) || verticalExponent <= 0.0 || verticalExponent > 1.0)
        return "the vertical profile exponent must be above 0 and at most 1";
    if (!Finite(flowAzimuthDeg)) return "the flow azimuth must be a number of degrees";
    return {};
}

double VirtualRiver::Depth(double y) const {
    const double s = std::fabs(2.0 * y / widthM - 1.0);
    if (!(s < 1.0)) return 0.0;
    return maxDepthM * (1.0 - std::pow(s, bedShapeExponent));
}

double VirtualRiver::MeanVelocity(double y) const {
    const double h = Depth(y);
    if (h <= 0.0) return 0.0;
    return maxVelocityMs * std::pow(h / maxDepthM, velocityDepthExponent);
}

double VirtualRiver::VelocityAtHeight(double y, double z) const {
    const double h = Depth(y);
    if (h <= 0.0) return 0.0;
    const double zeta = std::clamp(z, 0.0, h) / h;
    return (verticalExponent + 1.0) * MeanVelocity(y) * std::pow(zeta, verticalExponent);
}

double VirtualRiver::LayerUnitDischarge(double y, double zLow, double zHigh) const {
    const double h = Depth(y);
    if (h <= 0.0) return 0.0;
    const double z1 = std::clamp(zLow, 0.0, h);
    const double z2 = std::clamp(zHigh, 0.0, h);
    if (z2 <= z1) return 0.0;
    // Integral of (a + 1) U (z / h)^a dz = U h [(z / h)^(a + 1)] between the two heights.
    const double p = verticalExponent + 1.0;
    return MeanVelocity(y) * h * (std::pow(z2 / h, p) - std::pow(z1 / h, p));
}

double VirtualRiver::LayerMeanVelocity(double y, double zLow, double zHigh) const {
    const double h = Depth(y);
    const double z1 = std::clamp(zLow, 0.0, h);
    const double z2 = std::clamp(zHigh, 0.0, h);
    if (z2 <= z1) return VelocityAtHeight(y, z1);
    return LayerUnitDischarge(y, z1, z2) / (z2 - z1);
}

int VirtualRiver::PositionsOfDepth(double depth, double out[2]) const {
    if (!(depth > 0.0) || depth > maxDepthM) return 0;
    const double s = std::pow(1.0 - depth / maxDepthM, 1.0 / bedShapeExponent);
    const double half = 0.5 * widthM;
    if (s == 0.0) {
        out[0] = half;
        return 1;
    }
    out[0] = half * (1.0 - s);
    out[1] = half * (1.0 + s);
    return 2;
}

EnVector VirtualRiver::Downstream() const {
    const double a = flowAzimuthDeg * kDegToRad;
    return {std::sin(a), std::cos(a)};
}

EnVector VirtualRiver::TowardRightBank() const {
    // Downstream turned clockwise by a quarter turn.
    const double a = flowAzimuthDeg * kDegToRad;
    return {std::cos(a), -std::sin(a)};
}

EnVector VirtualRiver::PointAt(double y, double x) const { return y * TowardRightBank() + x * Downstream(); }

}  // namespace rm::sim
