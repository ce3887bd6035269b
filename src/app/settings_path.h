#pragma once
// Changing one settings value by its path below a root: "Discharge/LeftBankMethod=1". The
// path names existing nodes and an existing key; the text is converted to the type the key
// already holds, so a change can never alter what kind of value a key stores.

#include <string>

#include "data/node_tree.h"

namespace rm {

struct SettingAssignment {
    bool ok = false;
    std::string message;  // why the assignment was refused
};

// Applies "PATH=VALUE" to the tree below `root`. Refused: text without '=', an empty path, a
// path through a missing node, a missing key, a key that holds a node, a value that does not
// convert to the key's type.
SettingAssignment AssignSetting(const NodeRef& root, const std::string& assignment);

}  // namespace rm
