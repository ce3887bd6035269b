// The instrument commands of ripplemark-cli against the simulated instrument on a
// pseudo-terminal, as a person would run them.

#include "cli/process_runner.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace rm::test {
namespace {

// Starts `kvr-sim instrument` and reads the device path it prints first; the simulator is
// ended when the object goes.
class SimulatedInstrument {
public:
    SimulatedInstrument() {
        int fds[2];
        if (pipe(fds) != 0) return;
        pid_ = fork();
        if (pid_ == 0) {
            dup2(fds[1], STDOUT_FILENO);
            close(fds[0]);
            close(fds[1]);
            alarm(120);  // never outlives a broken test run
            const std::string program = BinDir() + "/kvr-sim";
            execl(program.c_str(), program.c_str(), "instrument", static_cast<char*>(nullptr));
            _exit(127);
        }
        close(fds[1]);
        char c;
        while (read(fds[0], &c, 1) == 1 && c != '\n') path_.push_back(c);
        out_ = fds[0];
    }
    ~SimulatedInstrument() {
        if (pid_ > 0) {
            kill(pid_, SIGTERM);
            waitpid(pid_, nullptr, 0);
        }
        if (out_ >= 0) close(out_);
    }
    const std::string& Path() const { return path_; }

private:
    pid_t pid_ = -1;
    int out_ = -1;
    std::string path_;
};

TEST(LinkCommandPtyTest, WakeCheckAndClockTalkToTheSimulatedInstrument) {
    SimulatedInstrument instrument;
    ASSERT_EQ(instrument.Path().rfind("/dev/", 0), 0u) << instrument.Path();

    ProcessResult wake = RunProgram("ripplemark-cli", {"wake", "--port", instrument.Path()}, 30);
    ASSERT_TRUE(wake.Exited()) << wake.Describe();
    EXPECT_EQ(wake.exitStatus, 0) << wake.Describe();
    EXPECT_EQ(wake.out, "Finding KVR on " + instrument.Path() + "\nOpening " + instrument.Path() +
                            "\nCommunications Parameters set\nKVR in standby mode\n");

    ProcessResult check = RunProgram("ripplemark-cli", {"check", "--port", instrument.Path()}, 30);
    EXPECT_EQ(check.exitStatus, 0) << check.Describe();
    EXPECT_NE(check.out.find("KVR on " + instrument.Path() + ": Found - click to check again\nThe KVR is operating "
                             "correctly.\n"),
              std::string::npos);

    ProcessResult clock = RunProgram("ripplemark-cli", {"clock", "--port", instrument.Path()}, 30);
    EXPECT_EQ(clock.exitStatus, 0) << clock.Describe();
    EXPECT_NE(clock.out.find("Instrument: "), std::string::npos);
}

TEST(LinkCommandPtyTest, APortThatIsNotThereFailsWithItsMessage) {
    ProcessResult wake = RunProgram("ripplemark-cli", {"wake", "--port", "/dev/no-such-port"}, 30);
    EXPECT_EQ(wake.exitStatus, 1) << wake.Describe();
    EXPECT_NE(wake.out.find("Cannot locate KVR on /dev/no-such-port"), std::string::npos);
    ProcessResult clock = RunProgram("ripplemark-cli", {"clock", "--port", "/dev/no-such-port"}, 30);
    EXPECT_EQ(clock.exitStatus, 1) << clock.Describe();
    EXPECT_NE(clock.err.find("Cannot open port /dev/no-such-port"), std::string::npos);
}

}  // namespace
}  // namespace rm::test
