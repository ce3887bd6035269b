#include "link/command_log.h"

#include <sys/stat.h>

#include <cstdio>

namespace rm {

CommandLog::CommandLog(const std::string& path) {
    if (path.empty()) return;
    struct stat st {};
    if (::stat(path.c_str(), &st) == 0 && static_cast<uint64_t>(st.st_size) >= kCommandLogRotateBytes) {
        std::rename(path.c_str(), (path + ".old").c_str());
    }
    file_ = std::fopen(path.c_str(), "ab");
}

CommandLog::~CommandLog() {
    if (file_) std::fclose(file_);
}

void CommandLog::Write(const std::string& text) {
    if (file_ && !text.empty()) std::fwrite(text.data(), 1, text.size(), file_);
}

}  // namespace rm
