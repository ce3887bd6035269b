#include "sim/sim_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace rm::sim {

namespace {

int StatusOf(int status) {
    if (WIFEXITED(status)) return WEXITSTATUS(status);
    if (WIFSIGNALED(status)) return 128 + WTERMSIG(status);
    return -1;
}

}  // namespace

std::string KvrSimProgram() {
    const char* dir = std::getenv("RM_BIN_DIR");
    return std::string(dir != nullptr && *dir != '\0' ? dir : "build/bin") + "/kvr-sim";
}

SimDeviceProcess::~SimDeviceProcess() { Stop(); }

bool SimDeviceProcess::Start(const std::string& program, const std::vector<std::string>& args,
                             const std::string& stderrPath, int timeoutMs) {
    Stop();
    error_.clear();
    devicePath_.clear();
    int out[2];
    if (pipe(out) != 0) {
        error_ = std::string("cannot make a pipe: ") + std::strerror(errno);
        return false;
    }
    std::vector<std::string> argv{program};
    argv.insert(argv.end(), args.begin(), args.end());
    std::vector<char*> cargs;
    for (std::string& a : argv) cargs.push_back(a.data());
    cargs.push_back(nullptr);

    pid_ = fork();
    if (pid_ < 0) {
        error_ = std::string("cannot start a process: ") + std::strerror(errno);
        close(out[0]);
        close(out[1]);
        return false;
    }
    if (pid_ == 0) {
        dup2(out[1], STDOUT_FILENO);
        close(out[0]);
        close(out[1]);
        if (!stderrPath.empty()) {
            const int err = open(stderrPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            if (err >= 0) dup2(err, STDERR_FILENO);
        }
        execv(program.c_str(), cargs.data());
        _exit(127);
    }
    close(out[1]);
    stdoutFd_ = out[0];

    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    std::string line;
    while (std::chrono::steady_clock::now() < deadline) {
        pollfd p{stdoutFd_, POLLIN, 0};
        if (poll(&p, 1, 50) <= 0) continue;
        char c;
        const ssize_t n = read(stdoutFd_, &c, 1);
        if (n <= 0) break;  // the child ended or closed its output
        if (c == '\n') {
            devicePath_ = line;
            return true;
        }
        line.push_back(c);
    }
    error_ = "the device path did not come" + (line.empty() ? std::string() : " (got \"" + line + "\")");
    Stop();
    return false;
}

int SimDeviceProcess::WaitForExit(int limitMs) {
    if (pid_ <= 0) return -1;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(limitMs);
    for (;;) {
        int status = 0;
        if (waitpid(pid_, &status, WNOHANG) == pid_) {
            pid_ = -1;
            if (stdoutFd_ >= 0) close(stdoutFd_);
            stdoutFd_ = -1;
            return StatusOf(status);
        }
        if (std::chrono::steady_clock::now() >= deadline) return -1;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

int SimDeviceProcess::Stop(int limitMs) {
    if (pid_ <= 0) return -1;
    kill(pid_, SIGTERM);
    int status = WaitForExit(limitMs);
    if (status == -1 && pid_ > 0) {
        kill(pid_, SIGKILL);
        status = WaitForExit(5000);
    }
    return status;
}

}  // namespace rm::sim
