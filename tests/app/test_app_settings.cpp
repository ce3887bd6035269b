// AppSettings.conf: where it lives, the defaults of a first start, what survives exit and start,
// the folder keys, the old keys removed, an unreadable or unwritable file, and the folders the
// platform gives.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "app/app_settings.h"
#include "document_test_support.h"

namespace rm {
namespace {

namespace fs = std::filesystem;

class AppSettingsTest : public ::testing::Test {
protected:
    std::string SettingsFile() const { return dir.File("config/QuorleRipplemark/AppSettings.conf"); }
    std::string Docs() const { return dir.File("docs"); }

    doctest::Folder dir;
    UserFolders folders{dir.File("config"), dir.File("docs")};
    RecordingPrompt prompt;
};

TEST_F(AppSettingsTest, FoldersAreTheMakerFolderAndTheDocumentsDataFolder) {
    AppSettings settings(folders);
    EXPECT_EQ(settings.SettingsPath(), SettingsFile());
    EXPECT_TRUE(fs::is_directory(dir.File("config/QuorleRipplemark")));
    EXPECT_EQ(settings.DataFolder(), Docs() + "/QorData/");
    AppSettings noConfig(UserFolders{"", Docs()});
    EXPECT_EQ(noConfig.SettingsPath(), Docs() + "/AppData/QuorleRipplemark/AppSettings.conf");

    // The reports folder joins the recordings folder with one separator; the platform's data
    // folder stands for the documents data folder.
    settings.Set(app_keys::RecordedFileDirectory, "/data/river");
    EXPECT_EQ(settings.Get(app_keys::ReportsDirectory), "/data/river/Reports");
    settings.Set(app_keys::OpenFileDirectory, "C:\\QorData\\");
    EXPECT_EQ(settings.Get(app_keys::OpenFileDirectory), settings.DataFolder());
}

TEST_F(AppSettingsTest, FirstStartWritesEveryDefault) {
    AppSettings settings(folders);
    EXPECT_FALSE(settings.LoadAppSettings());
    const std::string data = Docs() + "/QorData/";
    EXPECT_TRUE(fs::is_directory(data + "Reports"));
    ASSERT_TRUE(settings.SaveAppSettings(prompt));
    EXPECT_TRUE(prompt.messages.empty());

    // Read the file back as a plain tree, without the getters that would add defaults.
    NodeRef file = NodeRef::MakeNew();
    ASSERT_TRUE(LoadTreeFile(file, SettingsFile()));
    const NodeRef general = file.GetChildByName("General");
    const std::pair<const char*, Variant> generalKeys[] = {
        {"ShowBottomDepth", Variant(int32_t{1})},         {"ShowCutOffDepth", Variant(int32_t{1})},
        {"ShowShallowWaterMeasurements", Variant(int32_t{1})}, {"ShowBadBottomTrack", Variant(int32_t{1})},
        {"DrawShallowWaterPingTrack", Variant(int32_t{1})}, {"AutomaticGridSpacing", Variant(int32_t{1})},
        {"DrawWayPointConnection", Variant(int32_t{1})},  {"AskForEdgeDistances", Variant(int32_t{1})},
        {"Unit System", Variant(int16_t{1})},             {"UseUsgsRoundingFormat", Variant(uint8_t{1})},
        {"SwapDepthReference", Variant(uint8_t{1})},      {"ShowUserWarnings", Variant(uint8_t{0})},
        {"VerifyConnections", Variant(uint8_t{1})},       {"LoadToEndOfFile", Variant(uint8_t{0})},
        {"VelocityTrackReference", Variant(int32_t{1})},  {"SignificantDigits", Variant(int32_t{5})},
    };
    EXPECT_EQ(general.ItemCount(), static_cast<int>(std::size(generalKeys)));
    for (const auto& [name, value] : generalKeys) {
        const int index = general.FindIndex(name);
        ASSERT_GE(index, 0) << name;
        EXPECT_EQ(general.ItemValue(index), value) << name;
    }
    const NodeRef gps = file.GetChildByName("Commuications").GetChildByName("GPS");
    EXPECT_EQ(gps.ItemValue(gps.FindIndex("VerifyGps")), Variant(uint8_t{1}));
    const NodeRef directories = file.GetChildByName("Directories");
    const std::pair<const char*, std::string> folderKeys[] = {
        {"RecordedFileDirectory", data}, {"ReportsDirectory", data + "Reports"}, {"OpenFileDirectory", data},
        {"ExportSelectFilesDirectory", data}, {"OutputDirectory", ""}};
    for (const auto& [name, value] : folderKeys)
        EXPECT_EQ(directories.ItemValue(directories.FindIndex(name)), Variant(value)) << name;
}

TEST_F(AppSettingsTest, ChangedKeysSurviveExitAndStart) {
    {
        AppSettings settings(folders);
        settings.LoadAppSettings();
        settings.Set(app_keys::UnitSystem, 2);
        settings.Set(app_keys::SignificantDigits, 3);
        settings.Set(app_keys::LoadToEndOfFile, 1);
        settings.Set(app_keys::VerifyGps, 0);
        settings.Set(app_keys::RecordedFileDirectory, dir.File("recordings/"));
        settings.Set(app_keys::ReportsDirectory, "");
        ASSERT_TRUE(settings.SaveAppSettings(prompt));
    }
    AppSettings settings(folders);
    EXPECT_TRUE(settings.LoadAppSettings());
    EXPECT_EQ(settings.Get(app_keys::UnitSystem), 2);
    EXPECT_EQ(settings.Get(app_keys::SignificantDigits), 3);
    EXPECT_EQ(settings.Get(app_keys::LoadToEndOfFile), 1);
    EXPECT_EQ(settings.Get(app_keys::VerifyGps), 0);
    // An empty reports folder gets its default from the recordings folder at start.
    EXPECT_EQ(settings.Get(app_keys::ReportsDirectory), dir.File("recordings/Reports"));
    EXPECT_TRUE(fs::is_directory(dir.File("recordings/Reports")));
}

TEST_F(AppSettingsTest, OldQualityColorsAreRemoved) {
    NodeRef old = NodeRef::MakeNew();
    const NodeRef colors = old.GetOrCreateChild("Colors").GetOrCreateChild("Data Quality Colors");
    for (const char* name : {"Good Data", "Mid Data", "Bad Data", "Warning Data"}) colors.SetValue(name, Variant(255));
    fs::create_directories(fs::path(SettingsFile()).parent_path());
    ASSERT_TRUE(SaveTreeFile(old, SettingsFile()));
    AppSettings settings(folders);
    ASSERT_TRUE(settings.LoadAppSettings());
    const NodeRef kept = settings.Colors().GetChildByName("Data Quality Colors");
    ASSERT_EQ(kept.ItemCount(), 2);
    EXPECT_EQ(kept.ItemName(0), "Good Data");
    EXPECT_EQ(kept.ItemName(1), "Warning Data");
}

TEST_F(AppSettingsTest, AnUnreadableFileIsKeptAsideAndAnUnwritableOneReported) {
    fs::create_directories(fs::path(SettingsFile()).parent_path());
    std::FILE* junk = std::fopen(SettingsFile().c_str(), "wb");
    const char bytes[] = "\x05\x00\x00\x00garbage";  // five items announced, none there
    std::fwrite(bytes, 1, sizeof bytes - 1, junk);
    std::fclose(junk);
    AppSettings settings(folders);
    EXPECT_FALSE(settings.LoadAppSettings());
    EXPECT_EQ(settings.Get(app_keys::SignificantDigits), 5);
    EXPECT_TRUE(fs::exists(SettingsFile() + ".unreadable"));

    // The config "folder" is a plain file: nothing can be made under it.
    AppSettings blocked(UserFolders{SettingsFile() + ".unreadable", Docs()});
    blocked.LoadAppSettings();
    EXPECT_FALSE(blocked.SaveAppSettings(prompt));
    EXPECT_EQ(prompt.messages, std::vector<std::string>{"Failed to save application settings"});
}

TEST_F(AppSettingsTest, LiveDischargeRecordReplacesTheEarlierOne) {
    AppSettings settings(folders);
    settings.LoadAppSettings();
    settings.DischargeRecord().SetValue("Old", Variant(1));
    NodeRef live = NodeRef::MakeNew();
    live.SetValue("Measurements", Variant(4));
    ASSERT_TRUE(settings.SaveAppSettings(prompt, live));
    EXPECT_TRUE(settings.DischargeRecord().SameNode(live));
    // Sections by path; the stored key keeps its spelling.
    EXPECT_TRUE(settings.Section("Commuications/GPS").SameNode(settings.Communications().GetChildByName("GPS")));
    EXPECT_EQ(settings.Root().FindIndex("Communications"), -1);

    AppSettings reread(folders);
    ASSERT_TRUE(reread.LoadAppSettings());
    const NodeRef record = reread.Root().GetChildByName("DischargeRecord");
    EXPECT_EQ(record.FindIndex("Old"), -1);
    EXPECT_EQ(record.GetTyped<int32_t>("Measurements", 0), 4);
}

// Sets (or, with null, removes) one environment variable for the life of the object.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    ~ScopedEnv() { old_ ? setenv(name_, old_->c_str(), 1) : unsetenv(name_); }

private:
    const char* name_;
    std::optional<std::string> old_;
};

TEST(PlatformUserFolders, FollowTheEnvironment) {
    {
        ScopedEnv config("XDG_CONFIG_HOME", "/tmp/cfg-here");
        ScopedEnv docs("XDG_DOCUMENTS_DIR", "/tmp/docs-here");
        const UserFolders folders = PlatformUserFolders();
        EXPECT_EQ(folders.configHome, "/tmp/cfg-here");
        EXPECT_EQ(folders.documentsDir, "/tmp/docs-here");
    }
    ScopedEnv home("HOME", "/home/hydro");
    ScopedEnv config("XDG_CONFIG_HOME", nullptr);
    ScopedEnv docs("XDG_DOCUMENTS_DIR", "");
    const UserFolders folders = PlatformUserFolders();
    EXPECT_EQ(folders.configHome, "/home/hydro/.config");
    EXPECT_EQ(folders.documentsDir, "/home/hydro/Documents");
}

}  // namespace
}  // namespace rm
