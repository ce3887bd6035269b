#include "cli/process_runner.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace rm::test {

namespace {

// An unnamed temporary file: the child's output goes there rather than into a pipe, so a chatty
// child can never block on a full pipe, and nothing is left to clean up.
std::FILE* AnonymousFile() {
    std::FILE* file = std::tmpfile();
    if (file == nullptr) throw std::runtime_error("tmpfile failed");
    return file;
}

std::string ReadAll(std::FILE* file) {
    std::string text;
    char buffer[65536];
    std::rewind(file);
    for (size_t got; (got = std::fread(buffer, 1, sizeof buffer, file)) > 0;) text.append(buffer, got);
    std::fclose(file);
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
    std::FILE* out = AnonymousFile();
    std::FILE* err = AnonymousFile();
    const std::string exe = BinDir() + "/" + program;

    std::vector<std::string> argStore;
    argStore.push_back(exe);
    argStore.insert(argStore.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& a : argStore) argv.push_back(a.data());
    argv.push_back(nullptr);

    pid_t pid = fork();
    if (pid < 0) {
        std::fclose(out);
        std::fclose(err);
        throw std::runtime_error("fork failed");
    }
    if (pid == 0) {
        if (dup2(fileno(out), STDOUT_FILENO) < 0 || dup2(fileno(err), STDERR_FILENO) < 0) _exit(127);
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
    result.out = ReadAll(out);
    result.err = ReadAll(err);
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
