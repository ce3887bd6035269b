#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "app/app_settings.h"

namespace rm {
namespace {

namespace fs = std::filesystem;

class AppSettingsTest : public ::testing::Test {
protected:
    void SetUp() override {
        dir_ = fs::temp_directory_path() / ("rm_app_" + std::to_string(::getpid()) + "_" +
                                            ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir_);
        fs::create_directories(dir_);
        folders_ = UserFolders{(dir_ / "config").string(), (dir_ / "docs").string()};
    }
    void TearDown() override { fs::remove_all(dir_); }

    std::string SettingsFile() const { return (dir_ / "config" / "QuorleRipplemark" / "AppSettings.conf").string(); }

    fs::path dir_;
    UserFolders folders_;
    RecordingPrompt prompt_;
};

TEST_F(AppSettingsTest, SettingsPathIsTheMakerFolderMadeOnDemand) {
    AppSettings settings(folders_);
    EXPECT_EQ(settings.SettingsPath(), SettingsFile());
    EXPECT_TRUE(fs::is_directory(dir_ / "config" / "QuorleRipplemark"));
    EXPECT_EQ(settings.DataFolder(), (dir_ / "docs").string() + "/QorData/");

    AppSettings noConfig(UserFolders{"", (dir_ / "docs").string()});
    EXPECT_EQ(noConfig.SettingsPath(), (dir_ / "docs" / "AppData" / "QuorleRipplemark" / "AppSettings.conf").string());
}

TEST_F(AppSettingsTest, FirstStartWritesEveryDefault) {
    AppSettings settings(folders_);
    EXPECT_FALSE(settings.LoadAppSettings());
    const std::string data = (dir_ / "docs").string() + "/QorData/";
    EXPECT_TRUE(fs::is_directory(data));
    EXPECT_TRUE(fs::is_directory(data + "Reports"));
    ASSERT_TRUE(settings.SaveAppSettings(prompt_));
    EXPECT_TRUE(prompt_.messages.empty());

    // Read the file back as a plain tree, without the getters that would add defaults.
    NodeRef file = NodeRef::MakeNew();
    ASSERT_TRUE(LoadTreeFile(file, SettingsFile()));
    NodeRef general = file.GetChildByName("General");
    struct Expected {
        const char* name;
        Variant value;
    };
    const Expected generalKeys[] = {
        {"ShowBottomDepth", Variant(int32_t{1})},
        {"ShowCutOffDepth", Variant(int32_t{1})},
        {"ShowShallowWaterMeasurements", Variant(int32_t{1})},
        {"ShowBadBottomTrack", Variant(int32_t{1})},
        {"DrawShallowWaterPingTrack", Variant(int32_t{1})},
        {"AutomaticGridSpacing", Variant(int32_t{1})},
        {"DrawWayPointConnection", Variant(int32_t{1})},
        {"AskForEdgeDistances", Variant(int32_t{1})},
        {"Unit System", Variant(int16_t{1})},
        {"UseUsgsRoundingFormat", Variant(uint8_t{1})},
        {"SwapDepthReference", Variant(uint8_t{1})},
        {"ShowUserWarnings", Variant(uint8_t{0})},
        {"VerifyConnections", Variant(uint8_t{1})},
        {"LoadToEndOfFile", Variant(uint8_t{0})},
        {"VelocityTrackReference", Variant(int32_t{1})},
        {"SignificantDigits", Variant(int32_t{5})},
    };
    EXPECT_EQ(general.ItemCount(), static_cast<int>(std::size(generalKeys)));
    for (const Expected& key : generalKeys) {
        const int index = general.FindIndex(key.name);
        ASSERT_GE(index, 0) << key.name;
        EXPECT_EQ(general.ItemValue(index), key.value) << key.name;
    }
    NodeRef gps = file.GetChildByName("Commuications").GetChildByName("GPS");
    EXPECT_EQ(gps.ItemValue(gps.FindIndex("VerifyGps")), Variant(uint8_t{1}));

    NodeRef directories = file.GetChildByName("Directories");
    auto text = [&](const char* name) { return directories.ItemValue(directories.FindIndex(name)); };
    EXPECT_EQ(text("RecordedFileDirectory"), Variant(data));
    EXPECT_EQ(text("ReportsDirectory"), Variant(data + "Reports"));
    EXPECT_EQ(text("OpenFileDirectory"), Variant(data));
    EXPECT_EQ(text("ExportSelectFilesDirectory"), Variant(data));
    EXPECT_EQ(text("OutputDirectory"), Variant(""));
}

TEST_F(AppSettingsTest, ChangedKeysSurviveExitAndStart) {
    {
        AppSettings settings(folders_);
        settings.LoadAppSettings();
        settings.Set(app_keys::UnitSystem, 2);
        settings.Set(app_keys::SignificantDigits, 3);
        settings.Set(app_keys::LoadToEndOfFile, 1);
        settings.Set(app_keys::VerifyGps, 0);
        settings.Set(app_keys::RecordedFileDirectory, (dir_ / "recordings").string() + "/");
        settings.Set(app_keys::ReportsDirectory, "");
        ASSERT_TRUE(settings.SaveAppSettings(prompt_));
    }
    AppSettings settings(folders_);
    EXPECT_TRUE(settings.LoadAppSettings());
    EXPECT_EQ(settings.Get(app_keys::UnitSystem), 2);
    EXPECT_EQ(settings.Get(app_keys::SignificantDigits), 3);
    EXPECT_EQ(settings.Get(app_keys::LoadToEndOfFile), 1);
    EXPECT_EQ(settings.Get(app_keys::VerifyGps), 0);
    // An empty reports folder gets its default from the recordings folder at start.
    EXPECT_EQ(settings.Get(app_keys::ReportsDirectory), (dir_ / "recordings").string() + "/Reports");
    EXPECT_TRUE(fs::is_directory(dir_ / "recordings" / "Reports"));
}

TEST_F(AppSettingsTest, ReportsFolderJoinsAFolderWithoutTrailingSeparator) {
    AppSettings settings(folders_);
    settings.Set(app_keys::RecordedFileDirectory, "/data/river");
    EXPECT_EQ(settings.Get(app_keys::ReportsDirectory), "/data/river/Reports");
}

TEST_F(AppSettingsTest, PlatformDataFolderMapsToTheDocumentsFolder) {
    AppSettings settings(folders_);
    settings.Set(app_keys::OpenFileDirectory, "C:\\QorData\\");
    EXPECT_EQ(settings.Get(app_keys::OpenFileDirectory), settings.DataFolder());
}

TEST_F(AppSettingsTest, OldQualityColorsAreRemoved) {
    {
        NodeRef old = NodeRef::MakeNew();
        NodeRef colors = old.GetOrCreateChild("Colors").GetOrCreateChild("Data Quality Colors");
        colors.SetValue("Good Data", Variant(65280));
        colors.SetValue("Mid Data", Variant(65535));
        colors.SetValue("Bad Data", Variant(255));
        colors.SetValue("Warning Data", Variant(65535));
        fs::create_directories(fs::path(SettingsFile()).parent_path());
        ASSERT_TRUE(SaveTreeFile(old, SettingsFile()));
    }
    AppSettings settings(folders_);
    ASSERT_TRUE(settings.LoadAppSettings());
    NodeRef colors = settings.Colors().GetChildByName("Data Quality Colors");
    ASSERT_EQ(colors.ItemCount(), 2);
    EXPECT_EQ(colors.ItemName(0), "Good Data");
    EXPECT_EQ(colors.ItemName(1), "Warning Data");
}

TEST_F(AppSettingsTest, UnreadableFileStartsFromDefaultsAndIsKept) {
    fs::create_directories(fs::path(SettingsFile()).parent_path());
    {
        std::FILE* file = std::fopen(SettingsFile().c_str(), "wb");
        const char junk[] = "\x05\x00\x00\x00garbage";
        std::fwrite(junk, 1, sizeof junk - 1, file);
        std::fclose(file);
    }
    AppSettings settings(folders_);
    EXPECT_FALSE(settings.LoadAppSettings());
    EXPECT_EQ(settings.Get(app_keys::SignificantDigits), 5);
    EXPECT_TRUE(fs::exists(SettingsFile() + ".unreadable"));
}

TEST_F(AppSettingsTest, FailedSaveShowsTheMessage) {
    // The config "folder" is a plain file: nothing can be made under it.
    const fs::path blocker = dir_ / "blocker";
    std::FILE* file = std::fopen(blocker.c_str(), "wb");
    std::fclose(file);
    AppSettings settings(UserFolders{blocker.string(), (dir_ / "docs").string()});
    settings.LoadAppSettings();
    EXPECT_FALSE(settings.SaveAppSettings(prompt_));
    ASSERT_EQ(prompt_.messages.size(), 1u);
    EXPECT_EQ(prompt_.messages[0], "Failed to save application settings");
}

TEST_F(AppSettingsTest, LiveDischargeRecordReplacesTheEarlierOne) {
    AppSettings settings(folders_);
    settings.LoadAppSettings();
    settings.DischargeRecord().SetValue("Old", Variant(1));
    NodeRef live = NodeRef::MakeNew();
    live.SetValue("Measurements", Variant(4));
    ASSERT_TRUE(settings.SaveAppSettings(prompt_, live));
    EXPECT_TRUE(settings.DischargeRecord().SameNode(live));

    AppSettings reread(folders_);
    ASSERT_TRUE(reread.LoadAppSettings());
    NodeRef record = reread.Root().GetChildByName("DischargeRecord");
    EXPECT_EQ(record.FindIndex("Old"), -1);
    EXPECT_EQ(record.GetTyped<int32_t>("Measurements", 0), 4);
}

TEST_F(AppSettingsTest, SectionsAndNestedPaths) {
    AppSettings settings(folders_);
    EXPECT_TRUE(settings.Section("Commuications/GPS").SameNode(settings.Communications().GetChildByName("GPS")));
    EXPECT_EQ(settings.Root().FindIndex("Communications"), -1);  // the stored key keeps its spelling
    EXPECT_GE(settings.Root().FindIndex("Commuications"), 0);
}

// Restores one environment variable when it goes out of scope.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        if (value) {
            setenv(name, value, 1);
        } else {
            unsetenv(name);
        }
    }
    ~ScopedEnv() {
        if (old_) {
            setenv(name_, old_->c_str(), 1);
        } else {
            unsetenv(name_);
        }
    }

private:
    const char* name_;
    std::optional<std::string> old_;
};

TEST(PlatformUserFolders, FollowTheEnvironment) {
    {
        ScopedEnv config("XDG_CONFIG_HOME", "/tmp/cfg-here");
        ScopedEnv docs("XDG_DOCUMENTS_DIR", "/tmp/docs-here");
        UserFolders folders = PlatformUserFolders();
        EXPECT_EQ(folders.configHome, "/tmp/cfg-here");
        EXPECT_EQ(folders.documentsDir, "/tmp/docs-here");
    }
    ScopedEnv home("HOME", "/home/hydro");
    ScopedEnv config("XDG_CONFIG_HOME", nullptr);
    ScopedEnv docs("XDG_DOCUMENTS_DIR", "");
    UserFolders folders = PlatformUserFolders();
    EXPECT_EQ(folders.configHome, "/home/hydro/.config");
    EXPECT_EQ(folders.documentsDir, "/home/hydro/Documents");
}

}  // namespace
}  // namespace rm
