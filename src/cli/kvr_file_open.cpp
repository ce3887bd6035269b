#include "cli/kvr_file_open.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace rm::cli {

namespace {

OpenResult CannotOpen(const std::string& path, const std::string& reason) {
    return {OpenOutcome::CannotOpen, "Cannot open file: " + path + ": " + reason};
}

}  // namespace

OpenResult OpenKvrFile(const std::string& path, CKvrData& data) {
    std::error_code ec;
    const auto status = std::filesystem::status(path, ec);
    if (ec || !std::filesystem::exists(status)) return CannotOpen(path, "No such file or directory");
    // A folder opens with "rb" on some systems and then fails on the first read; say what it is.
    if (std::filesystem::is_directory(status)) return CannotOpen(path, "Is a directory");

    // The commands read at most one profile: one cache slot is enough.
    data.SetCacheCapacity(1);
    errno = 0;
    if (!data.OpenFile(path)) {
        return CannotOpen(path, errno != 0 ? std::strerror(errno) : "the file could not be opened");
    }
    if (data.Validate() != kReadOk || data.ReadHeader(false) != kReadOk) {
        data.CloseFile();
        return {OpenOutcome::NotKvrFile, kNotKvrFileMessage};
    }
    return {};
}

}  // namespace rm::cli
