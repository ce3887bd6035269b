#pragma once
// What is allowed in a setup but unwise, listed before a collection starts, and the question
// asked before a change of declination throws away the data held.

#include <string>
#include <vector>

#include "data/node_tree.h"
#include "data/user_prompt.h"

namespace rm {

inline constexpr const char* kWarningsCaption = "Warnings";
inline constexpr const char* kDeclinationChangeQuestion =
    "Changing Magnetic Declination will restart the data set at Profile 1\nDo you wish to proceed?";

// The warnings' texts in their order; none when `showUserWarnings` is off. A stored value that
// cannot be read as a number counts as not set.
std::vector<std::string> CollectionWarnings(const NodeRef& system, bool showUserWarnings);

// True when the declination may change: at once when no data are held or the value stays the
// same, otherwise as the user answers the question.
bool ConfirmDeclinationChange(UserPrompt& prompt, bool dataHeld, double oldDeclination, double newDeclination);

}  // namespace rm
