#include "link/posix_serial_port.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>

namespace rm {

namespace {

// Device majors of the Unix 98 pseudo-terminal slaves, which carry no break condition.
constexpr unsigned kPtySlaveMajorFirst = 136;
constexpr unsigned kPtySlaveMajorLast = 143;

// How long the reader rests when the far end of the line has gone (a closed pseudo-terminal
// master reports a hang-up on every poll).
constexpr auto kHangupRest = std::chrono::milliseconds(20);

std::string SystemError(const std::string& what, int err) {
    return what + ": " + std::strerror(err);
}

}  // namespace

bool PosixSpeedFromBaud(int baud, unsigned& speed) {
    struct Entry {
        int baud;
        speed_t speed;
    };
    static const Entry kSpeeds[] = {
        {300, B300},       {600, B600},       {1200, B1200},     {2400, B2400},
        {4800, B4800},     {9600, B9600},     {19200, B19200},   {38400, B38400},
        {57600, B57600},   {115200, B115200}, {230400, B230400}, {460800, B460800},
        {921600, B921600},
    };
    for (const Entry& e : kSpeeds) {
        if (e.baud == baud) {
            speed = e.speed;
            return true;
        }
    }
    return false;
}

PosixSerialPort::PosixSerialPort(const std::string& path, int baud, char parity, int dataBits,
                                 int stopBits, int rxBufferSize)
    : path_(path), ring_(static_cast<size_t>(rxBufferSize > 0 ? rxBufferSize : 1)) {
    unsigned speed = 0;
    if (!PosixSpeedFromBaud(baud, speed)) {
        status_ = kSerialBadSetting;
        error_ = "The baud rate " + std::to_string(baud) + " is not supported on " + path;
        return;
    }
    fd_ = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (fd_ < 0) {
        int err = errno;
        status_ = (err == ENOENT || err == ENXIO || err == ENODEV) ? kSerialNoSuchPort
                                                                   : kSerialCannotOpen;
        error_ = SystemError("Cannot open " + path, err);
        return;
    }
    if (!::isatty(fd_)) {
        status_ = kSerialNoSuchPort;
        error_ = path + " is not a serial port";
        Close();
        return;
    }
    // One program at a time on a line: a second opener finds the port busy.
    if (::flock(fd_, LOCK_EX | LOCK_NB) != 0) {
        status_ = kSerialCannotOpen;
        error_ = path + " is in use by another program";
        Close();
        return;
    }
    struct stat st {};
    if (::fstat(fd_, &st) == 0 && S_ISCHR(st.st_mode)) {
        unsigned maj = major(st.st_rdev);
        isPseudoTerminal_ = maj >= kPtySlaveMajorFirst && maj <= kPtySlaveMajorLast;
    }
    int configured = Configure(baud, parity, dataBits, stopBits);
    if (configured != kSerialOk) {
        status_ = configured;
        Close();
        return;
    }
    if (::pipe2(wakePipe_, O_CLOEXEC | O_NONBLOCK) != 0) {
        status_ = kSerialIoError;
        error_ = SystemError("Cannot start the reader of " + path, errno);
        Close();
        return;
    }
    ::tcflush(fd_, TCIOFLUSH);  // bytes from before the open belong to nobody
    status_ = kSerialOk;
    reader_ = std::thread([this] { ReaderLoop(); });
}

PosixSerialPort::~PosixSerialPort() { Close(); }

int PosixSerialPort::Configure(int baud, char parity, int dataBits, int stopBits) {
    termios t {};
    if (::tcgetattr(fd_, &t) != 0) {
        error_ = SystemError("Cannot read the settings of " + path_, errno);
        return kSerialIoError;
    }
    ::cfmakeraw(&t);
    t.c_cflag |= CLOCAL | CREAD;
    t.c_cflag &= ~(CRTSCTS | CSIZE | CSTOPB | PARENB | PARODD | CMSPAR);
    t.c_iflag &= ~(IXON | IXOFF | IXANY);
    switch (dataBits) {
        case 5: t.c_cflag |= CS5; break;
        case 6: t.c_cflag |= CS6; break;
        case 7: t.c_cflag |= CS7; break;
        case 8: t.c_cflag |= CS8; break;
        default:
            error_ = std::to_string(dataBits) + " data bits are not supported";
            return kSerialBadSetting;
    }
    if (stopBits == 2) {
        t.c_cflag |= CSTOPB;
    } else if (stopBits != 1) {
        error_ = std::to_string(stopBits) + " stop bits are not supported";
        return kSerialBadSetting;
    }
    switch (parity) {
        case 'N': break;
        case 'E': t.c_cflag |= PARENB; break;
        case 'O': t.c_cflag |= PARENB | PARODD; break;
        case 'M': t.c_cflag |= PARENB | CMSPAR | PARODD; break;
        case 'S': t.c_cflag |= PARENB | CMSPAR; break;
        default:
            error_ = std::string("The parity '") + parity + "' is not supported";
            return kSerialBadSetting;
    }
    t.c_cc[VMIN] = 0;
    t.c_cc[VTIME] = 0;
    unsigned speed = 0;
    PosixSpeedFromBaud(baud, speed);
    if (::cfsetispeed(&t, speed) != 0 || ::cfsetospeed(&t, speed) != 0) {
        error_ = SystemError("Cannot set the baud rate of " + path_, errno);
        return kSerialIoError;
    }
    if (::tcsetattr(fd_, TCSANOW, &t) == 0) return kSerialOk;
    if (isPseudoTerminal_) {
        // A pseudo-terminal has no character framing, and some kernels refuse parity or short
        // characters on it; the line is then set up with 8 data bits and no parity.
        t.c_cflag &= ~(CSIZE | PARENB | PARODD | CMSPAR);
        t.c_cflag |= CS8;
        if (::tcsetattr(fd_, TCSANOW, &t) == 0) return kSerialOk;
    }
    error_ = SystemError("Cannot set the line settings of " + path_, errno);
    return kSerialIoError;
}

bool PosixSerialPort::IsOpen() const { return status_ == kSerialOk && fd_ >= 0; }

void PosixSerialPort::Close() {
    if (reader_.joinable()) {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            stopping_ = true;
        }
        roomFreed_.notify_all();
        char wake = 1;
        ssize_t ignored = ::write(wakePipe_[1], &wake, 1);
        (void)ignored;
        reader_.join();
    }
    for (int& p : wakePipe_) {
        if (p >= 0) ::close(p);
        p = -1;
    }
    std::lock_guard<std::mutex> lock(mutex_);
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    head_ = count_ = 0;
}

