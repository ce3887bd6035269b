#include "link/raw_log.h"

namespace rm {

RawLog::RawLog(const std::string& path) : file_(std::fopen(path.c_str(), "ab")) {}

RawLog::~RawLog() {
    if (file_) std::fclose(file_);
}

void RawLog::Write(uint8_t byte) {
    if (file_) std::fputc(byte, file_);
}

void RawLog::Write(const void* bytes, size_t count) {
    if (file_ && count > 0) std::fwrite(bytes, 1, count, file_);
}

void RawLog::Flush() {
    if (file_) std::fflush(file_);
}

}  // namespace rm
