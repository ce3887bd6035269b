#pragma once
// The outcome of checking a dialog's fields before they are stored: either all pass, or the
// first failure with the exact message the user sees, the setting key of the field that gets
// the focus, and the message box title when the dialog uses one of its own.

#include <string>
#include <utility>

namespace rm {

struct DialogCheck {
    bool ok = true;
    std::string message;
    std::string field;
    std::string title;

    static DialogCheck Pass() { return DialogCheck{}; }
    static DialogCheck Fail(std::string fieldKey, std::string text, std::string boxTitle = std::string()) {
        return DialogCheck{false, std::move(text), std::move(fieldKey), std::move(boxTitle)};
    }
};

}  // namespace rm
