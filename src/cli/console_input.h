#pragma once
// The keyboard of the terminal command: standard input read without waiting. When it is a
// terminal it is put in raw mode (every key at once, no echo, no signals from Ctrl-C) for the
// object's life, so the instrument sees exactly what is typed; the mode is restored at the end.

#include "link/terminal.h"

#include <termios.h>

namespace rm::cli {

class ConsoleInput : public TerminalInput {
public:
    ConsoleInput();
    ~ConsoleInput() override;
    ConsoleInput(const ConsoleInput&) = delete;
    ConsoleInput& operator=(const ConsoleInput&) = delete;

    bool Poll(std::string& bytes) override;
    bool IsRaw() const { return raw_; }

private:
    bool raw_ = false;
    bool ended_ = false;
    termios saved_{};
};

}  // namespace rm::cli
