#pragma once
// `record`: the field job from an instrument on a serial port to a recorded transect with its
// measurement. The instrument's setup is read, collection is prepared and started, the
// acquisition tick runs every 250 ms, recording starts at once and ends after a number of
// profiles or seconds (or at an interrupt), the instrument is taken out of collecting, and the
// recording is processed as `process` would. The edges given on the command line answer the
// live document's edge questions at the start and end of the recording, so they reach the .cfg
// the live document writes.

#include <csignal>
#include <ostream>
#include <string>

#include "cli/link_commands.h"

namespace rm::cli {

struct RecordChoices {
    PortChoice instrument;
    PortChoice gps{"", kDefaultNmeaBaud};
    PortChoice echo{"", kDefaultNmeaBaud};
    std::string directory;  // empty: the recording folder of the settings
    std::string name;  // empty: automatic numbered naming from the deployment name
    bool overwrite = false;
    int profiles = 0;     // stop after this many records are written (0: not given)
    double seconds = 0;   // stop after this many seconds of recording (0: not given)
    double leftDistance = 0.0;
    double rightDistance = 0.0;
    int startBank = 0;  // 0 left, 1 right
    bool json = false;
};

// Set from a signal handler to end the recording cleanly.
extern volatile std::sig_atomic_t gRecordInterrupted;

// Runs the job; the files written and the measurement go to `out`, messages to `prompt`.
int RunRecordCommand(SerialPortFactory& factory, const RecordChoices& choices, UserPrompt& prompt, std::ostream& out);

}  // namespace rm::cli
