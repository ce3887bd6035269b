// Result codes of GetProfileValue: the mean depth (47), the working values of the profile under
// computation (layer discharge 55 and 56, layer depth 59), the echo sounder depth (60) and the
// ProcessedProfile of the slot (57, 61 to 64, 70, 71).

#include <cmath>

#include "processing/boat_speed.h"
#include "processing/processing_inputs.h"
#include "processing/profile_value_parts.h"
#include "processing/vector_direction.h"

namespace rm {

namespace {
template <size_t N>
DisplayValue WorkingArray(const std::array<float, N>& values, int cell, Quantity quantity) {
    if (cell < 0 || static_cast<size_t>(cell) >= N) return {};
    return {values[static_cast<size_t>(cell)], quantity};
}

// Depth-averaged water speed, m/s.
double WaterSpeed(const ProcessedProfile& p) {
    if (!(p.MeanEast < MissingValueF && p.MeanNorth < MissingValueF)) return MissingValue;
    return std::sqrt(double(p.MeanEast) * p.MeanEast + double(p.MeanNorth) * p.MeanNorth) * 0.01;
}

DisplayValue MeanVelocity(const ProcessedProfile& p, int component) {
    switch (component) {
        case 0: return {p.MeanEast, Quantity::Velocity};
        case 1: return {p.MeanNorth, Quantity::Velocity};
        case kComponentMagnitude: return {VectorMagnitude(p.MeanEast, p.MeanNorth), Quantity::Velocity};
        case kComponentDirection: return {VectorDirection(p.MeanEast, p.MeanNorth), Quantity::None};
        default: return {};
    }
}
}  // namespace

std::optional<DisplayValue> ResultCodeValue(const ProcessingContext& ctx, int code, int component,
                                            int coordinateSystem, int slot, int cell) {
    const SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    const ProcessedProfile& p = results.processed;
    const ProfileWorkingValues& w = ctx.working;
    switch (code) {
        case 47: return DisplayValue{results.meanDepth, Quantity::Length};
        case 55: return WorkingArray(w.LayerQ, cell, Quantity::Discharge);
        case 56: return WorkingArray(w.CellQ, cell, Quantity::Discharge);
        case 59: return WorkingArray(w.LayerDepth, cell, Quantity::Length);
        case 57: return DisplayValue{WaterSpeed(p), Quantity::Speed};
        case 60: return DisplayValue{results.echoDepth, Quantity::Length};
        case 61: return DisplayValue{p.TotalQ, Quantity::Discharge};
        case 62:
            return DisplayValue{FileHasBottomTrack(ctx.data) ? p.VelocityError : 0.0, Quantity::Velocity};
        case 63: return MeanVelocity(p, component);
        case 64: return DisplayValue{coordinateSystem == kCoordEnu ? p.QualityIndex : 0.0, Quantity::None};
        case 70: return DisplayValue{BoatSpeed(ctx, slot), Quantity::Speed};
        case 71: {
            const double boat = BoatSpeed(ctx, slot);
            const double water = WaterSpeed(p);
            const bool usable = boat < MissingValue && water < MissingValue && water > 0.0;
            return DisplayValue{usable ? boat / water : 0.0, Quantity::None};
        }
        default: return std::nullopt;
    }
}

}  // namespace rm
