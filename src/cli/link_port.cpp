#include "cli/link_port.h"

#include "link/port_record.h"
#include "link/posix_serial_port.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace rm::cli {

std::unique_ptr<SerialPort> OpenLinkPort(SerialPortFactory& factory, const std::string& path, int baud,
                                         std::string& error) {
    factory.SetDefaultBufferSize(kSerialBufferSize, kSerialBufferSize);
    std::unique_ptr<SerialPort> port = factory.PortOpen(path, baud, 'N', 8, 1);
    if (port && port->Status() == kSerialOk && port->IsOpen()) return port;
    const std::string reason = port ? port->ErrorText() : std::string();
    error = "Cannot open port " + path + (reason.empty() ? std::string() : ": " + reason);
    if (port) port->Close();
    return nullptr;
}

void AddInstrumentPortOptions(CLI::App& sub, PortChoice& port) {
    sub.add_option("--port", port.path, "Device path of the instrument's port")->required();
    sub.add_option("--baud", port.baud, "Baud rate")->capture_default_str();
}

int RunOnSerialPorts(const std::function<int(SerialPortFactory&, UserPrompt&)>& command) {
    PosixSerialPortFactory factory;
    CommandPrompt prompt(std::cerr);
    return command(factory, prompt);
}

std::unique_ptr<SerialPort> OpenChosenPort(SerialPortFactory& factory, const PortChoice& choice, UserPrompt& prompt) {
    std::string error;
    std::unique_ptr<SerialPort> port = OpenLinkPort(factory, choice.path, choice.baud, error);
    if (!port) prompt.Message(error);
    return port;
}

std::string TerminalLineEnds(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        out.push_back(text[i]);
    }
    return out;
}

void StreamWindow::Append(char c) {
    out_.put(c);
    if (c == '\n') out_.flush();
}

void CommandPrompt::Message(const std::string& text) { err_ << TerminalLineEnds(text) << '\n'; }

void CommandPrompt::TitledMessage(const std::string& title, const std::string& text) {
    err_ << title << ": " << TerminalLineEnds(text) << '\n';
}

bool CommandPrompt::AskYesNo(const std::string& question) {
    err_ << TerminalLineEnds(question) << (answerYes_ ? " [Yes]" : " [No]") << '\n';
    return answerYes_;
}

}  // namespace rm::cli
