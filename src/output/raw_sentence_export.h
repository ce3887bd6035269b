#pragma once
// The raw GPS and echo sounder export: the NMEA sentences a recording kept per profile in its
// side file (.pmk), written back one a line into a .raw_gps or .raw_echo text. Only sentences
// whose text begins with "$" and a talker of the stream go out: for the GPS the talkers its
// reader accepts ("GP", "GN", ...; kGpsTalkerPrefix), for the echo sounder "SD".

#include <string>

#include "data/node_tree.h"

namespace rm {

enum class RawSentenceKind { Gps, EchoSounder };

struct RawSentenceExportInfo {
    const char* extension;  // of the save dialog's files
    const char* filterText;
    const char* talkers;      // a sentence goes out when its text begins with "$" and one of these
    const char* settingsKey;  // the profile's branch in the side file, and the selection setting
    const char* outputExtension;
};

const RawSentenceExportInfo& RawSentenceExportOf(RawSentenceKind kind);

// "%s (%s)|*%s|" of the save dialog, e.g. "GPS data files (.gps)|*.gps|".
std::string RawSentenceFilter(RawSentenceKind kind);

// Number of lines written, or -1 when the output cannot be written. `extraDataRoot` holds the
// trees "Prf1", "Prf2", ... of the side file; their order is the profiles' order. `selection`,
// when not null, holds sentence names (the id, e.g. "GGA") with flags: a sentence whose name
// it lists with the flag 0 is left out; names it does not list go out.
int WriteRawSentences(const NodeRef& extraDataRoot, RawSentenceKind kind, const std::string& outputPath,
                      const NodeRef& selection = NodeRef());

// The same for a data file: loads the .pmk beside `dataPath`. A recording without .pmk gives an
// empty output (0 lines).
int ExportRawSentences(const std::string& dataPath, RawSentenceKind kind, const std::string& outputPath,
                       const NodeRef& selection = NodeRef());

}  // namespace rm
