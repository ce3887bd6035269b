#include "cli/process_runner.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace rm::test {

namespace {

// An unnamed file in the temporary folder: the child's output goes there rather than into a
// pipe, so a chatty child can never block on a full pipe, and nothing is left to clean up.
int AnonymousFile() {
    std::string pattern = (std::filesystem::temp_directory_path() / "rm-cli-output-XXXXXX").string();
    const int fd = mkstemp(pattern.data());
    if (fd < 0) throw std::runtime_error("mkstemp failed");
    unlink(pattern.c_str());
    return fd;
}

std::string ReadAll(int fd) {
    std::string text;
    char buffer[65536];
    lseek(fd, 0, SEEK_SET);
    for (ssize_t got; (got = read(fd, buffer, sizeof buffer)) > 0;) text.append(buffer, static_cast<size_t>(got));
    close(fd);
    return text;
}

}  // namespace

std::string ProcessResult::Describe() const {
    std::string text = signal != 0 ? "signal " + std::to_string(signal) : "exit " + std::to_string(exitStatus);
    std::string firstLine = err.substr(0, err.find('\n'));
    if (!firstLine.empty()) text += " (" + firstLine + ")";
    return text;
}

std::string BinDir() {
    const char* dir = std::getenv("RM_BIN_DIR");
    return dir != nullptr && *dir != '\0' ? dir : "build/bin";
}

ProcessResult RunProgram(const std::string& program, const std::vector<std::string>& args,
                         unsigned alarmSeconds) {
    const int outFd = AnonymousFile();
    const int errFd = AnonymousFile();
    const std::string exe = BinDir() + "/" + program;

    std::vector<std::string> argStore;
    argStore.push_back(exe);
    argStore.insert(argStore.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& a : argStore) argv.push_back(a.data());
    argv.push_back(nullptr);

    pid_t pid = fork();
    if (pid < 0) {
        close(outFd);
        close(errFd);
        throw std::runtime_error("fork failed");
    }
    if (pid == 0) {
        if (dup2(outFd, STDOUT_FILENO) < 0 || dup2(errFd, STDERR_FILENO) < 0) _exit(127);
        alarm(alarmSeconds);  // survives exec: a hanging program dies by SIGALRM
        execv(exe.c_str(), argv.data());
        _exit(127);
    }
    int status = 0;
    while (waitpid(pid, &status, 0) < 0) {
        if (errno != EINTR) throw std::runtime_error("waitpid failed");
    }
    ProcessResult result;
    if (WIFSIGNALED(status)) {
        result.signal = WTERMSIG(status);
    } else {
        result.exitStatus = WEXITSTATUS(status);
    }
    result.out = ReadAll(outFd);
    result.err = ReadAll(errFd);
    return result;
}

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "rm-cli-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("mkdtemp failed");
    path_ = pattern;
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::vector<unsigned char> ReadFileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteFileBytes(const std::string& path, const std::vector<unsigned char>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!out) throw std::runtime_error("cannot write " + path);
}

}  // namespace rm::test
