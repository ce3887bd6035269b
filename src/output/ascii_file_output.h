#pragma once
// "Write File" and "Write All Files" of the "ASCII File Output" dialog: the kinds of per-variable
// files of a document, written by a pass over its data set after the space check, with the
// message list that tells which files were written.
//
// Files are named from a base path without extension: base.ctl, base.hdr, base.a1 ...,
// base.sd1 ..., base.sn1 ..., base.gps and the velocity set (velocity_files.h). The velocity set
// uses the request's coordinate system and reference, which are handed to the value accessor;
// the document's settings are not changed for them. A declination of the request is set on the
// document for the velocity pass only; the document's own is restored and its results computed
// again with it.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/survey_document.h"
#include "data/user_prompt.h"
#include "output/ascii_output_kind.h"

namespace rm {

struct AsciiFileRequest {
    std::string basePath;   // without extension
    int first = 0, last = 0;  // items from 1, inclusive; 0 for all
    int coordinateSystem = 2;  // velocity set: 0 beam, 1 XYZ, 2 ENU
    int velocityReference = 0;  // velocity set: 0 instrument, 1 bottom track, 2 GPS
    // The dialog's "Magnetic Declination" (degrees): when given, the velocity set is computed
    // with it in place of the document's declination, which is put back afterwards.
    std::optional<double> magneticDeclination;
    // The drive's free bytes; asked of the system (the base path's folder) when not given.
    std::optional<uint64_t> freeBytes;
};

// The paths that `kind` writes for the request on this document.
std::vector<std::string> AsciiOutputPaths(const CSurveyKVRDoc& document, AsciiOutputKind kind,
                                          const AsciiFileRequest& request);

// Writes one kind. Appends to `messages` the kind's title, a line per file written
// ("    " + name + " successfully written") and a blank line. A drive too full shows
// "Not enough available drive space to save to: " + folder and writes nothing; a file error
// shows "Error writing to file". False on either.
bool WriteAsciiOutput(CSurveyKVRDoc& document, AsciiOutputKind kind, const AsciiFileRequest& request,
                      UserPrompt& prompt, std::vector<std::string>& messages);

// Every kind in turn; files of kinds already written stay when a later kind fails.
bool WriteAllAsciiOutputs(CSurveyKVRDoc& document, const AsciiFileRequest& request, UserPrompt& prompt,
                          std::vector<std::string>& messages);

}  // namespace rm
