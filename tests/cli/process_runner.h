#pragma once
// Runs the project's programs as child processes for the command-line tests: captures their
// output, their exit status, and whether a signal ended them. A child that hangs is ended by an
// alarm, which shows up as a signal, so a hang fails a test instead of stalling the suite.

#include <string>
#include <vector>

namespace rm::test {

struct ProcessResult {
    int exitStatus = -1;  // valid when signal == 0
    int signal = 0;       // the signal that ended the process, 0 when it exited
    std::string out;
    std::string err;

    bool Exited() const { return signal == 0; }
    // "exit N" or "signal N" with the first line of stderr, for failure messages.
    std::string Describe() const;
};

// The folder of the built programs: $RM_BIN_DIR, else "build/bin".
std::string BinDir();

// Runs BinDir()/program with the arguments. The alarm bounds its run time in seconds.
ProcessResult RunProgram(const std::string& program, const std::vector<std::string>& args,
                         unsigned alarmSeconds = 60);

// A fresh folder under the system's temporary folder, removed with its contents on destruction.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::string& path() const { return path_; }
    std::string File(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

std::vector<unsigned char> ReadFileBytes(const std::string& path);
void WriteFileBytes(const std::string& path, const std::vector<unsigned char>& bytes);

}  // namespace rm::test
