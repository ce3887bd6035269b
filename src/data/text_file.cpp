#include "data/text_file.h"

#include <cerrno>
#include <cstdarg>
#include <utility>
#include <vector>

namespace rm {

namespace {
constexpr int kUnknownWriteError = EIO;
}

std::string TextFileBytes(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() + text.size() / 16 + 1);
    for (const char c : text) {
        if (c == '\n') bytes += '\r';
        bytes += c;
    }
    return bytes;
}

TextFile::~TextFile() {
    if (file_ != nullptr) std::fclose(file_);
}

TextFile::TextFile(TextFile&& other) noexcept
    : file_(std::exchange(other.file_, nullptr)), error_(std::exchange(other.error_, 0)) {}

TextFile& TextFile::operator=(TextFile&& other) noexcept {
    if (this != &other) {
        if (file_ != nullptr) std::fclose(file_);
        file_ = std::exchange(other.file_, nullptr);
        error_ = std::exchange(other.error_, 0);
    }
    return *this;
}

bool TextFile::Open(const std::string& path, Mode mode) {
    if (file_ != nullptr) std::fclose(file_);
    error_ = 0;
    // Binary mode: the line ends are made here, the same on every platform.
    file_ = std::fopen(path.c_str(), mode == Mode::Append ? "ab" : "wb");
    if (file_ == nullptr) error_ = errno != 0 ? errno : kUnknownWriteError;
    return file_ != nullptr;
}

void TextFile::Fail() {
    if (error_ == 0) error_ = errno != 0 ? errno : kUnknownWriteError;
}

void TextFile::PutBytes(std::string_view bytes) {
    if (file_ == nullptr || error_ != 0 || bytes.empty()) return;
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size()) Fail();
}

void TextFile::Put(std::string_view text) { PutBytes(TextFileBytes(text)); }

void TextFile::Write(const char* format, ...) {
    if (file_ == nullptr || error_ != 0) return;
    char small[512];
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    const int length = std::vsnprintf(small, sizeof small, format, args);
    va_end(args);
    if (length < 0) {
        va_end(again);
        Fail();
        return;
    }
    if (static_cast<size_t>(length) < sizeof small) {
        va_end(again);
        Put(std::string_view(small, static_cast<size_t>(length)));
        return;
    }
    std::vector<char> large(static_cast<size_t>(length) + 1);
    std::vsnprintf(large.data(), large.size(), format, again);
    va_end(again);
    Put(std::string_view(large.data(), static_cast<size_t>(length)));
}

bool TextFile::Close() {
    if (file_ == nullptr) return false;
    errno = 0;
    if (std::fflush(file_) != 0) Fail();
    errno = 0;
    if (std::fclose(file_) != 0) Fail();
    file_ = nullptr;
    return error_ == 0;
}

}  // namespace rm
