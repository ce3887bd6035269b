#include "link/serial_port.h"

namespace rm {

namespace {

// Milliseconds of `limitMs` still left since `start`; 0 once the limit has passed.
uint32_t Remaining(SerialPort& port, uint32_t start, uint32_t limitMs) {
    uint32_t elapsed = TicksSince(start, port.TickMs());
    return elapsed >= limitMs ? 0 : limitMs - elapsed;
}

}  // namespace

int SerialPort::ReadCharTimed(uint32_t limitMs) {
    uint32_t start = TickMs();
    for (;;) {
        int c = ReadChar();
        if (c != kSerialNoData) return c;  // a byte, or a failure of the port
        uint32_t left = Remaining(*this, start, limitMs);
        if (left == 0) return kSerialTimeout;
        WaitForRx(left);
    }
}

int SerialPort::ReadBufferTimed(uint8_t* dst, int count, uint32_t limitMs) {
    if (!IsOpen()) return kSerialNotOpen;
    uint32_t start = TickMs();
    int got = 0;
    while (got < count) {
        got += ReadBuffer(dst + got, count - got);
        if (got == count) break;
        uint32_t left = Remaining(*this, start, limitMs);
        if (left == 0) break;
        WaitForRx(left);
    }
    return got;
}

int SerialPort::ReadStringTimed(std::string& out, int maxLen, int terminator, uint32_t limitMs) {
    out.clear();
    if (!IsOpen()) return kSerialNotOpen;
    uint32_t start = TickMs();
    while (static_cast<int>(out.size()) < maxLen) {
        // The limit bounds the whole read, so a line that never ends cannot hold it longer.
        uint32_t left = Remaining(*this, start, limitMs);
        if (left == 0) break;
        int c = ReadCharTimed(left);
        if (c < 0) break;
        if (terminator == kLineEnd) {
            if (out.empty() && (c == '\r' || c == '\n')) continue;
            out.push_back(static_cast<char>(c));
            if (c == '\n') break;
        } else {
            out.push_back(static_cast<char>(c));
            if (terminator >= 0 && c == terminator) break;
        }
    }
    return static_cast<int>(out.size());
}

int SerialPort::WriteStringTimed(const std::string& text, int terminator, uint32_t limitMs) {
    std::string line = text;
    if (terminator >= 0 && terminator <= 0xFF) line.push_back(static_cast<char>(terminator));
    return WriteBufferTimed(reinterpret_cast<const uint8_t*>(line.data()),
                            static_cast<int>(line.size()), limitMs);
}

int SerialPort::WriteCharTimed(uint8_t byte, uint32_t limitMs) {
    int r = WriteBufferTimed(&byte, 1, limitMs);
    return r < 0 ? r : kSerialOk;
}

int SerialPort::WriteString(const std::string& text, int terminator) {
    return WriteStringTimed(text, terminator, kNoLimit);
}

int SerialPort::WriteBuffer(const uint8_t* bytes, int count) {
    return WriteBufferTimed(bytes, count, kNoLimit);
}

}  // namespace rm
