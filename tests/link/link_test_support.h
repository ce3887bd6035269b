#pragma once
// Shared pieces of the link tests: a scratch folder for log files and a scripted instrument that
// sits at its command prompt.

#include "link/scripted_port.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace rm::test {

// A fresh folder under the system's temporary folder, removed with the object.
class ScratchDir {
public:
    ScratchDir() {
        std::random_device rd;
        path_ = std::filesystem::temp_directory_path() /
                ("rm_link_test_" + std::to_string(rd()) + "_" + std::to_string(rd()));
        std::filesystem::create_directories(path_);
    }
    ~ScratchDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::string File(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

inline std::string ReadWholeFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Counts the non-overlapping occurrences of `what` in `text`.
inline int CountOf(const std::string& text, const std::string& what) {
    int n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size())) ++n;
    return n;
}

// An instrument awake at its prompt: it echoes every byte, answers an empty line and a blank
// with the prompt, and answers "Ver" with `verReply` (which should end with the prompt).
inline void ScriptAwakeInstrument(ScriptedPort& port, const std::string& verReply) {
    port.SetEcho(true);
    port.OnWrite("Ver\r", verReply, 0, true);
    port.OnWrite("\r", ">", 0, true);
    port.OnWrite(" ", ">", 0, true);
}

}  // namespace rm::test
