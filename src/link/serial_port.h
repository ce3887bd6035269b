#pragma once
// The serial layer that everything talking to hardware goes through: one abstract port with
// untimed and timed reads and writes, the receive count, buffer clearing, break, and the two
// time services (sleep and millisecond tick). Keeping time behind the port lets a scripted port
// run a whole instrument dialogue in virtual time while the POSIX port sleeps for real.
//
// Status results follow one rule: 0 or a count on success, a negative kSerial... code on failure.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace rm {

constexpr int kSerialOk = 0;
constexpr int kSerialIoError = -1;       // the operating system refused a read, write or setting
constexpr int kSerialCannotOpen = -2;    // the port exists but cannot be had (busy, no permission)
constexpr int kSerialNoSuchPort = -3;    // there is no device of that name
constexpr int kSerialBadSetting = -4;    // unsupported baud rate, parity, data or stop bits
constexpr int kSerialNotOpen = -5;       // the port was never opened or has been closed
constexpr int kSerialNoData = -6;        // an untimed read found nothing waiting
constexpr int kSerialWriteTimeout = -7;  // a timed write could not hand over all bytes in time
constexpr int kSerialTimeout = -8;       // a timed read of one byte saw its limit pass

// Terminator values of the string operations. `kLineEnd` on a read ends the text after a line
// feed (line-end bytes before the first other byte are skipped, so the line feed that follows an
// echoed carriage return never reads as an empty answer); on a write it adds nothing.
// `kNoTerminator` reads until the length is full or the limit passes. A value from 0 to 255 is
// a terminating byte, kept in the text on a read and appended on a write.
constexpr int kLineEnd = -2;
constexpr int kNoTerminator = -1;

// A time limit that never passes, for the untimed writes.
constexpr uint32_t kNoLimit = 0xFFFFFFFFu;

// Milliseconds from `start` to `now` of a wrapping 32-bit tick.
inline uint32_t TicksSince(uint32_t start, uint32_t now) { return now - start; }

class SerialPort {
public:
    virtual ~SerialPort() = default;

    // Status of the open: kSerialOk, or the negative reason it failed.
    virtual int Status() const = 0;
    virtual bool IsOpen() const = 0;
    // The device path or name the port was opened with.
    virtual std::string Name() const = 0;
    // Words for the person when the open failed; empty otherwise.
    virtual std::string ErrorText() const = 0;
    virtual void Close() = 0;

    // --- receive side, no waiting
    virtual int RxCount() = 0;
    // The next received byte (0..255) and removes it; kSerialNoData when none waits.
    virtual int ReadChar() = 0;
    // The next received byte without removing it; kSerialNoData when none waits.
    virtual int PeekChar() = 0;
    // Copies up to `count` waiting bytes; returns how many.
    virtual int ReadBuffer(uint8_t* dst, int count) = 0;
    virtual int ClearRXBuffer() = 0;
    // Waits until at least one received byte waits or `limitMs` passes; returns RxCount().
    virtual int WaitForRx(uint32_t limitMs) = 0;

    // --- transmit side
    // Writes `count` bytes within `limitMs` (kNoLimit: no limit); returns `count` or negative.
    virtual int WriteBufferTimed(const uint8_t* bytes, int count, uint32_t limitMs) = 0;
    virtual int ClearTxBuffer() = 0;
    // Holds the line in break for `durationMs`.
    virtual int SendBreak(uint32_t durationMs) = 0;

    // --- time
    virtual void SleepMs(uint32_t ms) = 0;
    virtual uint32_t TickMs() = 0;

    // --- operations built on the ones above, the same for every port
    // Next byte (0..255), or kSerialTimeout when `limitMs` passes first.
    int ReadCharTimed(uint32_t limitMs);
    // Reads `count` bytes or stops at the limit; returns the number read.
    int ReadBufferTimed(uint8_t* dst, int count, uint32_t limitMs);
    // Reads text into `out` (replaced): at most `maxLen` bytes, ending at the terminator (see
    // kLineEnd), when the length is full or at the limit. Returns the number of bytes stored.
    int ReadStringTimed(std::string& out, int maxLen, int terminator, uint32_t limitMs);
    int WriteStringTimed(const std::string& text, int terminator, uint32_t limitMs);
    int WriteCharTimed(uint8_t byte, uint32_t limitMs);
    // Untimed writes: they wait as long as the line takes.
    int WriteString(const std::string& text, int terminator);
    int WriteBuffer(const uint8_t* bytes, int count);
};

// The library side of the serial layer: buffer sizes for later opens, the open itself, and the
// device paths that stand behind the port numbers 0 to 7 of the port scan.
class SerialPortFactory {
public:
    virtual ~SerialPortFactory() = default;
    // Receive and transmit buffer sizes for ports opened afterwards.
    virtual void SetDefaultBufferSize(int rxSize, int txSize) = 0;
    // Always returns a port object; its Status() tells whether the open succeeded.
    virtual std::unique_ptr<SerialPort> PortOpen(const std::string& path, int baud, char parity,
                                                 int dataBits, int stopBits) = 0;
    // The device path of a port number; empty when the number has none.
    virtual std::string PortPath(int index) const = 0;
};

}  // namespace rm
