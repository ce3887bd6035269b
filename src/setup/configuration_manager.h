#pragma once
// Named setups kept as ".scf" files: a tree with the two children `Other` and `Setup`, copies of
// those nodes of the `System` node. The files lie in one folder (the recording folder); a
// configuration's title is its file name without ".scf".

#include <string>
#include <vector>

#include "data/node_tree.h"
#include "data/user_prompt.h"

namespace rm {

inline constexpr const char* kConfigurationManagerTitle = "Configuration Manager";
inline constexpr const char* kLoadConfigurationCaption = "Load Configuration";
inline constexpr const char* kSaveConfigurationCaption = "Save Configuration";
inline constexpr const char* kConfigurationExtension = ".scf";
inline constexpr const char* kSaveConfigurationErrorText = "Error saving configuration.";

class ConfigurationManager {
public:
    // `folder` is the recording folder; messages and questions go to `prompt`.
    ConfigurationManager(std::string folder, UserPrompt& prompt);

    const std::string& Folder() const { return folder_; }

    // The folder + title + ".scf".
    std::string PathOf(const std::string& title) const;

    // The titles of the regular files named "*.scf" in the folder, read anew each call, sorted
    // without regard to case. A missing or unreadable folder gives an empty list.
    std::vector<std::string> List() const;

    // Loads the title's file and hangs its `Other` and `Setup` under `system` in place of the
    // present ones (an item is appended when `system` has none); a child the file lacks keeps the
    // present one. The values are not checked against the setup rules. Shows "Configuration
    // file: <title> has been loaded." or "Unable to load configuration file: <title>"; a failed
    // load (no such file, a damaged tree, neither child, a value that does not read as its key's
    // type) leaves `system` as it was.
    bool Load(const std::string& title, const NodeRef& system);

    // Saves `Other` and `Setup` of `system` (made when missing) as the name typed. An existing
    // file is replaced only when the user answers yes to "File <path> Already exists.\nOverwrite?".
    // The folder is made when missing. The file is written beside and renamed over the old one,
    // so a failure ("Error saving configuration.") leaves no damaged file.
    bool Save(const std::string& name, const NodeRef& system);

    // Removes the title's file; a failure shows "Unable to delete configuration file: <title>".
    bool Delete(const std::string& title);

    // A name that can stand as a file in the folder: not empty, without '/', '\\' or NUL.
    static bool IsUsableName(const std::string& name);

private:
    std::string folder_;
    UserPrompt& prompt_;
};

}  // namespace rm
