#pragma once
// The receive-side building blocks of every instrument dialogue: draining the line, reads that
// copy what they take to the raw log, the wait for a pattern, one character sent and confirmed
// by its echo, counted waits for bytes, and the handling of the 0xE8 byte that the line gives in
// place of a real first byte of an answer. Waits are counted in the port's own time.

#include "link/raw_log.h"
#include "link/serial_port.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace rm {

// The byte the line gives in place of a real first byte of an answer; skipped where an answer
// begins and counted apart where a binary length is read.
constexpr uint8_t kReplyMarker = 0xE8;

// Where the banner of a waking instrument scrolls in for the person to see.
class DisplayWindow {
public:
    virtual ~DisplayWindow() = default;
    virtual void Append(char c) = 0;
};

// The limit of the drains inside the dialogue, unless a step gives another.
constexpr uint32_t kDrainLimitMs = 50;

// Reads and drops waiting bytes (copied to the raw log) until none waits: 0; -1 when more than
// `limitMs` passes first or the port cannot be read.
int DrainReceive(SerialPort& port, uint32_t limitMs, RawLog* raw);

// ReadStringTimed and ReadBufferTimed that copy what they read to the raw log.
int ReadStringLogged(SerialPort& port, std::string& out, int maxLen, int terminator,
                     uint32_t limitMs, RawLog* raw);
int ReadBufferLogged(SerialPort& port, uint8_t* dst, int count, uint32_t limitMs, RawLog* raw);

// Takes at most one byte a round, each round at least a 1 ms sleep, appending to `buffer` (which
// keeps what it held before) and to the window, until `pattern` stands anywhere in the buffer
// (1), the buffer holds `bufferSize` bytes (0), or `rounds` are used up (0).
int ReadUntilPattern(SerialPort& port, std::string& buffer, size_t bufferSize,
                     const std::string& pattern, int rounds, DisplayWindow* window, RawLog* raw);

// Sends one character and reads its echo into `echo`; true if a byte came back in time.
bool SendCharEchoed(SerialPort& port, char c, char& echo, RawLog* raw);

// Up to `maxWaits` sleeps of `stepMs` while fewer than `minCount` bytes wait; true once they do.
bool WaitForRxCount(SerialPort& port, int minCount, int maxWaits, uint32_t stepMs = 5);

// Takes a waiting 0xE8 off the front of the receive buffer (copied to the raw log); true if one
// was there.
bool SkipReplyMarker(SerialPort& port, RawLog* raw);

// Reads the two little-endian length bytes that open a binary block, dropping 0xE8 bytes before
// and between them; each byte read is copied to the raw log. Returns the length, or -1 when a
// fifth 0xE8 is dropped or a byte is missing. A length byte that is itself 0xE8 is dropped too:
// the line gives no way to tell it from the marker.
int ReadBlockLength(SerialPort& port, RawLog* raw);

}  // namespace rm
