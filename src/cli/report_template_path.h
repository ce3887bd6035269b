#pragma once
// Where the report command finds the shipped report template when none is named.
//
// The template's name is the program's default "Reports\Summary-Standard.htm", a path relative
// to the installation (backslashes are read as '/'). It is looked for, in this order, in
//   1. the executable's folder,
//   2. the folder above it (bin/../Reports, the layout of a build or an installed prefix),
//   3. share/quorle-ripplemark below the folder above it (an installed prefix),
//   4. the source tree the program was built from.
// The first file that exists is taken.

#include <string>
#include <vector>

namespace rm::cli {

constexpr const char* kDefaultReportTemplate = "Reports\\Summary-Standard.htm";

// The candidate paths in their order, for an executable in `executableFolder` and a source tree
// at `sourceFolder` (either may be empty: it then gives no candidate).
std::vector<std::string> ReportTemplateCandidates(const std::string& relativeName, const std::string& executableFolder,
                                                  const std::string& sourceFolder);

// The first existing candidate for this executable and its source tree; empty when none exists,
// with `tried` holding the paths looked at.
std::string FindReportTemplate(const std::string& relativeName, std::vector<std::string>& tried);

}  // namespace rm::cli
