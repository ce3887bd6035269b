#pragma once
// Shared pieces of the link tests: a scratch folder for log files, a display window that keeps
// its text, and a scripted instrument that sits at its command prompt.

#include "data/user_prompt.h"
#include "link/logged_reads.h"
#include "link/prompt_dialogue.h"
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

// An open request as "path baud parity data-bits stop-bits rx-size tx-size".
inline std::string OpenText(const ScriptedPortFactory::OpenRequest& o) {
    return o.path + " " + std::to_string(o.baud) + " " + o.parity + " " + std::to_string(o.dataBits) + " " +
           std::to_string(o.stopBits) + " " + std::to_string(o.rxSize) + " " + std::to_string(o.txSize);
}

class TextWindow : public DisplayWindow {
public:
    std::string text;
    void Append(char c) override { text.push_back(c); }
};

// The answer of an instrument to "Ver": the line between line ends, then the prompt.
inline std::string VerReply(const std::string& answer) { return "\r\n" + answer + "\r\n>"; }

// An instrument at its prompt that echoes and answers an empty line with the prompt.
inline void ScriptPromptingInstrument(ScriptedPort& port) {
    port.SetEcho(true);
    port.OnWrite("\r", ">", 0, true);
}

// Virtual time of SendCommand alone on a fresh instrument at its prompt.
inline uint64_t SendCommandTime(const std::string& command) {
    ScriptedPort twin;
    ScriptPromptingInstrument(twin);
    RecordingPrompt quiet;
    PromptDialogue d(twin, quiet, "");
    d.SendCommand(command, '>', true, nullptr);
    return twin.NowMs();
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
