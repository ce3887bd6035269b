#pragma once
// The command dialogue with an instrument at its text command line. The instrument prints a
// prompt, echoes every character it receives, and answers in text or binary blocks. A command
// goes out one character at a time, each confirmed by its echo, only after the line has gone
// quiet and a fresh prompt has been seen; the whole line is compared with its echo and sent
// again, up to ten times, when they differ. Every command is appended to "LogFile". The answer
// is not read here: the caller reads it under a limit of its own.

#include "data/user_prompt.h"
#include "link/command_log.h"
#include "link/raw_log.h"
#include "link/serial_port.h"

#include <cstdint>
#include <string>

namespace rm {

// The instrument's command prompt, passed by every caller.
constexpr char kInstrumentPrompt = '>';

class PromptDialogue {
public:
    // Failures are shown through `prompt`; `commandLogPath` is where "LogFile" lives (empty: no
    // command log).
    PromptDialogue(SerialPort& port, UserPrompt& prompt,
                   std::string commandLogPath = kCommandLogName);

    SerialPort& Port() { return port_; }
    UserPrompt& Prompt() { return prompt_; }
    const std::string& CommandLogPath() const { return commandLogPath_; }

    // Sends `command` and a carriage return. With `checkPrompt` an empty line goes first and the
    // prompt must answer it. 1 when the echo of the whole line was right; 0 otherwise (after a
    // message for a line that cannot be cleared or a prompt that does not come, silently after
    // ten bad echoes). Commands longer than 98 characters are refused with 0.
    int SendCommand(const std::string& command, char promptChar, bool checkPrompt, RawLog* raw);
    // SendCommand with the prompt '>' and the prompt check.
    int SendCommandNoWait(const std::string& command, RawLog* raw);
    // SendCommand, then reads lines for about `limitMs` until "OK" or "Default" has come: 1, or 0.
    int SendCommandWaitOk(const std::string& command, uint32_t limitMs, RawLog* raw);

private:
    SerialPort& port_;
    UserPrompt& prompt_;
    std::string commandLogPath_;
};

}  // namespace rm
