#include "cli/recording_folder.h"

#include <filesystem>

#include "app/app_settings.h"

namespace rm::cli {

std::string RecordingFolderFromSettings(UserPrompt& prompt) {
    namespace fs = std::filesystem;
    AppSettings app;
    std::error_code error;
    const bool settingsExisted = fs::exists(app.SettingsPath(), error);
    app.LoadAppSettings();
    if (!settingsExisted) app.SaveAppSettings(prompt);
    std::string folder = app.Get(app_keys::RecordedFileDirectory);
    if (folder.empty() || !fs::is_directory(folder, error)) {
        prompt.Message("Cannot make the recording folder " + folder);
        return {};
    }
    if (folder.back() != '/') folder.push_back('/');
    return folder;
}

}  // namespace rm::cli
