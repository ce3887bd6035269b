#pragma once
// The search for the instrument behind the finding dialog: open the port, wake what is there and
// say what was found, in three text lines that the dialog shows. Ports are named by their device
// path. A search over several candidate ports and baud rates runs the same steps on each in turn.

#include "data/user_prompt.h"
#include "link/command_log.h"
#include "link/port_record.h"

#include <array>
#include <string>
#include <vector>

namespace rm {

// The three text lines of the finding dialog (0, 1, 2).
class FindingView {
public:
    virtual ~FindingView() = default;
    virtual void SetLine(int line, const std::string& text) = 0;
};

// Keeps the lines, and every change in order, for a caller without a window.
class FindingLines : public FindingView {
public:
    std::array<std::string, 3> lines;
    std::vector<std::string> history;  // every text set, in order
    void SetLine(int line, const std::string& text) override;
};

struct FindOutcome {
    int openResult = 0;   // of OpenPortRecord: 1 open, 0 no such port, -1 other failure
    bool woken = false;   // the wake-up ran
    int wakeResult = 0;   // of WakeAndReport, when it ran
    bool success = false; // a KVR or Hullstar answered: the dialog closes
};

// One search on the record's port at the record's baud rate, no parity, 8 data bits, 1 stop bit.
// The port stays open in every outcome of the wake-up; the lines say what happened.
FindOutcome FindInstrument(SerialPortFactory& factory, SerialPortRecord& record, UserPrompt& prompt,
                           FindingView& view, const std::string& commandLogPath = kCommandLogName);

struct PortCandidate {
    std::string path;
    int baud;
};

// The record's own port first, then the factory's numbered ports, each at the record's rate.
std::vector<PortCandidate> DefaultCandidates(const SerialPortRecord& record,
                                             const SerialPortFactory& factory);

// Runs FindInstrument on each candidate in order until an instrument answers with a result of
// its own family or of a sibling family (2, 3, 4 or 8); the record then names that port and
// rate, with the port open. Wake-up failures of the candidates on the way are not shown, only
// their lines. When nothing answers the record is left closed with its former path and rate.
FindOutcome FindInstrumentOnPorts(SerialPortFactory& factory, SerialPortRecord& record,
                                  const std::vector<PortCandidate>& candidates, UserPrompt& prompt,
                                  FindingView& view,
                                  const std::string& commandLogPath = kCommandLogName);

}  // namespace rm
