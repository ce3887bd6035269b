#include "link/instrument_finder.h"

#include "link/wake_up.h"

namespace rm {

namespace {

// An answer that ends the search: the instrument is ours, or one of a sibling family that the
// person must be told about.
bool EndsSearch(const FindOutcome& o) {
    return o.woken && (o.success || o.wakeResult == kWakeZsn || o.wakeResult == kWakeSkiffjack);
}

}  // namespace

void FindingLines::SetLine(int line, const std::string& text) {
    if (line < 0 || line >= static_cast<int>(lines.size())) return;
    lines[line] = text;
    history.push_back(text);
}

FindOutcome FindInstrument(SerialPortFactory& factory, SerialPortRecord& record, UserPrompt& prompt,
                           FindingView& view, const std::string& commandLogPath) {
    FindOutcome outcome;
    const std::string path = RecordPortPath(record, factory);
    view.SetLine(0, "Finding KVR on " + path);
    outcome.openResult =
        OpenPortRecord(factory, record.Port, path, record.BaudRate, 0, 3, 0, kSerialBufferSize);
    if (outcome.openResult < 1) {
        view.SetLine(1, "Cannot locate KVR on " + path);
        return outcome;
    }
    view.SetLine(1, "Opening " + path + "\nCommunications Parameters set");
    PromptDialogue dialogue(*record.Port, prompt, commandLogPath);
    outcome.wakeResult = WakeAndReport(dialogue, nullptr);
    outcome.woken = true;
    const int r = outcome.wakeResult;
    if (r == kWakeKvr || r == kWakeZsn || r == kWakeSkiffjack || r == kWakeHullstar) {
        view.SetLine(2, WakeResultText(r));
    }
    outcome.success = WakeResultIsKvr(r);
    return outcome;
}

std::vector<PortCandidate> DefaultCandidates(const SerialPortRecord& record,
                                             const SerialPortFactory& factory) {
    std::vector<PortCandidate> out;
    auto add = [&](const std::string& path) {
        if (path.empty()) return;
        for (const PortCandidate& c : out) {
            if (c.path == path) return;
        }
        out.push_back({path, record.BaudRate});
    };
    add(RecordPortPath(record, factory));
    for (int i = 0; i < 8; ++i) add(factory.PortPath(i));
    return out;
}

FindOutcome FindInstrumentOnPorts(SerialPortFactory& factory, SerialPortRecord& record,
                                  const std::vector<PortCandidate>& candidates, UserPrompt& prompt,
                                  FindingView& view, const std::string& commandLogPath) {
    const std::string formerPath = record.PortPath;
    const int formerBaud = record.BaudRate;
    FindOutcome outcome;
    for (const PortCandidate& c : candidates) {
        record.PortPath = c.path;
        record.BaudRate = c.baud;
        RecordingPrompt quiet;  // a wrong port is no news; the lines say what happened
        outcome = FindInstrument(factory, record, quiet, view, commandLogPath);
        if (EndsSearch(outcome)) {
            for (const std::string& m : quiet.messages) prompt.Message(m);
            return outcome;
        }
    }
    ClosePortRecord(record);
    record.PortPath = formerPath;
    record.BaudRate = formerBaud;
    return outcome;
}

}  // namespace rm
