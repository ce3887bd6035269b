#pragma once
// Starts a kvr-sim device (instrument, gps, echo) as a child process for tests and tools: waits
// for the device path it prints on its first line, and ends it again, by SIGTERM and, if it does
// not go within a limit, SIGKILL. The destructor ends a child that is still running, so a
// failing test never leaves one behind.

#include <sys/types.h>

#include <string>
#include <vector>

namespace rm::sim {

// The kvr-sim program: $RM_BIN_DIR/kvr-sim, else "build/bin/kvr-sim".
std::string KvrSimProgram();

class SimDeviceProcess {
public:
    SimDeviceProcess() = default;
    ~SimDeviceProcess();
    SimDeviceProcess(const SimDeviceProcess&) = delete;
    SimDeviceProcess& operator=(const SimDeviceProcess&) = delete;

    // Runs `program` with `args` (e.g. {"instrument", "--interval", "0.1"}); stderr goes to
    // `stderrPath` (empty: inherited). True once the device path has been read within
    // `timeoutMs`; otherwise the child is ended and Error() says why.
    bool Start(const std::string& program, const std::vector<std::string>& args, const std::string& stderrPath = {},
               int timeoutMs = 10000);

    const std::string& DevicePath() const { return devicePath_; }
    const std::string& Error() const { return error_; }
    bool Running() const { return pid_ > 0; }

    // Ends the child: SIGTERM, then SIGKILL after `limitMs`. Returns its exit status, 128 + the
    // signal that ended it, or -1 when none was running.
    int Stop(int limitMs = 3000);
    // Waits up to `limitMs` for the child to end by itself; its status as Stop gives it, or -1
    // when it is still running.
    int WaitForExit(int limitMs);

private:
    pid_t pid_ = -1;
    int stdoutFd_ = -1;
    std::string devicePath_;
    std::string error_;
};

}  // namespace rm::sim
