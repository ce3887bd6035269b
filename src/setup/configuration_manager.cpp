#include "setup/configuration_manager.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "setup/setup_keys.h"
#include "setup/setup_text.h"

namespace rm {

namespace {

namespace fs = std::filesystem;

constexpr const char* kSavedNodes[] = {setup_nodes::kOther, setup_nodes::kSetup};

bool EndsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

bool LessIgnoringCase(const std::string& a, const std::string& b) {
    const auto lower = [](unsigned char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; };
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                        [&](char x, char y) { return lower(x) < lower(y); }) ||
           (SameKeyName(a, b) && a < b);
}

// Every known key of a loaded node must read as its own type, so that no later read of the
// setup fails on a value that only the file brought in.
bool ValuesReadAsTheirTypes(const NodeRef& node, const char* nodeName) {
    for (int i = 0; i < node.ItemCount(); ++i) {
        const SetupKey* key = FindSetupKey(node.ItemName(i));
        const Variant& value = node.ItemValue(i);
        if (key == nullptr || !SameKeyName(key->node, nodeName) || value.IsEmptyOrNull()) continue;
        try {
            value.ChangeType(key->type);
        } catch (const VariantConversionError&) {
            return false;
        }
    }
    return true;
}

}  // namespace

ConfigurationManager::ConfigurationManager(std::string folder, UserPrompt& prompt)
    : folder_(std::move(folder)), prompt_(prompt) {
    if (!folder_.empty() && folder_.back() != '/') folder_ += '/';
}

std::string ConfigurationManager::PathOf(const std::string& title) const {
    return folder_ + title + kConfigurationExtension;
}

bool ConfigurationManager::IsUsableName(const std::string& name) {
    return !name.empty() && name.find_first_of(std::string("/\\\0", 3)) == std::string::npos;
}

std::vector<std::string> ConfigurationManager::List() const {
    std::vector<std::string> titles;
    std::error_code error;
    fs::directory_iterator it(folder_.empty() ? "." : folder_, error);
    for (; !error && it != fs::directory_iterator(); it.increment(error)) {
        const std::string file = it->path().filename().string();
        std::error_code typeError;
        if (!EndsWith(file, kConfigurationExtension) || !it->is_regular_file(typeError)) continue;
        const std::string title = file.substr(0, file.size() - std::string(kConfigurationExtension).size());
        if (!title.empty()) titles.push_back(title);
    }
    std::sort(titles.begin(), titles.end(), LessIgnoringCase);
    return titles;
}

bool ConfigurationManager::Load(const std::string& title, const NodeRef& system) {
    const NodeRef file = NodeRef::MakeNew();
    bool ok = IsUsableName(title) && LoadTreeFile(file, PathOf(title));
    bool anyNode = false;
    for (const char* name : kSavedNodes) {
        const NodeRef child = file.ItemChild(file.FindIndex(name));
        if (!child) continue;
        anyNode = true;
        ok = ok && ValuesReadAsTheirTypes(child, name);
    }
    if (!ok || !anyNode) {
        prompt_.Message("Unable to load configuration file: " + title);
        return false;
    }
    for (const char* name : kSavedNodes) {
        const NodeRef child = file.ItemChild(file.FindIndex(name));
        if (!child) continue;
        const int index = system.FindIndex(name);
        if (index < 0)
            system.Append(name, Variant(), child);
        else
            system.SetChild(index, child);
    }
    prompt_.Message("Configuration file: " + title + " has been loaded.");
    return true;
}

bool ConfigurationManager::Save(const std::string& name, const NodeRef& system) {
    if (!IsUsableName(name)) {
        prompt_.Message(kSaveConfigurationErrorText);
        return false;
    }
    const std::string path = PathOf(name);
    std::error_code error;
    if (fs::exists(path, error) && !prompt_.AskYesNo("File " + path + " Already exists.\nOverwrite?")) return false;

    const NodeRef file = NodeRef::MakeNew();
    for (const char* nodeName : kSavedNodes) file.Append(nodeName, Variant(), system.GetOrCreateChild(nodeName));
    if (!folder_.empty()) fs::create_directories(folder_, error);
    if (!SaveTreeFile(file, path)) {
        prompt_.Message(kSaveConfigurationErrorText);
        return false;
    }
    return true;
}

bool ConfigurationManager::Delete(const std::string& title) {
    std::error_code error;
    if (!IsUsableName(title) || !fs::remove(PathOf(title), error)) {
        prompt_.Message("Unable to delete configuration file: " + title);
        return false;
    }
    return true;
}

}  // namespace rm
