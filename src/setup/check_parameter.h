#pragma once
// The rule checker of the user setup. Each rule is named by the key it checks (or by the range
// test it makes) and reads the values it needs from the `System` node: `Setup`, `Other`,
// `Options`, the instrument's `Oper` limits and `Conf` (frequency index, temperature sensor).
// Nothing is written to the tree by a check.

#include <string>
#include <vector>

#include "data/node_tree.h"

namespace rm {

inline constexpr const char* kParameterNotFound = "Parameter not found.";

struct ParameterCheck {
    int result = 1;                         // 1 valid, 0 invalid
    std::string message = kParameterNotFound;  // the text to show when invalid
    bool known = false;                     // the name is one the checker knows
    bool Valid() const { return result != 0; }
};

// Checks one rule. An unknown name is valid and keeps "Parameter not found.". A declination out
// of range sets its text but stays valid. Lengths in the messages follow `Other/UnitSystem`
// (1 metric, else feet). A stored value that cannot be read as a number makes the rule invalid
// with a message naming the problem instead of throwing.
ParameterCheck CheckParameter(const std::string& name, const NodeRef& system);

// The rule names in the checker's order.
const std::vector<std::string>& CheckedParameterNames();

struct RuleFailure {
    std::string rule;
    std::string message;
};

// Every rule in the checker's order; the failed ones with their messages.
std::vector<RuleFailure> CheckSetup(const NodeRef& system);

}  // namespace rm
