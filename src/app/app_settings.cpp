#include "app/app_settings.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace rm {

namespace {

namespace fs = std::filesystem;

std::string HomeFolder() {
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') return home;
    if (const passwd* entry = getpwuid(getuid()); entry != nullptr && entry->pw_dir != nullptr) return entry->pw_dir;
    return ".";
}

std::string EnvironmentOr(const char* name, const std::string& fallback) {
    const char* value = std::getenv(name);
    return (value != nullptr && *value != '\0') ? std::string(value) : fallback;
}

std::string WithTrailingSlash(std::string folder) {
    if (folder.empty() || (folder.back() != '/' && folder.back() != '\\')) folder.push_back('/');
    return folder;
}

// Reads one key so that a missing one is stored with its default.
template <class T>
void Touch(const AppSettings& settings, const AppKey<T>& key) {
    settings.Get(key);
}

}  // namespace

UserFolders PlatformUserFolders() {
    const std::string home = HomeFolder();
    return UserFolders{EnvironmentOr("XDG_CONFIG_HOME", home + "/.config"),
                       EnvironmentOr("XDG_DOCUMENTS_DIR", home + "/Documents")};
}

AppSettings::AppSettings(UserFolders folders) : folders_(std::move(folders)) {}

const std::string& AppSettings::SettingsPath() {
    if (settingsPath_.empty()) {
        // Without a config folder the settings go with the documents, as "AppData" there.
        const std::string base =
            folders_.configHome.empty() ? WithTrailingSlash(folders_.documentsDir) + "AppData" : folders_.configHome;
        const fs::path folder = fs::path(base) / kMakerFolderName;
        settingsPath_ = (folder / kAppSettingsFileName).string();
    }
    std::error_code error;
    fs::create_directories(fs::path(settingsPath_).parent_path(), error);
    return settingsPath_;
}

std::string AppSettings::DataFolder() const { return WithTrailingSlash(folders_.documentsDir) + "QorData/"; }

NodeRef AppSettings::Section(const std::string& path) const {
    NodeRef node = root_;
    size_t start = 0;
    while (start <= path.size()) {
        size_t slash = path.find('/', start);
        if (slash == std::string::npos) slash = path.size();
        node = node.GetOrCreateChild(path.substr(start, slash - start));
        start = slash + 1;
    }
    return node;
}

std::string AppSettings::DefaultText(const AppTextKey& key) const {
    if (key.def == nullptr) {
        const std::string recorded = Get(app_keys::RecordedFileDirectory);
        return (recorded.empty() ? recorded : WithTrailingSlash(recorded)) + "Reports";
    }
    return key.def == std::string(kPlatformDataFolder) ? DataFolder() : std::string(key.def);
}

std::string AppSettings::Get(const AppTextKey& key) const {
    std::string value = Section(key.section).GetTyped<std::string>(key.name, DefaultText(key));
    // A settings file brought over from the desktop platform still names the old folder.
    return value == kPlatformDataFolder ? DataFolder() : value;
}

void AppSettings::Set(const AppTextKey& key, const std::string& value) const {
    Section(key.section).SetValue(key.name, Variant(value));
}

void AppSettings::StoreAllDefaults() const {
    using namespace app_keys;
    Touch(*this, ShowBottomDepth);
    Touch(*this, ShowCutOffDepth);
    Touch(*this, ShowShallowWaterMeasurements);
    Touch(*this, ShowBadBottomTrack);
    Touch(*this, DrawShallowWaterPingTrack);
    Touch(*this, AutomaticGridSpacing);
    Touch(*this, DrawWayPointConnection);
    Touch(*this, AskForEdgeDistances);
    Touch(*this, UnitSystem);
    Touch(*this, UseUsgsRoundingFormat);
    Touch(*this, SwapDepthReference);
    Touch(*this, ShowUserWarnings);
    Touch(*this, VerifyConnections);
    Touch(*this, VerifyGps);
    Touch(*this, LoadToEndOfFile);
    Touch(*this, VelocityTrackReference);
    Touch(*this, SignificantDigits);
    for (const AppTextKey& key :
         {RecordedFileDirectory, ReportsDirectory, OpenFileDirectory, ExportSelectFilesDirectory, OutputDirectory}) {
        Get(key);
    }
}

void AppSettings::RemoveOldQualityColors() const {
    const NodeRef qualityColors = Colors().GetOrCreateChild("Data Quality Colors");
    for (const char* old : {"Mid Data", "Bad Data"}) {
        for (int index = qualityColors.FindIndex(old); index >= 0; index = qualityColors.FindIndex(old)) {
            qualityColors.RemoveAt(index);
        }
    }
}

void AppSettings::CreateDataDirectories() const {
    if (Get(app_keys::ReportsDirectory).empty()) Set(app_keys::ReportsDirectory, DefaultText(app_keys::ReportsDirectory));
    std::error_code error;
    for (const AppTextKey& key : {app_keys::RecordedFileDirectory, app_keys::ReportsDirectory}) {
        const std::string folder = Get(key);
        if (!folder.empty()) fs::create_directories(folder, error);
    }
}

bool AppSettings::LoadAppSettings() {
    const std::string& path = SettingsPath();
    root_.Clear();
    bool readWhole = false;
    if (std::FILE* file = std::fopen(path.c_str(), "rb"); file != nullptr) {
        readWhole = root_.Load(file);
        std::fclose(file);
        if (!readWhole) {
            // Start from defaults, but keep the damaged file for the person to look at: the
            // save at exit would otherwise overwrite it.
            root_.Clear();
            std::error_code error;
            fs::copy_file(path, path + ".unreadable", fs::copy_options::overwrite_existing, error);
        }
    }
    RemoveOldQualityColors();
    StoreAllDefaults();
    CreateDataDirectories();
    return readWhole;
}

bool AppSettings::SaveAppSettings(UserPrompt& prompt, const NodeRef& liveDischargeRecord) {
    if (!liveDischargeRecord.IsNull()) {
        int index = root_.FindIndex("DischargeRecord");
        if (index < 0) {
            root_.Append("DischargeRecord", Variant());
            index = root_.ItemCount() - 1;
        }
        root_.SetChild(index, liveDischargeRecord);
    }
    if (!SaveTreeFile(root_, SettingsPath())) {
        prompt.Message("Failed to save application settings");
        return false;
    }
    return true;
}

}  // namespace rm
