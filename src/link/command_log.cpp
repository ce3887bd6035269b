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
    file_.Open(path, TextFile::Mode::Append);
}

CommandLog::~CommandLog() = default;

void CommandLog::Write(const std::string& text) {
    file_.Put(text);
}

}  // namespace rm
