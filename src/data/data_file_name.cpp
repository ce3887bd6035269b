#include "data/data_file_name.h"

#include <sys/stat.h>

#include <cstdio>

#include "data/user_prompt.h"

namespace rm {

const char* const kDataFileFilter = "KVR Data files (.kvr)|*.kvr|";
const char* const kDataFileExtension = "kvr";

namespace {

constexpr int kLastFileNumber = 9999;

std::string WithExtension(const std::string& stem) { return stem + ".kvr"; }

// A name chosen in the save dialog without an extension gets the default one.
std::string WithDefaultExtension(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    const size_t dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) {
        return path + "." + kDataFileExtension;
    }
    return path;
}

}  // namespace

bool PathExists(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0;
}

std::string JoinPath(const std::string& directory, const std::string& name) {
    if (directory.empty() || directory.back() == '/') return directory + name;
    return directory + "/" + name;
}

std::string TimedStem(const std::string& name, const std::tm& t) {
    const int year = (t.tm_year + 1900) % 100;
    const int month = t.tm_mon + 1;
    char digits[128];
    std::snprintf(digits, sizeof digits, "%d%d%d%d%d%d%d%d%d%d", year / 10, year % 10, month / 10, month % 10,
                  t.tm_mday / 10, t.tm_mday % 10, t.tm_hour / 10, t.tm_hour % 10, t.tm_min / 10, t.tm_min % 10);
    return name + digits;
}

std::string NumberedPath(const std::string& directory, const std::string& name, const FileExists& exists) {
    std::string path = JoinPath(directory, WithExtension(name));
    if (!exists(path)) return path;
    char number[16];
    for (int i = 0; i <= kLastFileNumber; ++i) {
        std::snprintf(number, sizeof number, "%04d", i);
        path = JoinPath(directory, WithExtension(name + number));
        if (!exists(path)) return path;
    }
    return path;
}

std::string ChooseDataFilePath(const DataFileNameRequest& request, UserPrompt& prompt, const FileExists& exists) {
    const std::string& name = request.deploymentName;
    std::string path;
    switch (request.naming) {
        case FileNaming::Numbered:
            return NumberedPath(request.directory, name, exists);
        case FileNaming::Timed:
            path = JoinPath(request.directory, WithExtension(TimedStem(name, request.localTime)));
            break;
        case FileNaming::Plain:
            path = JoinPath(request.directory, WithExtension(name));
            break;
    }
    if (!exists(path)) return path;
    if (prompt.AskYesNo("File " + path + " Already exists.\nOverwrite?")) return path;
    const std::string chosen = prompt.AskSavePath(kDataFileFilter, kDataFileExtension, path);
    if (chosen.empty()) return {};
    return WithDefaultExtension(chosen);
}

std::FILE* OpenNewDataFile(const std::string& path, UserPrompt& prompt) {
    // First make the file exist and empty, then open it for reading and writing.
    std::FILE* created = std::fopen(path.c_str(), "wb");
    if (created == nullptr) {
        prompt.Message("Can not initialize File: " + path);
        return nullptr;
    }
    std::fclose(created);
    std::FILE* file = std::fopen(path.c_str(), "r+b");
    if (file == nullptr) {
        prompt.Message("Error opening file: " + path);
        return nullptr;
    }
    return file;
}

}  // namespace rm
