#pragma once
// TextFile: a file the program writes as text. The program's text files carry the line ends of
// the platform it was made on, carriage return and line feed, so that a file moves between
// machines and tools byte for byte unchanged: every "\n" of the text is written as "\r\n".
// Bytes that must not be touched (text already holding its own "\r\n") go through PutBytes.
//
// Failures are kept, not thrown: the first failed write or close is remembered with its errno
// (ENOSPC for a full disk), later writes are skipped, and Close reports the outcome, so that a
// caller can show its message ("Error writing to file") once at the end.

#include <cstdio>
#include <string>
#include <string_view>

namespace rm {

class TextFile {
public:
    enum class Mode { Create, Append };

    TextFile() = default;
    ~TextFile();
    TextFile(TextFile&& other) noexcept;
    TextFile& operator=(TextFile&& other) noexcept;
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    // Creates the file anew (Create) or opens it for adding at its end, creating it when
    // missing (Append). An open file is closed first. False when it cannot be opened.
    bool Open(const std::string& path, Mode mode = Mode::Create);
    bool IsOpen() const { return file_ != nullptr; }

    // printf-style; each "\n" of the formatted text becomes "\r\n".
    void Write(const char* format, ...) __attribute__((format(printf, 2, 3)));
    // The text as it stands (no formatting); each "\n" becomes "\r\n".
    void Put(std::string_view text);
    // The bytes as they are.
    void PutBytes(std::string_view bytes);

    // No write has failed so far (and the file is open or was closed cleanly).
    bool Good() const { return error_ == 0; }
    // errno of the first failure, 0 when none.
    int Error() const { return error_; }
    // Closes the file. False when it was not open, or when a write or the close failed.
    bool Close();

private:
    void Fail();

    std::FILE* file_ = nullptr;
    int error_ = 0;
};

// The text with each "\n" turned into "\r\n": the bytes a TextFile writes for it.
std::string TextFileBytes(std::string_view text);

}  // namespace rm
