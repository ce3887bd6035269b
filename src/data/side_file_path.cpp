#include "data/side_file_path.h"

#include <cctype>

namespace rm {

std::string SideFilePath(const std::string& dataPath, const std::string& extension) {
    static const std::string kDataExtension = ".kvr";
    if (dataPath.size() >= kDataExtension.size()) {
        const size_t at = dataPath.size() - kDataExtension.size();
        bool matches = true;
        for (size_t i = 0; i < kDataExtension.size(); ++i) {
            const char c = static_cast<char>(std::tolower(static_cast<unsigned char>(dataPath[at + i])));
            matches = matches && c == kDataExtension[i];
        }
        if (matches) return dataPath.substr(0, at) + extension;
    }
    return dataPath + extension;
}

}  // namespace rm
