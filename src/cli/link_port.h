#pragma once
// What every instrument command of the command-line tool shares: opening a serial port by its
// device path with the system's settings, a screen that writes to a stream, and line ends made
// fit for a terminal.

#include "data/user_prompt.h"
#include "link/logged_reads.h"
#include "link/serial_port.h"

#include <functional>
#include <memory>
#include <ostream>
#include <string>

namespace CLI {
class App;
}

namespace rm::cli {

constexpr int kDefaultInstrumentBaud = 9600;
constexpr int kDefaultNmeaBaud = 4800;

struct PortChoice {
    std::string path;  // empty: none chosen
    int baud = kDefaultInstrumentBaud;
};

// Adds the required --port and the --baud option of the instrument's port to a command.
void AddInstrumentPortOptions(CLI::App& sub, PortChoice& port);

// Runs a link command on the machine's serial ports, with the link's messages on stderr.
int RunOnSerialPorts(const std::function<int(SerialPortFactory&, UserPrompt&)>& command);

// Opens the chosen port; when it cannot be had, tells why through `prompt` and gives null.
std::unique_ptr<SerialPort> OpenChosenPort(SerialPortFactory& factory, const PortChoice& choice, UserPrompt& prompt);

// Opens `path` at `baud`, no parity, 8 data bits, 1 stop bit, with the system's buffer size.
// Null with `error` set when the port cannot be had.
std::unique_ptr<SerialPort> OpenLinkPort(SerialPortFactory& factory, const std::string& path, int baud,
                                         std::string& error);

// The instrument's texts end lines in "\r\n"; a terminal or a file wants "\n".
std::string TerminalLineEnds(const std::string& text);

// A display window that writes every character to a stream as it comes.
class StreamWindow : public DisplayWindow {
public:
    explicit StreamWindow(std::ostream& out) : out_(out) {}
    void Append(char c) override;

private:
    std::ostream& out_;
};

// Messages of the link on the error stream, titled ones as "title: text"; progress is not shown
// (a command's output stays readable); questions get a fixed answer and save dialogs are
// cancelled.
class CommandPrompt : public UserPrompt {
public:
    explicit CommandPrompt(std::ostream& err, bool answerYes = false) : err_(err), answerYes_(answerYes) {}
    void Message(const std::string& text) override;
    void TitledMessage(const std::string& title, const std::string& text) override;
    bool AskYesNo(const std::string& question) override;
    std::string AskSavePath(const std::string&, const std::string&, const std::string&) override { return {}; }
    void Progress(int, int, const std::string&) override {}

private:
    std::ostream& err_;
    bool answerYes_;
};

}  // namespace rm::cli
