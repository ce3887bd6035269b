#include "cli/json_output.h"

#include <cstdio>
#include <string>

namespace rm::cli {

void PrintJson(const nlohmann::json& value, int indent) {
    const std::string text = value.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
}

}  // namespace rm::cli
