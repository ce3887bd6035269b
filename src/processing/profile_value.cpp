// GetProfileValue: the one accessor by variable code for displays and exports. The groups of
// codes live in profile_value_cells.cpp, profile_value_sensors.cpp and
// profile_value_results.cpp; here they are tried in turn and the value is brought into the
// display units of the unit system.

#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"
#include "processing/profile_value_parts.h"

namespace rm {

double RowComponent(const std::array<double, 4>& rows, int count, int component) {
    if (component >= 0 && component < count) return rows[static_cast<size_t>(component)];
    if (component != kComponentMean) return MissingValue;
    double sum = 0.0;
    int n = 0;
    for (int i = 0; i < count; ++i) {
        if (rows[static_cast<size_t>(i)] < MissingValue) {
            sum += rows[static_cast<size_t>(i)];
            ++n;
        }
    }
    return n > 0 ? sum / n : MissingValue;
}

double GetProfileValue(const ProcessingContext& ctx, int code, int component, int coordinateSystem, int reference,
                       int slot, int cell) {
    if (ctx.slots.empty()) return MissingValue;
    slot = NormalSlot(ctx, slot);
    std::optional<DisplayValue> v = CellCodeValue(ctx, code, component, coordinateSystem, reference, slot, cell);
    if (!v) v = SensorCodeValue(ctx, code, component, slot);
    if (!v) v = ResultCodeValue(ctx, code, component, coordinateSystem, slot, cell);
    if (!v) return MissingValue;
    return ToDisplayUnits(v->value, v->quantity, ctx.settings.UnitSystem);
}

}  // namespace rm
