#pragma once
// The single rules behind CheckParameter. Each looks at the tree through the reader and, when
// its rule fails, sets the check's result to 0 and its message.

#include "setup/check_parameter.h"
#include "setup/setup_keys.h"

namespace rm::rules {

struct RuleInputs {
    SetupTreeReader tree;
    bool metric;
};

// A rule failed: result 0 with its text.
inline void Refuse(ParameterCheck& check, std::string message) {
    check.result = 0;
    check.message = std::move(message);
}

void CheckNumberOfCells(const RuleInputs& in, ParameterCheck& check);
void CheckCellSize(const RuleInputs& in, ParameterCheck& check);
void CheckBlankingDistance(const RuleInputs& in, ParameterCheck& check);
void CheckAbsoluteProfilingRange(const RuleInputs& in, ParameterCheck& check);
void CheckProfilingRange(const RuleInputs& in, ParameterCheck& check);

}  // namespace rm::rules
