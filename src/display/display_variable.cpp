#include "display/display_variable.h"

#include <algorithm>
#include <cmath>

#include "processing/display_units.h"
#include "processing/profile_value_parts.h"
#include "processing/vector_direction.h"
#include "processing/velocity_chain.h"

namespace rm {

namespace {
constexpr int kCodeVelocity = 1;
constexpr int kCodeAmplitude = 2;
constexpr int kCodeStdDev = 3;
constexpr int kCodeSnr = 4;

bool IsVelocity(DisplayVariable v) { return v == DisplayVariable::Velocity || v == DisplayVariable::Velocity3D; }

// One component of a velocity vector in cm/s (the direction in degrees).
double VelocityComponentOf(const VelocityVector& v, int rows, DisplayVariable variable, int component) {
    auto present = [](float x) { return x < MissingValueF; };
    if (variable == DisplayVariable::Velocity3D) {
        if (rows < 3 || !present(v[0]) || !present(v[1]) || !present(v[2])) return MissingValue;
        return std::sqrt(double(v[0]) * v[0] + double(v[1]) * v[1] + double(v[2]) * v[2]);
    }
    if (component == kComponentMagnitude) return VectorMagnitude(v[0], v[1]);
    if (component == kComponentDirection) return VectorDirection(v[0], v[1]);
    std::array<double, 4> values{};
    for (size_t i = 0; i < values.size(); ++i) values[i] = v[i];
    return RowComponent(values, rows, component);
}

double VelocityValueForDisplay(double value, DisplayVariable variable, int component, int unitSystem) {
    if (variable == DisplayVariable::Velocity && component == kComponentDirection) return value;
    return VelocityForDisplay(value, unitSystem);
}
}  // namespace

std::optional<std::string> ContourVariableName(DisplayVariable variable) {
    switch (variable) {
        case DisplayVariable::Velocity: return std::string("Velocity");
        case DisplayVariable::Amplitude: return std::string("Amplitude");
        case DisplayVariable::Snr: return std::string("SNR");
        case DisplayVariable::Velocity3D: return std::string("Velocity-3D");
        case DisplayVariable::StdDev: break;
    }
    return std::nullopt;
}

std::string GraphVariableName(DisplayVariable variable) {
    switch (variable) {
        case DisplayVariable::Velocity: return "Velocity";
        case DisplayVariable::Amplitude: return "Amplitude";
        case DisplayVariable::StdDev: return "Std Dev";
        case DisplayVariable::Snr: return "SNR";
        case DisplayVariable::Velocity3D: return "Velocity - 3D";
    }
    return "";
}

std::optional<DisplayVariable> ContourVariableOfCode(int code) {
    switch (code) {
        case 0: return DisplayVariable::Velocity;
        case 1: return DisplayVariable::Amplitude;
        case 2: return DisplayVariable::Snr;
        case 3: return DisplayVariable::Velocity3D;
        default: return std::nullopt;
    }
}

int ContourVariableCode(DisplayVariable variable) {
    switch (variable) {
        case DisplayVariable::Velocity: return 0;
        case DisplayVariable::Amplitude: return 1;
        case DisplayVariable::Snr: return 2;
        case DisplayVariable::Velocity3D: return 3;
        case DisplayVariable::StdDev: break;
    }
    return 0;
}

std::string ComponentName(int component) {
    switch (component) {
        case 0: return " Beam1/X/E";
        case 1: return " Beam2/Y/N";
        case 2: return " Beam3/Z/U";
        case 3: return " Beam4";
        case kComponentMean: return " Mean";
        case kComponentMagnitude: return " Speed";
        case kComponentDirection: return " Direction";
        default: return "";
    }
}

bool ComponentAllowed(DisplayVariable variable, int component) {
    if (component < 0 || component > kComponentDirection) return false;
    if (component >= kComponentMagnitude) return variable == DisplayVariable::Velocity;
    return true;
}

std::string ValueUnitText(DisplayVariable variable, int component, int unitSystem) {
    switch (variable) {
        case DisplayVariable::Velocity:
            if (component == kComponentDirection) return "deg";
            [[fallthrough]];
        case DisplayVariable::Velocity3D:
        case DisplayVariable::StdDev: return IsEnglish(unitSystem) ? "ft/s" : "m/s";
        case DisplayVariable::Amplitude: return "counts";
        case DisplayVariable::Snr: return "dB";
    }
    return "";
}

std::string LengthUnitText(int unitSystem) { return IsEnglish(unitSystem) ? "ft" : "m"; }

double LengthForDisplay(double metres, int unitSystem) {
    return ToDisplayUnits(metres, Quantity::Length, unitSystem);
}

double VelocityForDisplay(double cmPerSecond, int unitSystem) {
    if (cmPerSecond >= MissingValue) return cmPerSecond;
    if (IsEnglish(unitSystem)) return ToDisplayUnits(cmPerSecond, Quantity::Velocity, unitSystem);
    return cmPerSecond * 0.01;
}

void ReadCellColumn(const ProcessingContext& ctx, DisplayVariable variable, int component, int coordinateSystem,
                    int reference, int slot, CellColumn& out) {
    const ProfileRecord& record = ctx.Raw(slot);
    const int units = ctx.settings.UnitSystem;
    out.cells = std::max(0, std::min(record.cells, kMaxCells));
    out.shallow = MissingValue;
    if (IsVelocity(variable)) {
        const VelocityChain chain(ctx, slot, coordinateSystem, reference);
        for (int i = 0; i < out.cells; ++i) {
            const double v = VelocityComponentOf(chain.Cell(i), chain.Rows(), variable, component);
            out.value[static_cast<size_t>(i)] = VelocityValueForDisplay(v, variable, component, units);
        }
        const double s = VelocityComponentOf(chain.Shallow(), chain.Rows(), variable, component);
        out.shallow = VelocityValueForDisplay(s, variable, component, units);
        return;
    }
    const int code = variable == DisplayVariable::Amplitude ? kCodeAmplitude
                     : variable == DisplayVariable::StdDev  ? kCodeStdDev
                                                            : kCodeSnr;
    for (int i = 0; i < out.cells; ++i) {
        const std::optional<DisplayValue> v = CellCodeValue(ctx, code, component, coordinateSystem, reference, slot, i);
        double value = v ? v->value : MissingValue;
        if (variable == DisplayVariable::StdDev) value = VelocityForDisplay(value, units);
        out.value[static_cast<size_t>(i)] = value;
    }
}

}  // namespace rm
