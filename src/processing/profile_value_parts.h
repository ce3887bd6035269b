#pragma once
// The groups of variable codes behind GetProfileValue: cell values (velocity, amplitude,
// standard deviation, SNR and the shallow-water cell), the sensors of the profile header and
// the extra blocks, and the results of processing. Each returns the value in metric units with
// its quantity, or nothing for a code that is not its own.

#include <array>
#include <optional>

#include "processing/display_units.h"
#include "processing/processing_context.h"

namespace rm {

struct DisplayValue {
    double value = MissingValue;
    Quantity quantity = Quantity::None;
};

// Components of a vector or per-beam value.
constexpr int kComponentMean = 4;
constexpr int kComponentMagnitude = 5;
constexpr int kComponentDirection = 6;

// Codes 1 to 4, 50 to 54, 40 and 41.
std::optional<DisplayValue> CellCodeValue(const ProcessingContext& ctx, int code, int component, int coordinateSystem,
                                          int reference, int slot, int cell);
// Codes 5 to 23 and 30 to 38.
std::optional<DisplayValue> SensorCodeValue(const ProcessingContext& ctx, int code, int component, int slot);
// Codes 47, 55 to 64, 70 and 71.
std::optional<DisplayValue> ResultCodeValue(const ProcessingContext& ctx, int code, int component,
                                            int coordinateSystem, int slot, int cell);

// Component 0 to 3 of the rows, 4 their mean over the rows present (first `rows` of them).
double RowComponent(const std::array<double, 4>& rows, int count, int component);

}  // namespace rm
