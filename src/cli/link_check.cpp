#include "cli/link_commands.h"

#include "cli/command.h"
#include "link/connection_check.h"

#include <memory>

namespace rm::cli {

namespace {

// One device's port, opened when one was chosen; a port that cannot be opened counts as not
// chosen for this run, as the dialog does.
struct DevicePort {
    std::unique_ptr<SerialPort> port;
    std::string error;
    bool chosen = false;
};

DevicePort OpenDevice(SerialPortFactory& factory, const PortChoice& choice) {
    DevicePort device;
    device.chosen = !choice.path.empty();
    if (device.chosen) device.port = OpenLinkPort(factory, choice.path, choice.baud, device.error);
    return device;
}

class Report {
public:
    explicit Report(std::ostream& out) : out_(out) {}

    void Disabled(int device, const DevicePort& port) {
        out_ << ConnectionDeviceName(device) << ": Disabled";
        if (!port.error.empty()) out_ << " (" << port.error << ")";
        out_ << '\n';
        if (port.chosen) allFound_ = false;
    }
    void Outcome(int device, const std::string& where, const CheckOutcome& outcome) {
        out_ << ConnectionDeviceName(device) << " on " << where << ": " << ConnectionStateText(outcome.state) << '\n'
             << TerminalLineEnds(outcome.text) << '\n';
        if (outcome.state != ConnectionState::Found) allFound_ = false;
    }
    bool AllFound() const { return allFound_; }

private:
    std::ostream& out_;
    bool allFound_ = true;
};

}  // namespace

int RunCheckCommand(SerialPortFactory& factory, const CheckChoices& choices, UserPrompt& prompt, std::ostream& out) {
    Report report(out);
    KvrCheckFacts facts;

    DevicePort instrument = OpenDevice(factory, choices.instrument);
    std::unique_ptr<PromptDialogue> dialogue;
    if (instrument.port) dialogue = std::make_unique<PromptDialogue>(*instrument.port, prompt, "");
    if (dialogue) {
        report.Outcome(kDeviceKvr, choices.instrument.path, CheckKvr(dialogue.get(), facts));
    } else {
        report.Disabled(kDeviceKvr, instrument);
    }
    if (choices.internalGps) {
        const std::string where = choices.instrument.path.empty() ? "the KVR's port" : choices.instrument.path;
        report.Outcome(kDeviceInternalGps, where,
                       CheckInternalGps(dialogue.get(), facts, nullptr, choices.listenMs));
    }

    DevicePort gps = OpenDevice(factory, choices.externalGps);
    if (gps.port) {
        report.Outcome(kDeviceExternalGps, choices.externalGps.path,
                       CheckExternalGps(gps.port.get(), nullptr, choices.listenMs));
    } else {
        report.Disabled(kDeviceExternalGps, gps);
    }

    DevicePort echo = OpenDevice(factory, choices.echoSounder);
    if (echo.port) {
        report.Outcome(kDeviceEchoSounder, choices.echoSounder.path,
                       CheckEchoSounder(echo.port.get(), EchoSounderSettings{}, nullptr, choices.listenMs));
    } else {
        report.Disabled(kDeviceEchoSounder, echo);
    }
    return report.AllFound() ? kExitOk : kExitFailure;
}

}  // namespace rm::cli
