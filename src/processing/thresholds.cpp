#include "processing/thresholds.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>

#include "processing/display_units.h"
#include "processing/processing_types.h"

namespace rm {

namespace {
constexpr double kMetresToFeet = 3.28084;
constexpr double kPitchRollLimit = 25.0;
constexpr int kPitchCode = 8;
constexpr int kRollCode = 9;
const char* const kTitle = "Threshold input error";

double DisplayFactor(const Threshold& t, int unitSystem) { return IsEnglish(unitSystem) ? t.multiplier : 1.0; }

// Half away from zero, to one decimal.
double RoundToTenth(double v) { return std::round(v * 10.0) * 0.1; }

bool ParseNumber(const std::string& text, double& out) {
    const char* begin = text.c_str();
    char* end = nullptr;
    errno = 0;
    out = std::strtod(begin, &end);
    if (end == begin || errno == ERANGE || !std::isfinite(out)) return false;
    while (*end == ' ' || *end == '\t') ++end;
    return *end == '\0';
}
}  // namespace

const std::array<Threshold, 7>& DefaultThresholds() {
    static const std::array<Threshold, 7> table{{
        {"Data Quality Index", 64, 2.0, 5.0, 1.0},
        {"Boat/Water Speed", 71, 1.0, 2.0, 1.0},
        {"Boat Speed", 70, 2.0, 3.0, kMetresToFeet},
        {"Water Speed", 57, 2.0, 3.0, kMetresToFeet},
        {"Heading", 7, 360.0, 720.0, 1.0},
        {"Pitch", 8, 5.0, 10.0, 1.0},
        {"Roll", 9, 5.0, 10.0, 1.0},
    }};
    return table;
}

std::vector<Threshold> ReadThresholds(const NodeRef& thresholds) {
    std::vector<Threshold> out;
    for (const Threshold& def : DefaultThresholds()) {
        const NodeRef node = thresholds.GetOrCreateChild(def.name);
        Threshold t = def;
        t.variable = node.GetTyped<int32_t>("Variable", def.variable);
        t.warning = node.GetTyped<double>("Warning", def.warning);
        t.alert = node.GetTyped<double>("Alert", def.alert);
        t.multiplier = node.GetTyped<double>("Multiplier", def.multiplier);
        out.push_back(t);
    }
    return out;
}

void StoreThreshold(const NodeRef& thresholds, const Threshold& t) {
    const NodeRef node = thresholds.GetOrCreateChild(t.name);
    node.SetValue("Variable", Variant(static_cast<int32_t>(t.variable)));
    node.SetValue("Warning", Variant(t.warning));
    node.SetValue("Alert", Variant(t.alert));
    node.SetValue("Multiplier", Variant(t.multiplier));
}

DataQualityClass ClassifyValue(double value, const Threshold& t, int unitSystem) {
    if (value == MissingValue || std::isnan(value)) return DataQualityClass::NoValue;
    const double factor = DisplayFactor(t, unitSystem);
    if (value < t.warning * factor) return DataQualityClass::Good;
    if (value < t.alert * factor) return DataQualityClass::Warning;
    return DataQualityClass::Alert;
}

const char* QualityColorKey(DataQualityClass quality) {
    switch (quality) {
        case DataQualityClass::Warning: return "Warning Data";
        case DataQualityClass::Alert: return "Alert Data";
        default: return "Good Data";
    }
}

double ThresholdDisplayValue(double value, const Threshold& t, int unitSystem) {
    return value * DisplayFactor(t, unitSystem);
}

ThresholdEntry CheckThresholdDialog(const Threshold& current, const std::string& warningText,
                                    const std::string& alertText, int unitSystem) {
    ThresholdEntry entry;
    entry.stored = current;
    double warning = 0.0, alert = 0.0;
    if (!ParseNumber(warningText, warning)) {
        entry.check = DialogCheck::Fail("Warning", "Please enter a number.", kTitle);
        return entry;
    }
    if (!ParseNumber(alertText, alert)) {
        entry.check = DialogCheck::Fail("Alert", "Please enter a number.", kTitle);
        return entry;
    }
    const double back = 1.0 / DisplayFactor(current, unitSystem);
    warning = RoundToTenth(warning * back);
    alert = RoundToTenth(alert * back);
    if (current.variable == kPitchCode || current.variable == kRollCode) {
        if (warning >= kPitchRollLimit) {
            entry.check = DialogCheck::Fail("Warning", "The Warning value must be less than 25 degrees.", kTitle);
            return entry;
        }
        if (alert >= kPitchRollLimit) {
            entry.check = DialogCheck::Fail("Alert", "The Alert value must be less than 25 degrees.", kTitle);
            return entry;
        }
    }
    if (!(warning < alert)) {
        entry.check = DialogCheck::Fail("Warning", "The Warning value must be lower than the Alert value.", kTitle);
        return entry;
    }
    entry.stored.warning = warning;
    entry.stored.alert = alert;
    return entry;
}

}  // namespace rm
