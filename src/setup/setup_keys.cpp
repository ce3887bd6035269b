#include "setup/setup_keys.h"

#include <cmath>

#include "setup/setup_text.h"

namespace rm {

const std::vector<SetupKey>& SetupKeys() {
    using namespace setup_nodes;
    static const std::vector<SetupKey> keys = {
        {kSetup, "DeploymentName", VarType::Text, true},
        {kSetup, "CommentLine1", VarType::Text, true},
        {kSetup, "CommentLine2", VarType::Text, true},
        {kSetup, "CommentLine3", VarType::Text, true},
        {kSetup, "AveragingInterval", VarType::I16, true},
        {kSetup, "ProfilingInterval", VarType::I16, true},
        {kSetup, "FixedMountingDepthInCm", VarType::I16, true},
        {kSetup, "TemperatureMode", VarType::U8, true},
        {kSetup, "UserTemperature", VarType::Double, true},
        {kSetup, "UserSalinity", VarType::Double, true},
        {kSetup, "NumberOfCells", VarType::I16, true},
        {kSetup, "CellSizeInCm", VarType::I16, true},
        {kSetup, "BlankingDistanceInCm", VarType::I16, true},
        {kSetup, "CoordinateSystem", VarType::U8, true},
        {kSetup, "RecorderEnabled", VarType::U8, true},
        {kSetup, "EnableInternalGps", VarType::U8, true},
        {kSetup, "VerifyConnections", VarType::U8, true},
        {kSetup, "PCMode", VarType::U8, false},
        {kOther, "EstimatedDepth", VarType::Double, true},
        {kOther, "MagneticDeclination", VarType::Double, true},
        {kOther, "EchoSounderMountingDepthInCm", VarType::I16, true},
        {kOther, "MountingMethod", VarType::I16, true},
        {kOther, "AutoMountingDepthInCm", VarType::I16, true},
        {kOther, "AutoFileName", VarType::I16, true},
        {kOther, "UnitSystem", VarType::I16, true},
        {kOther, "MinCellSizeInCm", VarType::Double, false},
        {kOther, "MaxCellSizeInCm", VarType::Double, false},
        {kOther, "MaxNumberOfCells", VarType::I16, false},
        {kOptions, "BottomTrack", VarType::U8, true},
        {kOptions, "BottomTrackInstalled", VarType::U8, false},
        {kOper, "MinBlankLengthInCm", VarType::U8, false},
        {kOper, "OperatingRangeInMeters", VarType::U8, false},
        {kConf, "SystemFreq", VarType::U8, false},
        {kConf, "TemperatureInstalled", VarType::U8, false},
    };
    return keys;
}

const SetupKey* FindSetupKey(const std::string& name) {
    for (const SetupKey& key : SetupKeys())
        if (SameKeyName(key.name, name)) return &key;
    return nullptr;
}

const Variant* SetupTreeReader::Find(const char* node, const char* key) const {
    const NodeRef child = system_.ItemChild(system_.FindIndex(node));
    const int index = child.FindIndex(key);
    if (index < 0) return nullptr;
    const Variant& value = child.ItemValue(index);
    return value.IsEmptyOrNull() ? nullptr : &value;
}

double SetupTreeReader::Number(const char* node, const char* key, double def) const {
    const Variant* value = Find(node, key);
    return value ? value->As<double>() : def;
}

std::string SetupTreeReader::Text(const char* node, const char* key) const {
    const Variant* value = Find(node, key);
    return value ? value->As<std::string>() : std::string();
}

bool SetupTreeReader::Has(const char* node, const char* key) const { return Find(node, key) != nullptr; }

int SetupTreeReader::UnitSystem() const {
    const double value = Number(setup_nodes::kOther, "UnitSystem", 1.0);
    // Anything that is not a plain small number is simply "not 1", that is English units.
    return std::isfinite(value) && std::fabs(value) < 1e6 ? static_cast<int>(value) : 0;
}

bool SetupTreeReader::Metric() const { return IsMetricUnitSystem(UnitSystem()); }

}  // namespace rm
