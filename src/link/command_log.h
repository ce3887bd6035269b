#pragma once
// "LogFile": the text file to which every command sent to the instrument is appended, with the
// echo that came back and a mark for each bad transmission. It is opened for one command and
// closed at its end, so a crash loses at most the command under way. A file that has grown past
// kCommandLogRotateBytes is renamed to "<path>.old" (replacing an older one) before the next
// command, so the log cannot fill the disk over the years.

#include <cstdint>
#include <string>

#include "data/text_file.h"

namespace rm {

// The file name, in the current folder unless the program gives another folder.
constexpr const char* kCommandLogName = "LogFile";
constexpr uint64_t kCommandLogRotateBytes = 8ull * 1024 * 1024;

class CommandLog {
public:
    // Opens `path` for appending, creating it when missing. A failed open leaves the log closed
    // and every write a no-op: the dialogue goes on unlogged.
    explicit CommandLog(const std::string& path);
    ~CommandLog();
    CommandLog(const CommandLog&) = delete;
    CommandLog& operator=(const CommandLog&) = delete;

    bool IsOpen() const { return file_.IsOpen(); }
    void Write(const std::string& text);

private:
    TextFile file_;  // a text file: each "\n" written is "\r\n" on disk
};

}  // namespace rm
