#include "output/batch_file_export.h"

#include <cstdio>

#include "app/dis_export.h"
#include "app/open_document_file.h"
#include "data/kvr_data.h"
#include "output/fdx_file.h"
#include "output/raw_sentence_export.h"
#include "output/universal_ascii.h"
#include "processing/measurement_start.h"

namespace rm {

namespace {

constexpr int kSalinityUserCorrected = 1;  // "User Corrected Salinity  (ppt)"

// Keeps what a file would show, for the batch to show in the order of the list.
class KeptMessages : public UserPrompt {
public:
    explicit KeptMessages(std::vector<std::pair<std::string, std::string>>& into) : into_(into) {}
    void Message(const std::string& text) override { into_.emplace_back(std::string(), text); }
    void TitledMessage(const std::string& title, const std::string& text) override {
        into_.emplace_back(title, text);
    }
    // Nobody is there to answer during a batch: every question is answered No.
    bool AskYesNo(const std::string&) override { return false; }
    std::string AskSavePath(const std::string&, const std::string&, const std::string&) override { return {}; }
    void Progress(int, int, const std::string&) override {}

private:
    std::vector<std::pair<std::string, std::string>>& into_;
};

bool Readable(const std::string& path) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (f == nullptr) return false;
    std::fclose(f);
    return true;
}

// True when the file's configuration tells an up- or side-looking system. A configuration that
// cannot be read is left to the document's open, which reports it.
bool FacesUpOrSideways(const std::string& path) {
    CKvrData data;
    RecordingPrompt quiet;
    data.SetPrompt(&quiet);
    if (!data.OpenFile(path)) return false;
    const bool readable = data.ReadHeader(false) == kReadOk;
    const bool refused = readable && data.conf.SensorOrientation > 0;
    data.CloseFile();
    return refused;
}

void ApplyOverrides(CSurveyKVRDoc& doc, const BatchExportSettings& s) {
    if (s.velocityReference >= 0) doc.SetVelocityReference(s.velocityReference);
    if (s.trackReference >= 0) doc.SetTrackReference(s.trackReference);
    if (!s.useCurrentSalinity) {
        // The salinity of the water as the sound speed correction takes it; the file itself is
        // not changed, since the batch never writes the side file.
        const NodeRef soundSpeed = doc.Root().GetOrCreateChild("Processing").GetOrCreateChild("SoundSpeed");
        soundSpeed.SetValue("SalinityCorrectionType", Variant(int32_t{kSalinityUserCorrected}));
        soundSpeed.SetValue("CorrectedSalinityInPpt", Variant(s.salinity));
    }
    if (!s.useCurrentMagneticDeclination) {
        CKvrData& data = doc.Data();
        data.user.MagneticDeclinationRaw = DeclinationToRaw(s.magneticDeclination);
        data.derived.magneticDeclination = s.magneticDeclination;
        MeasurementDischargeNode(doc.Measurement()).SetValue("MagneticDeclination", Variant(s.magneticDeclination));
    }
}

}  // namespace

NodeRef CopyTree(const NodeRef& source) {
    NodeRef copy = NodeRef::MakeNew();
    for (int i = 0; i < source.ItemCount(); ++i) {
        const NodeRef child = source.ItemChild(i);
        copy.Append(source.ItemName(i), source.ItemValue(i), child.IsNull() ? NodeRef() : CopyTree(child));
    }
    return copy;
}

BatchFileResult ExportBatchFile(const std::string& path, const BatchExportSettings& settings, NodeRef appTree) {
    BatchFileResult result;
    if (!Readable(path)) return result;
    KeptMessages prompt(result.messages);
    if (FacesUpOrSideways(path)) {
        prompt.Message(UpOrSideLookingMessage(path));
        result.status = BatchFileStatus::Refused;
        return result;
    }

    AppSettings app{UserFolders{}};
    for (int i = 0; i < appTree.ItemCount(); ++i) {
        app.Root().Append(appTree.ItemName(i), appTree.ItemValue(i), appTree.ItemChild(i));
    }

    // Every profile of the file, all held at once, as a recomputation of the whole file sees it.
    CSurveyKVRDoc::Options options;
    options.profilesHeld = 1 << 30;
    const auto allProfiles = [](const LoadDialogInfo& info) -> std::optional<LoadDialogInput> {
        if (!info.refusal.empty()) return std::nullopt;
        LoadDialogInput input = info.input;
        input.allProfiles = true;
        input.start = 1;
        input.end = info.profileCount;
        input.averageOver = false;
        input.n = 1;
        return input;
    };
    std::unique_ptr<CSurveyKVRDoc> doc = OpenDocumentFile(path, app, prompt, allProfiles, std::move(options));
    if (!doc) {
        result.status = BatchFileStatus::Skipped;
        return result;
    }
    ApplyOverrides(*doc, settings);

    const auto output = [&](const char* extension) { return BatchOutputPath(settings, path, extension); };
    if (!WriteUniversalAscii(*doc, app, prompt, output(".T"), true)) ++result.failedOutputs;
    if (ExportRawSentences(path, RawSentenceKind::Gps, output(".GPS")) < 0) ++result.failedOutputs;
    if (ExportRawSentences(path, RawSentenceKind::EchoSounder, output(".ECS")) < 0) ++result.failedOutputs;
    if (!ExportDisFile(*doc, app, prompt, output(".DIS"))) ++result.failedOutputs;

    result.fdxBlock = FdxMeasurementText(FlowMeasurementOf(*doc));
    result.record = doc->MeasurementRecord();
    result.status = BatchFileStatus::Exported;
    doc->CloseDocument();
    return result;
}

}  // namespace rm
