// Cell codes of GetProfileValue: velocity (1, 50, 54) through the velocity chain in the asked
// coordinate system and reference, amplitude (2, 51), velocity standard deviation (3, 52),
// signal-to-noise ratio (4, 53), and the shallow-water cell's velocity (40) and correlation
// (41). Component 0 to 3 is the beam or axis, 4 the mean over beams, 5 the magnitude and 6 the
// direction of a velocity.

#include "processing/processing_inputs.h"
#include "processing/profile_value_parts.h"
#include "processing/shallow_water_cell.h"
#include "processing/signal_to_noise.h"
#include "processing/vector_direction.h"
#include "processing/velocity_chain.h"

namespace rm {

namespace {
// Raw standard deviations are in the raw velocity unit (mm/s); the display shows cm/s.
constexpr double kStdDevFactor = 0.1;
constexpr uint8_t kMissingStdDev = 255;

DisplayValue VelocityComponent(const VelocityVector& v, int rows, int component) {
    if (component == kComponentMagnitude) return {VectorMagnitude(v[0], v[1]), Quantity::Velocity};
    if (component == kComponentDirection) return {VectorDirection(v[0], v[1]), Quantity::None};
    std::array<double, 4> values{};
    for (size_t i = 0; i < values.size(); ++i) values[i] = v[i];
    return {RowComponent(values, rows, component), Quantity::Velocity};
}

template <typename PerBeam>
double BeamValue(const ProfileRecord& record, int component, PerBeam perBeam) {
    std::array<double, 4> values{};
    const int beams = BeamCount(record);
    for (int beam = 0; beam < beams; ++beam) values[static_cast<size_t>(beam)] = perBeam(beam);
    return RowComponent(values, beams, component);
}
}  // namespace

std::optional<DisplayValue> CellCodeValue(const ProcessingContext& ctx, int code, int component, int coordinateSystem,
                                          int reference, int slot, int cell) {
    const ProfileRecord& record = ctx.Raw(slot);
    const bool cellInRange = cell >= 0 && cell < record.cells;
    switch (code) {
        case 1:
        case 50:
        case 54: {
            if (!cellInRange) return DisplayValue{};
            const VelocityChain chain(ctx, slot, coordinateSystem, reference);
            return VelocityComponent(chain.Cell(cell), chain.Rows(), component);
        }
        case 40: {
            const VelocityChain chain(ctx, slot, coordinateSystem, reference);
            return VelocityComponent(chain.Shallow(), chain.Rows(), component);
        }
        case 2:
        case 51:
            if (!cellInRange) return DisplayValue{};
            return DisplayValue{BeamValue(record, component, [&](int b) { return double(record.Amplitude(b, cell)); }),
                                Quantity::None};
        case 3:
        case 52:
            if (!cellInRange) return DisplayValue{};
            return DisplayValue{BeamValue(record, component,
                                          [&](int b) {
                                              const uint8_t sd = record.StdError(b, cell);
                                              return sd == kMissingStdDev ? MissingValue : sd * kStdDevFactor;
                                          }),
                                Quantity::Velocity};
        case 4:
        case 53:
            if (!cellInRange) return DisplayValue{};
            return DisplayValue{BeamValue(record, component, [&](int b) { return CellSnr(record, b, cell); }),
                                Quantity::None};
        case 41: {
            if (!record.hasShallowWater || !ctx.data.derived.hasShallowWaterBlock) return DisplayValue{};
            const std::array<uint8_t, 4> correlation = ShallowBlockCorrelations(record);
            return DisplayValue{
                BeamValue(record, component, [&](int b) { return double(correlation[static_cast<size_t>(b)]); }),
                Quantity::None};
        }
        default: return std::nullopt;
    }
}

}  // namespace rm
