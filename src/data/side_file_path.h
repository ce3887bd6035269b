#pragma once
// The names of a recording's companion files, made from the data file's path.

#include <string>

namespace rm {

// The data file's path with its ".kvr" extension (any case) replaced by `extension`
// (".pmk", ".cfg", ...). A path without that extension gets `extension` appended, so a side
// file never has the data file's own name.
std::string SideFilePath(const std::string& dataPath, const std::string& extension);

}  // namespace rm
