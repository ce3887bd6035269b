#include "sim/pseudo_terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>

namespace rm::sim {

namespace {

speed_t SpeedOf(int baud) {
    switch (baud) {
        case 1200: return B1200;
        case 2400: return B2400;
        case 4800: return B4800;
        case 9600: return B9600;
        case 19200: return B19200;
        case 38400: return B38400;
        case 57600: return B57600;
        case 115200: return B115200;
        case 230400: return B230400;
        default: return B0;
    }
}

void RestMs(int ms) {
    timespec t{ms / 1000, static_cast<long>(ms % 1000) * 1000000L};
    nanosleep(&t, nullptr);
}

std::string SystemError(const char* what) { return std::string(what) + ": " + std::strerror(errno); }

}  // namespace

PseudoTerminal::~PseudoTerminal() { Close(); }

bool PseudoTerminal::Open(int baud, const std::string& linkPath) {
    Close();
    master_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (master_ < 0) {
        error_ = SystemError("cannot open a pseudo-terminal");
        return false;
    }
    if (grantpt(master_) != 0 || unlockpt(master_) != 0) {
        error_ = SystemError("cannot unlock the pseudo-terminal");
        Close();
        return false;
    }
    const char* name = ptsname(master_);
    if (name == nullptr) {
        error_ = SystemError("cannot name the pseudo-terminal");
        Close();
        return false;
    }
    slavePath_ = name;
    // Raw mode is set through a short-lived slave descriptor; the settings stay with the
    // terminal while the master is open.
    const int slave = open(slavePath_.c_str(), O_RDWR | O_NOCTTY);
    if (slave < 0) {
        error_ = SystemError("cannot open the pseudo-terminal's slave");
        Close();
        return false;
    }
    termios tio{};
    bool ok = tcgetattr(slave, &tio) == 0;
    if (ok) {
        cfmakeraw(&tio);
        tio.c_cflag |= CLOCAL | CREAD;
        tio.c_cc[VMIN] = 0;
        tio.c_cc[VTIME] = 0;
        const speed_t speed = SpeedOf(baud);
        if (speed != B0) {
            cfsetispeed(&tio, speed);
            cfsetospeed(&tio, speed);
        }
        ok = tcsetattr(slave, TCSANOW, &tio) == 0;
    }
    if (!ok) error_ = SystemError("cannot set the pseudo-terminal to raw mode");
    close(slave);
    if (!ok) {
        Close();
        return false;
    }
    if (!linkPath.empty()) {
        struct stat st{};
        if (lstat(linkPath.c_str(), &st) == 0) {
            if (!S_ISLNK(st.st_mode)) {
                error_ = "cannot make the link " + linkPath + ": a file that is not a link stands there";
                Close();
                return false;
            }
            unlink(linkPath.c_str());
        }
        if (symlink(slavePath_.c_str(), linkPath.c_str()) != 0) {
            error_ = SystemError(("cannot make the link " + linkPath).c_str());
            Close();
            return false;
        }
        linkPath_ = linkPath;
    }
    return true;
}

void PseudoTerminal::Close() {
    if (!linkPath_.empty()) {
        // Only our own link is removed.
        char target[512];
        const ssize_t n = readlink(linkPath_.c_str(), target, sizeof target - 1);
        if (n > 0 && std::string(target, static_cast<size_t>(n)) == slavePath_) unlink(linkPath_.c_str());
        linkPath_.clear();
    }
    if (master_ >= 0) close(master_);
    master_ = -1;
}

bool PseudoTerminal::PeerOpen() const {
    if (master_ < 0) return false;
    pollfd p{master_, 0, 0};
    if (poll(&p, 1, 0) < 0) return false;
    return (p.revents & POLLHUP) == 0;
}

bool PseudoTerminal::WaitReadable(int timeoutMs) {
    if (master_ < 0) return false;
    pollfd p{master_, POLLIN, 0};
    const int r = poll(&p, 1, timeoutMs);
    if (r <= 0) return false;
    if (p.revents & POLLIN) return true;
    // A closed peer reports a hang-up at once; rest instead of spinning.
    RestMs(timeoutMs < 20 ? timeoutMs : 20);
    return false;
}

long PseudoTerminal::Read(uint8_t* buffer, size_t size) {
    if (master_ < 0) return -1;
    const ssize_t n = read(master_, buffer, size);
    if (n >= 0) return static_cast<long>(n);
    if (errno == EAGAIN || errno == EWOULDBLOCK || errno == EIO || errno == EINTR) return 0;
    return -1;
}

size_t PseudoTerminal::Write(const uint8_t* data, size_t size, int timeoutMs) {
    size_t done = 0;
    int waited = 0;
    while (master_ >= 0 && done < size) {
        const ssize_t n = write(master_, data + done, size - done);
        if (n > 0) {
            done += static_cast<size_t>(n);
            continue;
        }
        if (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR) break;
        if (waited >= timeoutMs) break;
        pollfd p{master_, POLLOUT, 0};
        poll(&p, 1, 5);
        waited += 5;
    }
    return done;
}

}  // namespace rm::sim
