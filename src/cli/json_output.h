#pragma once
// Printing of the commands' results. Texts taken from a file may hold any bytes; in JSON they
// are printed with invalid UTF-8 replaced rather than failing the whole output.

#include <nlohmann/json.hpp>
#include <string>

namespace rm::cli {

// Writes `value` to stdout followed by a newline: indented by `indent` spaces a level, or on
// one line when `indent` is negative (for long arrays of numbers).
void PrintJson(const nlohmann::json& value, int indent = 2);

// Writes `text` to stdout as it is.
void PrintText(const std::string& text);

}  // namespace rm::cli
