#include "app/settings_path.h"

#include <vector>

namespace rm {

namespace {

std::vector<std::string> SplitPath(const std::string& path) {
    std::vector<std::string> parts;
    size_t begin = 0;
    while (begin <= path.size()) {
        const size_t end = path.find('/', begin);
        const size_t stop = end == std::string::npos ? path.size() : end;
        parts.push_back(path.substr(begin, stop - begin));
        if (end == std::string::npos) break;
        begin = end + 1;
    }
    return parts;
}

SettingAssignment Refused(std::string message) { return {false, std::move(message)}; }

}  // namespace

SettingAssignment AssignSetting(const NodeRef& root, const std::string& assignment) {
    const size_t equals = assignment.find('=');
    if (equals == std::string::npos) return Refused("\"" + assignment + "\" is not of the form PATH=VALUE");
    const std::string path = assignment.substr(0, equals);
    const std::string text = assignment.substr(equals + 1);
    const std::vector<std::string> parts = SplitPath(path);
    for (const std::string& part : parts) {
        if (part.empty()) return Refused("\"" + path + "\" is not a settings path");
    }
    NodeRef node = root;
    for (size_t i = 0; i + 1 < parts.size(); ++i) {
        const int index = node.FindIndex(parts[i]);
        NodeRef child = index < 0 ? NodeRef() : node.ItemChild(index);
        if (child.IsNull()) return Refused("no settings node \"" + parts[i] + "\" in \"" + path + "\"");
        node = child;
    }
    const std::string& key = parts.back();
    const int index = node.FindIndex(key);
    if (index < 0) return Refused("no setting \"" + path + "\"");
    if (!node.ItemChild(index).IsNull()) return Refused("\"" + path + "\" is a group of settings, not a value");
    const Variant& existing = node.ItemValue(index);
    const VarType type = existing.IsEmptyOrNull() ? VarType::Text : existing.type();
    try {
        node.SetAt(index, Variant::FromText(type, text));
    } catch (const VariantConversionError&) {
        return Refused("\"" + text + "\" is not a valid value for \"" + path + "\"");
    }
    return {true, ""};
}

}  // namespace rm
