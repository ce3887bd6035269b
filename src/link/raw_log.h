#pragma once
// The optional raw serial log: an open byte-stream file to which every byte received from the
// instrument is copied as it is. The caller opens it, hands it to the dialogue functions (or
// hands none), and owns it; the file is closed when the object goes.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace rm {

class RawLog {
public:
    // Opens `path` for appending; IsOpen() tells whether that worked.
    explicit RawLog(const std::string& path);
    ~RawLog();
    RawLog(const RawLog&) = delete;
    RawLog& operator=(const RawLog&) = delete;

    bool IsOpen() const { return file_ != nullptr; }
    void Write(uint8_t byte);
    void Write(const void* bytes, size_t count);
    void Write(const std::string& text) { Write(text.data(), text.size()); }
    void Flush();

private:
    std::FILE* file_;
};

// Copies to `log` when there is one; the dialogue functions take a log or none (nullptr).
inline void CopyToRawLog(RawLog* log, uint8_t byte) {
    if (log) log->Write(byte);
}
inline void CopyToRawLog(RawLog* log, const std::string& text) {
    if (log) log->Write(text);
}

}  // namespace rm
