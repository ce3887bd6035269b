#include "cli/ascii_export.h"

#include <cstdio>
#include <vector>

#include "output/ascii_file_output.h"
#include "output/profile_dump.h"
#include "output/t_format.h"
#include "output/universal_ascii.h"

namespace rm::cli {

bool ExportUniversalAscii(ProcessingSession& s, const std::string& out) {
    return WriteUniversalAscii(*s.document, s.app, s.prompt, out, true);
}

bool ExportTFormat(ProcessingSession& s, const std::string& out) {
    const int unit = s.app.Get(app_keys::UnitSystem) == 1 ? kTFormatCentimetres : kTFormatFeet;
    return WriteTFormatFile(*s.document, out, unit, s.prompt);
}

namespace {

// The dialog's request from the document's settings (after --coords / --velocity-ref).
AsciiFileRequest RequestOf(const ProcessingSession& s, const std::string& stem, std::optional<double> declination) {
    AsciiFileRequest request;
    request.basePath = stem;
    request.coordinateSystem = s.document->Values().display.coordinateSystem;
    request.velocityReference = s.document->Values().display.velocityReference;
    request.magneticDeclination = declination;
    return request;
}

void PrintMessages(const std::vector<std::string>& messages) {
    for (const std::string& line : messages) std::printf("%s\n", line.c_str());
}

}  // namespace

bool ExportAsciiFiles(ProcessingSession& s, AsciiOutputKind kind, const std::string& stem,
                      std::optional<double> declination) {
    std::vector<std::string> messages;
    const bool ok = WriteAsciiOutput(*s.document, kind, RequestOf(s, stem, declination), s.prompt, messages);
    PrintMessages(messages);
    return ok;
}

bool ExportAllAsciiFiles(ProcessingSession& s, const std::string& stem, std::optional<double> declination) {
    std::vector<std::string> messages;
    const bool ok = WriteAllAsciiOutputs(*s.document, RequestOf(s, stem, declination), s.prompt, messages);
    PrintMessages(messages);
    return ok;
}

bool ExportRawSentenceFile(ProcessingSession& s, RawSentenceKind kind, const std::string& out) {
    const NodeRef selection = s.document->Root().GetChildByName(RawSentenceExportOf(kind).settingsKey);
    return ExportRawSentences(s.document->Path(), kind, out, selection) >= 0;
}

bool ExportProfileDump(ProcessingSession& s, const std::string& out) {
    return WriteProfileDumpFile(*s.document, out, s.prompt);
}

}  // namespace rm::cli
