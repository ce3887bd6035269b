#pragma once
// Applying the user's values to the `System` node one key at a time, or several together, in
// the form "Setup/NumberOfCells=20" or "NumberOfCells=20". A value is stored only when it
// converts to the key's type, meets the field limits and passes every rule the key takes part
// in; a refused value leaves the tree exactly as it was and tells the rule and its message.

#include <optional>
#include <string>
#include <vector>

#include "data/node_tree.h"
#include "data/variant.h"
#include "setup/setup_keys.h"

namespace rm {

struct SettingChange {
    const SetupKey* key = nullptr;
    Variant value;  // of the key's type
};

// Reads "Node/Key=Value" or "Key=Value". The key is matched without regard to case; a node,
// when given, must be the key's own; keys that the instrument tells are refused. Numbers must
// be finite and, for whole-number keys, whole and within the stored type. Text after the first
// '=' is the value as it stands. On failure returns nothing and sets `message`.
std::optional<SettingChange> ParseSetting(const std::string& text, std::string& message);

struct ApplyResult {
    bool applied = false;
    std::string key;      // the key that was refused; empty when applied
    std::string rule;     // the checker's rule that refused it; empty when refused before the rules
    std::string message;  // the text to show; empty when applied
};

// The checker's rules to run after a change of `key`, in the checker's order: its own rule, the
// range tests for the cell layout, the profiling interval for the averaging interval and bottom
// track.
std::vector<std::string> RulesAffectedBy(const std::string& key);

ApplyResult ApplySetting(const NodeRef& system, const std::string& assignment);

// All values are stored together and the rules of all of them checked; the first failure in the
// checker's order takes all of them back. So settings that depend on each other (the averaging
// and the profiling interval) can be changed in one step.
ApplyResult ApplySettings(const NodeRef& system, const std::vector<std::string>& assignments);

}  // namespace rm
