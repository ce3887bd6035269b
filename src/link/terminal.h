#pragma once
// A raw terminal on the instrument's port: what the person types goes to the port, what the
// port sends goes to the screen, in turns, until the input ends or the exit key is typed. The
// keyboard and the screen are interfaces, so a program can use a console and a test a script.

#include "link/logged_reads.h"
#include "link/serial_port.h"

#include <cstdint>
#include <string>

namespace rm {

// The person's side: bytes typed since the last poll.
class TerminalInput {
public:
    virtual ~TerminalInput() = default;
    // Appends what has been typed to `bytes` without waiting. False once the input has ended
    // (what it appended in that call still counts).
    virtual bool Poll(std::string& bytes) = 0;
};

struct TerminalOptions {
    // Typed line feeds go out as carriage returns, the instrument's line end.
    bool lineFeedAsReturn = true;
    // Typing this byte ends the session (-1: none). The default is Ctrl-].
    int exitKey = 0x1D;
    // Typing this byte sends a break of breakMs instead (-1: none). The default is Ctrl-B.
    int breakKey = 0x02;
    uint32_t breakMs = 200;
    // Rest between turns in which nothing happened.
    uint32_t idleSleepMs = 10;
    // After the input ends, the port is still shown until it has been quiet this long.
    uint32_t quietAfterEndMs = 500;
};

constexpr int kTerminalEnded = 0;        // input ended or exit key
constexpr int kTerminalPortFailed = -1;  // a read or write of the port failed

// Runs the session: each turn passes the typed bytes to the port, then the waiting port bytes
// to `screen` (and the raw log). Returns when the input ends (after the port has gone quiet)
// or the exit key comes, or when the port fails.
int RunTerminal(SerialPort& port, TerminalInput& input, DisplayWindow& screen, const TerminalOptions& options = {},
                RawLog* raw = nullptr);

}  // namespace rm
