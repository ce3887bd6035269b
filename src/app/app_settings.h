#pragma once
// The application root tree: everything that outlives a data file (folders, user options,
// ports, colours, thresholds), read once at start from AppSettings.conf and written once
// at exit.

#include <string>

#include "data/node_tree.h"
#include "data/user_prompt.h"

namespace rm {

// The per-user folders the settings file and the default data folder live in.
struct UserFolders {
    std::string configHome;    // $XDG_CONFIG_HOME, else ~/.config
    std::string documentsDir;  // $XDG_DOCUMENTS_DIR, else ~/Documents
};

// The folders of the person running the program, from the environment.
UserFolders PlatformUserFolders();

constexpr const char* kMakerFolderName = "QuorleRipplemark";
constexpr const char* kAppSettingsFileName = "AppSettings.conf";
// The data folder as settings files from the desktop platform name it; it stands for the
// folder "QorData" in the user's documents.
constexpr const char* kPlatformDataFolder = "C:\\QorData\\";

// A typed key of the application tree. `section` is a path of node names from the root,
// separated by '/', e.g. "Commuications/GPS".
struct AppKeyPlace {
    const char* section;
    const char* name;
};
template <class T>
struct AppKey : AppKeyPlace {
    T def;
};
// A folder or other text key. A null `def` marks a default derived from another key.
struct AppTextKey : AppKeyPlace {
    const char* def;
};

namespace app_keys {
inline constexpr AppKey<int32_t> ShowBottomDepth{{"General", "ShowBottomDepth"}, 1};
inline constexpr AppKey<int32_t> ShowCutOffDepth{{"General", "ShowCutOffDepth"}, 1};
inline constexpr AppKey<int32_t> ShowShallowWaterMeasurements{{"General", "ShowShallowWaterMeasurements"}, 1};
inline constexpr AppKey<int32_t> ShowBadBottomTrack{{"General", "ShowBadBottomTrack"}, 1};
inline constexpr AppKey<int32_t> DrawShallowWaterPingTrack{{"General", "DrawShallowWaterPingTrack"}, 1};
inline constexpr AppKey<int32_t> AutomaticGridSpacing{{"General", "AutomaticGridSpacing"}, 1};
inline constexpr AppKey<int32_t> DrawWayPointConnection{{"General", "DrawWayPointConnection"}, 1};
inline constexpr AppKey<int32_t> AskForEdgeDistances{{"General", "AskForEdgeDistances"}, 1};
inline constexpr AppKey<int16_t> UnitSystem{{"General", "Unit System"}, 1};
inline constexpr AppKey<uint8_t> UseUsgsRoundingFormat{{"General", "UseUsgsRoundingFormat"}, 1};
inline constexpr AppKey<uint8_t> SwapDepthReference{{"General", "SwapDepthReference"}, 1};
inline constexpr AppKey<uint8_t> ShowUserWarnings{{"General", "ShowUserWarnings"}, 0};
inline constexpr AppKey<uint8_t> VerifyConnections{{"General", "VerifyConnections"}, 1};
inline constexpr AppKey<uint8_t> VerifyGps{{"Commuications/GPS", "VerifyGps"}, 1};
inline constexpr AppKey<uint8_t> LoadToEndOfFile{{"General", "LoadToEndOfFile"}, 0};
inline constexpr AppKey<int32_t> VelocityTrackReference{{"General", "VelocityTrackReference"}, 1};
inline constexpr AppKey<int32_t> SignificantDigits{{"General", "SignificantDigits"}, 5};

inline constexpr AppTextKey RecordedFileDirectory{{"Directories", "RecordedFileDirectory"}, kPlatformDataFolder};
inline constexpr AppTextKey ReportsDirectory{{"Directories", "ReportsDirectory"}, nullptr};
inline constexpr AppTextKey OpenFileDirectory{{"Directories", "OpenFileDirectory"}, kPlatformDataFolder};
inline constexpr AppTextKey ExportSelectFilesDirectory{{"Directories", "ExportSelectFilesDirectory"},
                                                       kPlatformDataFolder};
inline constexpr AppTextKey OutputDirectory{{"Directories", "OutputDirectory"}, ""};
}  // namespace app_keys

template <class T>
struct NotDeduced {
    using type = T;
};

class AppSettings {
public:
    explicit AppSettings(UserFolders folders = PlatformUserFolders());

    const NodeRef& Root() const { return root_; }
    const UserFolders& Folders() const { return folders_; }

    // Where AppSettings.conf lives: the maker's folder under the config folder, made on
    // demand. Built once and kept.
    const std::string& SettingsPath();

    // The folder that the platform default "C:\QorData\" stands for, with a trailing '/'.
    std::string DataFolder() const;

    // Section accessors; each brings its node into being.
    NodeRef General() const { return Section("General"); }
    NodeRef Directories() const { return Section("Directories"); }
    NodeRef Communications() const { return Section("Commuications"); }
    NodeRef Thresholds() const { return Section("Thresholds"); }
    NodeRef Colors() const { return Section("Colors"); }
    NodeRef Export() const { return Section("Export"); }
    NodeRef DataDisplay() const { return Section("DataDisplay"); }
    NodeRef PaletteBar() const { return Section("PaletteBar"); }
    NodeRef DischargeRecord() const { return Section("DischargeRecord"); }
    NodeRef LastDischargeMeasurement() const { return Section("LastDischargeMeasurement"); }
    // The node at a '/'-separated path of names, made where missing.
    NodeRef Section(const std::string& path) const;

    // Key getters and setters. A getter of a missing key stores and returns its default;
    // a stored value that does not convert throws VariantConversionError.
    template <class T>
    T Get(const AppKey<T>& key) const {
        return Section(key.section).template GetTyped<T>(key.name, key.def);
    }
    template <class T>
    void Set(const AppKey<T>& key, typename NotDeduced<T>::type value) const {
        Section(key.section).SetValue(key.name, Variant(value));
    }
    // Folder keys: the platform default maps to DataFolder(); ReportsDirectory defaults to
    // RecordedFileDirectory followed by "Reports".
    std::string Get(const AppTextKey& key) const;
    void Set(const AppTextKey& key, const std::string& value) const;

    // Start: reads the file into the root (missing or unreadable: an empty tree; an
    // unreadable file is kept beside as "AppSettings.conf.unreadable"), runs the old-file
    // step, stores every default of General, GPS and Directories, and creates the recording
    // and reports folders. Returns true when a file was read whole.
    bool LoadAppSettings();

    // Exit: hangs `liveDischargeRecord` (when not null) under DischargeRecord, replacing any
    // earlier child, and writes the file. A failure shows "Failed to save application
    // settings" and returns false.
    bool SaveAppSettings(UserPrompt& prompt, const NodeRef& liveDischargeRecord = NodeRef());

    // Settings files of earlier versions have "Mid Data" and "Bad Data" in
    // Colors/Data Quality Colors; their present keys are "Warning Data" and "Alert Data".
    void RemoveOldQualityColors() const;

    // Gives ReportsDirectory its default when empty and makes RecordedFileDirectory and
    // ReportsDirectory on disk. Failures to make them are left to the first write there.
    void CreateDataDirectories() const;

private:
    void StoreAllDefaults() const;
    std::string DefaultText(const AppTextKey& key) const;

    UserFolders folders_;
    NodeRef root_ = NodeRef::MakeNew();
    std::string settingsPath_;
};

}  // namespace rm
