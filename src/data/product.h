#pragma once
// The program's name and version as it shows them in messages, titles and reports.

namespace rm {

constexpr const char* kProgramName = "Quorle Ripplemark";
constexpr const char* kProgramVersion = "v4.50";

}  // namespace rm
