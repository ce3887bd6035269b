#include "setup/field_entry.h"

#include <cmath>

#include "setup/setup_text.h"

namespace rm {

namespace {

struct ValueSet {
    const char* key;
    int least;
    int greatest;
};

// Switches and enumerations with their values: coordinate system 0 BEAM, 1 XYZ, 2 ENU; bottom
// track 0 off, 1 on, 2 with the shallow-water ping; unit system 0 English, 1 metric.
constexpr ValueSet kValueSets[] = {
    {"CoordinateSystem", 0, 2}, {"RecorderEnabled", 0, 1}, {"EnableInternalGps", 0, 1},
    {"VerifyConnections", 0, 1}, {"AutoFileName", 0, 1},   {"BottomTrack", 0, 2},
    {"UnitSystem", 0, 1},
};

}  // namespace

std::string CheckFieldEntry(const SetupKey& key, const Variant& value, const NodeRef& system) {
    const std::string name = key.name;
    if (key.type == VarType::Text) return {};
    const double number = value.As<double>();
    if (!std::isfinite(number)) return name + " must be a finite number.";

    if (name == "AveragingInterval") {
        const bool pulseCoherent = SetupTreeReader(system).Number(setup_nodes::kSetup, "PCMode") != 0.0;
        const double least = pulseCoherent ? 0.0 : 5.0;
        if (number < least || number > 43200.0) return "Averaging Interval out of range.\nValue must be between 5.0 and 43200 (s)";
    }
    if (name == "UserSalinity" && (number < 0.0 || number > 60.0))
        return "Water Salinity out of range.\nValue must be between 0 and 60";
    for (const ValueSet& set : kValueSets)
        if (name == set.key && (number < set.least || number > set.greatest))
            return FormatText("%s must be between %d and %d.", set.key, set.least, set.greatest);
    return {};
}

}  // namespace rm