void PosixSerialPort::PullLocked() {
    bool added = false;
    while (fd_ >= 0 && count_ < ring_.size()) {
        size_t tail = (head_ + count_) % ring_.size();
        size_t room = (tail >= head_ ? ring_.size() - tail : head_ - tail);
        if (room > ring_.size() - count_) room = ring_.size() - count_;
        ssize_t n = ::read(fd_, ring_.data() + tail, room);
        if (n > 0) {
            count_ += static_cast<size_t>(n);
            added = true;
            continue;
        }
        if (n < 0 && errno == EINTR) continue;
        break;  // nothing more now (EAGAIN), the far end is gone (EIO), or end of file
    }
    if (added) dataArrived_.notify_all();
}

uint8_t PosixSerialPort::PopLocked() {
    uint8_t b = ring_[head_];
    head_ = (head_ + 1) % ring_.size();
    --count_;
    roomFreed_.notify_all();
    return b;
}

void PosixSerialPort::ReaderLoop() {
    for (;;) {
        {
            std::unique_lock<std::mutex> lock(mutex_);
            roomFreed_.wait(lock, [this] { return stopping_ || count_ < ring_.size(); });
            if (stopping_) return;
        }
        pollfd fds[2] = {{fd_, POLLIN, 0}, {wakePipe_[0], POLLIN, 0}};
        int r = ::poll(fds, 2, -1);
        if (r < 0) {
            if (errno == EINTR) continue;
            return;
        }
        if (fds[1].revents != 0) return;
        std::unique_lock<std::mutex> lock(mutex_);
        size_t before = count_;
        if (fds[0].revents & POLLIN) PullLocked();
        if (count_ == before && (fds[0].revents & (POLLHUP | POLLERR | POLLNVAL))) {
            roomFreed_.wait_for(lock, kHangupRest, [this] { return stopping_; });
            if (stopping_) return;
        }
    }
}

int PosixSerialPort::RxCount() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!IsOpen()) return kSerialNotOpen;
    PullLocked();
    return static_cast<int>(count_);
}

int PosixSerialPort::ReadChar() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!IsOpen()) return kSerialNotOpen;
    if (count_ == 0) PullLocked();
    return count_ == 0 ? kSerialNoData : PopLocked();
}

