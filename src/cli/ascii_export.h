#pragma once
// The plain-text exports of `ripplemark-cli export`: Universal ASCII, the "T" format, the
// per-variable files of the "ASCII File Output" set, the raw GPS and echo sounder sentences and
// the profile dump, each over a processing session.

#include <optional>
#include <string>

#include "cli/processing_session.h"
#include "output/ascii_output_kind.h"
#include "output/raw_sentence_export.h"

namespace rm::cli {

bool ExportUniversalAscii(ProcessingSession& session, const std::string& out);
// "cm" units for the metric unit system, "ft" for English.
bool ExportTFormat(ProcessingSession& session, const std::string& out);
// `stem` is the path without extension that every file of the kind is named from; the message
// list goes to stdout. The velocity set takes the document's coordinate system and reference
// (--coords, --velocity-ref).
// `declination` (degrees) replaces the document's declination for the velocity set only.
bool ExportAsciiFiles(ProcessingSession& session, AsciiOutputKind kind, const std::string& stem,
                      std::optional<double> declination = std::nullopt);
// "Write All Files": every per-variable kind under `stem`, in the dialog's order.
bool ExportAllAsciiFiles(ProcessingSession& session, const std::string& stem,
                         std::optional<double> declination = std::nullopt);
bool ExportRawSentenceFile(ProcessingSession& session, RawSentenceKind kind, const std::string& out);
bool ExportProfileDump(ProcessingSession& session, const std::string& out);

}  // namespace rm::cli
