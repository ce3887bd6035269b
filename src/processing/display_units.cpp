#include "processing/display_units.h"

#include "processing/processing_types.h"

namespace rm {

double ToDisplayUnits(double value, Quantity quantity, int unitSystem) {
    if (!IsEnglish(unitSystem) || value == MissingValue) return value;
    switch (quantity) {
        case Quantity::Velocity: return value * kFeetPerMetre * 0.01;
        case Quantity::Speed:
        case Quantity::Length: return value * kFeetPerMetre;
        case Quantity::Temperature: return 1.8 * value + 32.0;
        case Quantity::Pressure: return value * kPsiPerDecibar;
        case Quantity::Discharge: return value * kFeetPerMetre * kFeetPerMetre * kFeetPerMetre;
        case Quantity::None: break;
    }
    return value;
}

}  // namespace rm
