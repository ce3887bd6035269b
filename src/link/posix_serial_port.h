#pragma once
// A serial port on a POSIX terminal device: real adapters (/dev/ttyUSB0, /dev/ttyS0) and
// pseudo-terminals alike. The line runs raw, without echo or flow control, and ignores modem
// control lines. A reader thread moves received bytes into a bounded ring as they come, so that
// bytes keep arriving while the program sleeps between ticks; when the ring is full the thread
// stops taking bytes and the kernel keeps them, so nothing is dropped.

#include "link/serial_port.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace rm {

// The termios speed constant of a baud rate; false for a rate the system does not offer.
bool PosixSpeedFromBaud(int baud, unsigned& speed);

class PosixSerialPort : public SerialPort {
public:
    // Opens at once; Status() tells the outcome and ErrorText() why it failed.
    PosixSerialPort(const std::string& path, int baud, char parity, int dataBits, int stopBits,
                    int rxBufferSize);
    ~PosixSerialPort() override;
    PosixSerialPort(const PosixSerialPort&) = delete;
    PosixSerialPort& operator=(const PosixSerialPort&) = delete;

    int Status() const override { return status_; }
    bool IsOpen() const override;
    std::string Name() const override { return path_; }
    std::string ErrorText() const override { return error_; }
    void Close() override;
    int RxCount() override;
    int ReadChar() override;
    int PeekChar() override;
    int ReadBuffer(uint8_t* dst, int count) override;
    int ClearRXBuffer() override;
    int WaitForRx(uint32_t limitMs) override;
    int WriteBufferTimed(const uint8_t* bytes, int count, uint32_t limitMs) override;
    int ClearTxBuffer() override;
    int SendBreak(uint32_t durationMs) override;
    void SleepMs(uint32_t ms) override;
    uint32_t TickMs() override;

private:
    int Configure(int baud, char parity, int dataBits, int stopBits);
    void ReaderLoop();
    // Moves what the kernel holds into the ring, as far as it has room. Needs the lock.
    void PullLocked();
    uint8_t PopLocked();

    std::string path_;
    int status_ = kSerialNotOpen;
    std::string error_;
    int fd_ = -1;
    int wakePipe_[2] = {-1, -1};
    bool isPseudoTerminal_ = false;

    mutable std::mutex mutex_;
    std::condition_variable dataArrived_;
    std::condition_variable roomFreed_;
    std::vector<uint8_t> ring_;
    size_t head_ = 0;   // next byte to hand out
    size_t count_ = 0;  // bytes in the ring
    bool stopping_ = false;
    std::thread reader_;
};

// Opens PosixSerialPort objects; port numbers 0 to 7 stand for a list of device paths.
class PosixSerialPortFactory : public SerialPortFactory {
public:
    // "/dev/ttyUSB0" to "/dev/ttyUSB3", "/dev/ttyACM0", "/dev/ttyACM1", "/dev/ttyS0", "/dev/ttyS1".
    static std::vector<std::string> DefaultPortPaths();

    explicit PosixSerialPortFactory(std::vector<std::string> portPaths = DefaultPortPaths())
        : paths_(std::move(portPaths)) {}

    void SetDefaultBufferSize(int rxSize, int txSize) override;
    std::unique_ptr<SerialPort> PortOpen(const std::string& path, int baud, char parity,
                                         int dataBits, int stopBits) override;
    std::string PortPath(int index) const override;

private:
    std::vector<std::string> paths_;
    int rxSize_ = 8192;
};

}  // namespace rm
