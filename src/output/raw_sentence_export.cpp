#include "output/raw_sentence_export.h"

#include <cstdio>

#include "data/nmea_sentences.h"
#include "data/pmk_file.h"
#include "data/text_file.h"
#include "data/variant.h"

namespace rm {

namespace {

bool Selected(const NodeRef& selection, const std::string& id) {
    if (!selection) return true;
    const int index = selection.FindIndex(id);
    if (index < 0) return true;
    return selection.ItemValue(index).ToText() != "0";
}

bool IsProfileTree(const std::string& name) {
    if (name.size() < 4 || (name[0] != 'P' && name[0] != 'p')) return false;
    return (name[1] == 'r' || name[1] == 'R') && (name[2] == 'f' || name[2] == 'F');
}

}  // namespace

const RawSentenceExportInfo& RawSentenceExportOf(RawSentenceKind kind) {
    static const RawSentenceExportInfo gps{".gps", "GPS data files", kGpsTalkerPrefix, "GPSData", ".raw_gps"};
    static const RawSentenceExportInfo echo{".ecs", "EchoSounder data files", kEchoTalkerPrefix, "EsData",
                                            ".raw_echo"};
    return kind == RawSentenceKind::Gps ? gps : echo;
}

std::string RawSentenceFilter(RawSentenceKind kind) {
    const RawSentenceExportInfo& info = RawSentenceExportOf(kind);
    char text[128];
    std::snprintf(text, sizeof text, "%s (%s)|*%s|", info.filterText, info.extension, info.extension);
    return text;
}

int WriteRawSentences(const NodeRef& extraDataRoot, RawSentenceKind kind, const std::string& outputPath,
                      const NodeRef& selection) {
    const RawSentenceExportInfo& info = RawSentenceExportOf(kind);
    TextFile out;
    if (!out.Open(outputPath)) return -1;
    int lines = 0;
    for (int i = 0; i < extraDataRoot.ItemCount(); ++i) {
        if (!IsProfileTree(extraDataRoot.ItemName(i))) continue;
        const NodeRef profile = extraDataRoot.ItemChild(i);
        if (!profile) continue;
        const int branch = profile.FindIndex(info.settingsKey);
        const NodeRef sentences = branch >= 0 ? profile.ItemChild(branch) : NodeRef();
        if (!sentences) continue;
        for (int s = 0; s < sentences.ItemCount(); ++s) {
            const std::string line = sentences.ItemValue(s).ToText();
            if (!LineHasTalker(line, info.talkers)) continue;
            if (!Selected(selection, sentences.ItemName(s))) continue;
            out.Write("%s\n", line.c_str());
            ++lines;
        }
    }
    return out.Close() ? lines : -1;
}

int ExportRawSentences(const std::string& dataPath, RawSentenceKind kind, const std::string& outputPath,
                       const NodeRef& selection) {
    PmkState state;
    LoadPmk(dataPath, state);
    return WriteRawSentences(state.extraDataRoot, kind, outputPath, selection);
}

}  // namespace rm
