#pragma once
// Printing of the commands' JSON results. Texts taken from a file may hold any bytes; they are
// printed with invalid UTF-8 replaced rather than failing the whole output.

#include <nlohmann/json.hpp>

namespace rm::cli {

// Writes `value` to stdout followed by a newline: indented by `indent` spaces a level, or on
// one line when `indent` is negative (for long arrays of numbers).
void PrintJson(const nlohmann::json& value, int indent = 2);

}  // namespace rm::cli
