#include "setup/apply_setting.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "setup/check_parameter.h"
#include "setup/field_entry.h"
#include "setup/setup_text.h"
#include "setup/tree_undo.h"

namespace rm {

namespace {

std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

struct WholeRange {
    long least;
    long greatest;
};

std::optional<WholeRange> WholeRangeOf(VarType type) {
    if (type == VarType::I16) return WholeRange{std::numeric_limits<int16_t>::min(), std::numeric_limits<int16_t>::max()};
    if (type == VarType::U8) return WholeRange{0, std::numeric_limits<uint8_t>::max()};
    return std::nullopt;
}

// The text as a value of the key's type, or the reason why not.
std::optional<Variant> ConvertValue(const SetupKey& key, const std::string& text, std::string& message) {
    if (key.type == VarType::Text) return Variant(text);
    double number = 0.0;
    try {
        number = Variant::FromText(VarType::Double, text).As<double>();
    } catch (const VariantConversionError&) {
        message = std::string("Not a valid value for ") + key.name + ": '" + text + "'";
        return std::nullopt;
    }
    if (!std::isfinite(number)) {
        message = std::string(key.name) + " must be a finite number.";
        return std::nullopt;
    }
    const std::optional<WholeRange> whole = WholeRangeOf(key.type);
    if (!whole) return Variant(number);
    if (number != std::floor(number)) {
        message = std::string(key.name) + " takes a whole number: '" + text + "'";
        return std::nullopt;
    }
    if (number < whole->least || number > whole->greatest) {
        message = FormatText("The value '%s' is outside what %s can hold (%ld to %ld).", text.c_str(), key.name,
                             whole->least, whole->greatest);
        return std::nullopt;
    }
    if (key.type == VarType::U8) return Variant(static_cast<uint8_t>(number));
    return Variant(static_cast<int16_t>(number));
}

ApplyResult Refused(const std::string& key, std::string rule, std::string message) {
    ApplyResult result;
    result.key = key;
    result.rule = std::move(rule);
    result.message = std::move(message);
    return result;
}

// Stores the value under its node, making the node when missing, and remembers what was there.
void Store(const NodeRef& system, const SettingChange& change, TreeUndo& undo) {
    const int nodeIndex = system.FindIndex(change.key->node);
    if (nodeIndex < 0 || !system.ItemChild(nodeIndex)) undo.Remember(system, change.key->node);
    const NodeRef node = system.GetOrCreateChild(change.key->node);
    undo.Remember(node, change.key->name);
    node.SetValue(change.key->name, change.value);
}

}  // namespace

std::optional<SettingChange> ParseSetting(const std::string& text, std::string& message) {
    const size_t equals = text.find('=');
    if (equals == std::string::npos) {
        message = "A setting is written as Node/Key=Value or Key=Value: '" + text + "'";
        return std::nullopt;
    }
    const std::string path = Trimmed(text.substr(0, equals));
    const size_t slash = path.rfind('/');
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    const SetupKey* key = FindSetupKey(name);
    if (key == nullptr) {
        message = "Unknown setup key: '" + name + "'";
        return std::nullopt;
    }
    if (slash != std::string::npos && !SameKeyName(path.substr(0, slash), key->node)) {
        message = std::string(key->name) + " is a key of the " + key->node + " node, not of '" + path.substr(0, slash) + "'";
        return std::nullopt;
    }
    if (!key->userSets) {
        message = std::string(key->name) + " is told by the instrument and cannot be set here.";
        return std::nullopt;
    }
    std::optional<Variant> value = ConvertValue(*key, text.substr(equals + 1), message);
    if (!value) return std::nullopt;
    return SettingChange{key, std::move(*value)};
}

std::vector<std::string> RulesAffectedBy(const std::string& key) {
    std::vector<std::string> wanted{key};
    if (key == "NumberOfCells" || key == "CellSizeInCm" || key == "BlankingDistanceInCm") {
        wanted.emplace_back("AbsoluteProfilingRange");
        wanted.emplace_back("ProfilingRange");
    }
    if (key == "AveragingInterval" || key == "BottomTrack") wanted.emplace_back("ProfilingInterval");
    std::vector<std::string> rules;
    for (const std::string& rule : CheckedParameterNames())
        if (std::find(wanted.begin(), wanted.end(), rule) != wanted.end()) rules.push_back(rule);
    return rules;
}

ApplyResult ApplySetting(const NodeRef& system, const std::string& assignment) {
    return ApplySettings(system, {assignment});
}

ApplyResult ApplySettings(const NodeRef& system, const std::vector<std::string>& assignments) {
    std::vector<SettingChange> changes;
    for (const std::string& assignment : assignments) {
        std::string message;
        std::optional<SettingChange> change = ParseSetting(assignment, message);
        if (!change) return Refused(Trimmed(assignment.substr(0, assignment.find('='))), "", message);
        try {
            message = CheckFieldEntry(*change->key, change->value, system);
        } catch (const VariantConversionError& error) {
            message = std::string("A setting needed by ") + change->key->name + " could not be read: " + error.what();
        }
        if (!message.empty()) return Refused(change->key->name, "", message);
        changes.push_back(std::move(*change));
    }

    TreeUndo undo;
    std::vector<std::string> wanted;
    for (const SettingChange& change : changes) {
        Store(system, change, undo);
        for (std::string& rule : RulesAffectedBy(change.key->name)) wanted.push_back(std::move(rule));
    }
    for (const std::string& rule : CheckedParameterNames()) {
        if (std::find(wanted.begin(), wanted.end(), rule) == wanted.end()) continue;
        ParameterCheck check = CheckParameter(rule, system);
        if (check.Valid()) continue;
        undo.Restore();
        std::string refusedKey = rule;
        for (const SettingChange& change : changes)
            for (const std::string& affected : RulesAffectedBy(change.key->name))
                if (affected == rule) refusedKey = change.key->name;
        return Refused(refusedKey, rule, std::move(check.message));
    }
    ApplyResult applied;
    applied.applied = true;
    return applied;
}

}  // namespace rm