int PosixSerialPort::PeekChar() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!IsOpen()) return kSerialNotOpen;
    if (count_ == 0) PullLocked();
    return count_ == 0 ? kSerialNoData : ring_[head_];
}

int PosixSerialPort::ReadBuffer(uint8_t* dst, int count) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!IsOpen()) return kSerialNotOpen;
    PullLocked();
    int n = 0;
    while (n < count && count_ > 0) dst[n++] = PopLocked();
    return n;
}

int PosixSerialPort::ClearRXBuffer() {
    std::lock_guard<std::mutex> lock(mutex_);
    if (!IsOpen()) return kSerialNotOpen;
    ::tcflush(fd_, TCIFLUSH);
    head_ = count_ = 0;
    roomFreed_.notify_all();
    return kSerialOk;
}

int PosixSerialPort::WaitForRx(uint32_t limitMs) {
    std::unique_lock<std::mutex> lock(mutex_);
    if (!IsOpen()) return kSerialNotOpen;
    PullLocked();
    dataArrived_.wait_for(lock, std::chrono::milliseconds(limitMs),
                          [this] { return count_ > 0 || stopping_; });
    return static_cast<int>(count_);
}

int PosixSerialPort::WriteBufferTimed(const uint8_t* bytes, int count, uint32_t limitMs) {
    if (!IsOpen()) return kSerialNotOpen;
    uint32_t start = TickMs();
    int done = 0;
    while (done < count) {
        ssize_t n = ::write(fd_, bytes + done, static_cast<size_t>(count - done));
        if (n > 0) {
            done += static_cast<int>(n);
            continue;
        }
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 && errno != EAGAIN && errno != EWOULDBLOCK) return kSerialIoError;
        int wait = -1;
        if (limitMs != kNoLimit) {
            uint32_t elapsed = TicksSince(start, TickMs());
            if (elapsed >= limitMs) return kSerialWriteTimeout;
            wait = static_cast<int>(limitMs - elapsed);
        }
        pollfd out = {fd_, POLLOUT, 0};
        if (::poll(&out, 1, wait) < 0 && errno != EINTR) return kSerialIoError;
    }
    return count;
}

int PosixSerialPort::ClearTxBuffer() {
    if (!IsOpen()) return kSerialNotOpen;
    return ::tcflush(fd_, TCOFLUSH) == 0 ? kSerialOk : kSerialIoError;
}

int PosixSerialPort::SendBreak(uint32_t durationMs) {
    if (!IsOpen()) return kSerialNotOpen;
    if (isPseudoTerminal_) {
        // A pseudo-terminal has no break condition. A receiving UART reads a break as one zero
        // byte, so that byte goes out in its place and the line is held for the duration, which
        // lets a simulated instrument on the other end see the break.
        uint8_t zero = 0;
        if (WriteBufferTimed(&zero, 1, durationMs + 100) < 0) return kSerialIoError;
        SleepMs(durationMs);
        return kSerialOk;
    }
    // The duration is rounded up to whole tenths of a second by the terminal layer.
    return ::tcsendbreak(fd_, static_cast<int>(durationMs)) == 0 ? kSerialOk : kSerialIoError;
}

void PosixSerialPort::SleepMs(uint32_t ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

uint32_t PosixSerialPort::TickMs() {
    auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<uint32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

// --- factory

std::vector<std::string> PosixSerialPortFactory::DefaultPortPaths() {
    return {"/dev/ttyUSB0", "/dev/ttyUSB1", "/dev/ttyUSB2", "/dev/ttyUSB3",
            "/dev/ttyACM0", "/dev/ttyACM1", "/dev/ttyS0",   "/dev/ttyS1"};
}

void PosixSerialPortFactory::SetDefaultBufferSize(int rxSize, int /*txSize*/) {
    // The kernel keeps its own transmit buffer; only the receive ring is ours to size.
    rxSize_ = rxSize;
}

std::unique_ptr<SerialPort> PosixSerialPortFactory::PortOpen(const std::string& path, int baud,
                                                             char parity, int dataBits,
                                                             int stopBits) {
    return std::make_unique<PosixSerialPort>(path, baud, parity, dataBits, stopBits, rxSize_);
}

std::string PosixSerialPortFactory::PortPath(int index) const {
    if (index < 0 || index >= static_cast<int>(paths_.size())) return {};
    return paths_[index];
}

}  // namespace rm
