#include "cli/json_output.h"

#include <cstdio>
#include <string>

namespace rm::cli {

void PrintJson(const nlohmann::json& value, int indent) {
    PrintText(value.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}

void PrintText(const std::string& text) { std::fwrite(text.data(), 1, text.size(), stdout); }

}  // namespace rm::cli
