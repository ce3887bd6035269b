#include "cli/console_input.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace rm::cli {

ConsoleInput::ConsoleInput() {
    if (isatty(STDIN_FILENO) && tcgetattr(STDIN_FILENO, &saved_) == 0) {
        termios raw = saved_;
        cfmakeraw(&raw);
        raw.c_oflag = saved_.c_oflag;  // output keeps its line handling, so "\n" still starts a line
        raw_ = tcsetattr(STDIN_FILENO, TCSANOW, &raw) == 0;
    }
}

ConsoleInput::~ConsoleInput() {
    if (raw_) tcsetattr(STDIN_FILENO, TCSANOW, &saved_);
}

bool ConsoleInput::Poll(std::string& bytes) {
    if (ended_) return false;
    for (;;) {
        pollfd fd{STDIN_FILENO, POLLIN, 0};
        const int ready = ::poll(&fd, 1, 0);
        if (ready < 0 && errno == EINTR) continue;
        if (ready <= 0) return true;
        char buffer[256];
        const ssize_t got = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (got < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (got <= 0) {
            ended_ = true;
            return false;
        }
        bytes.append(buffer, static_cast<size_t>(got));
        if (static_cast<size_t>(got) < sizeof buffer) return true;
    }
}

}  // namespace rm::cli
