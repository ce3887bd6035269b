#include "display/contour_texts.h"

#include <cstdarg>
#include <cstdio>

#include "data/kvr_data.h"
#include "processing/display_units.h"

namespace rm {

namespace {

std::string Format(const char* format, ...) {
    char text[160];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    return text;
}

// A value with its format, or "--" when it is missing.
std::string ValueText(const char* format, double value) {
    return value < MissingValue ? Format(format, value) : std::string("--");
}

struct CellValues {
    double value = MissingValue;      // of the contour's variable and component
    double direction = MissingValue;  // velocities
};

CellValues ValuesAt(const ProcessedWindow& window, const ContourViewState& view, int item, int cell) {
    CellValues out;
    CellColumn column;
    window.ReadColumn(item, view.variable, view.component, column);
    const bool valid = cell < window.ValidCells(item) && cell < column.cells;
    if (valid) out.value = column.value[static_cast<size_t>(cell)];
    if (valid && (view.variable == DisplayVariable::Velocity || view.variable == DisplayVariable::Velocity3D)) {
        window.ReadColumn(item, DisplayVariable::Velocity, kComponentDirection, column);
        const double direction = column.value[static_cast<size_t>(cell)];
        // The direction of a missing vector is 0; it shows "--" with the missing speed.
        out.direction = out.value < MissingValue ? direction : MissingValue;
    }
    return out;
}

// The variable's part of the status line or of the tool tip (`separator` between the lines).
std::string VariableText(const ContourViewState& view, const CellValues& v, bool english, const char* separator) {
    const char* velocityUnit = english ? "ft/s" : "m/s";
    switch (view.variable) {
        case DisplayVariable::Velocity:
        case DisplayVariable::Velocity3D:
            if (view.variable == DisplayVariable::Velocity && view.component == kComponentDirection)
                return "Dir: " + ValueText("%.1f", v.value);
            return "Vel: " + ValueText("%.2f", v.value) + " (" + velocityUnit + ")" + separator + "Dir: " +
                   ValueText("%.1f", v.direction);
        case DisplayVariable::Amplitude: return "Amp: " + ValueText("%.0f", v.value) + " (counts)";
        case DisplayVariable::StdDev: return "StdDev: " + ValueText("%.2f", v.value) + " (" + velocityUnit + ")";
        case DisplayVariable::Snr: return "SNR: " + ValueText("%.0f", v.value) + " (dB)";
    }
    return "";
}

}  // namespace

std::optional<ContourPoint> ContourPointAt(const ContourPicture& picture, const QRect& rect, const QPoint& point) {
    if (!rect.contains(point)) return std::nullopt;
    const std::optional<int> item = picture.ItemAt(rect, point.x());
    if (!item) return std::nullopt;
    ContourPoint p;
    p.item = *item;
    p.depth = picture.DepthAt(rect, point.y());
    p.cell = picture.CellAt(*item, p.depth);
    return p;
}

std::string ContourStatusText(const ProcessedWindow& window, const ContourViewState& view, const ContourPoint& point) {
    const bool english = IsEnglish(window.UnitSystem());
    std::string text = Format(english ? "Profile #: %d  Depth: %.2f(ft)   " : "Profile #: %d  Depth: %.2f (m)   ",
                              point.item, point.depth);
    if (!point.cell || !window.Holds(point.item)) return text;
    return text + VariableText(view, ValuesAt(window, view, point.item, *point.cell), english, "  ");
}

std::string ContourToolTipText(const ProcessedWindow& window, const ContourViewState& view, const ContourPoint& point) {
    const bool english = IsEnglish(window.UnitSystem());
    std::string text = Format("Profile: %d", point.item);
    if (!window.Holds(point.item)) return text;
    const ProfileTime t = TimeOfHeader(window.Raw(point.item).header);
    text += Format("\nDate/Time: %04d/%02d/%02d %02d:%02d:%02d", t.year, t.month, t.day, t.hour, t.minute, t.second);
    if (!point.cell) return text;
    const int cell = *point.cell;
    const double range = window.CellRange(cell);
    text += Format("\nCell: %d", cell + 1);
    text += Format(english ? "\nRange: %.2f (ft)" : "\nRange: %.2f (m)", range);
    text += "\n" + VariableText(view, ValuesAt(window, view, point.item, cell), english, "\n");
    return text;
}

}  // namespace rm
