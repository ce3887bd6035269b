#include "app/open_document_file.h"

#include "data/pmk_file.h"

namespace rm {

ProfileMemoryFacts MemoryFactsOf(const CKvrData& data) {
    ProfileMemoryFacts f;
    const ProfileLayout& layout = data.Layout();
    f.cells = layout.cells;
    f.beams = layout.beams;
    f.gps = layout.gps != GpsForm::None ? 1 : 0;
    f.ctd = layout.ctd ? 1 : 0;
    f.externalSensor = layout.extSensor ? 1 : 0;
    f.bottomTrack = data.user.BottomTrack;
    f.pulseCoherent = layout.pulseCoherent ? 1 : 0;
    f.waveBursts = data.Waves().HasBursts();
    f.pseriesLength = data.user.PseriesLength;
    f.burstInterval = data.Waves().interval;
    return f;
}

std::unique_ptr<CSurveyKVRDoc> OpenDocumentFile(const std::string& path, AppSettings& app, UserPrompt& prompt,
                                                const LoadDialogRunner& dialog, CSurveyKVRDoc::Options options,
                                                LoadFields* fields, uint64_t availableBytes) {
    LoadDialogInfo info;
    {
        CKvrData probe;
        probe.SetPrompt(&prompt);
        if (!probe.OpenFile(path)) return nullptr;
        if (probe.Validate() != kReadOk || probe.ReadHeader(false) != kReadOk) {
            prompt.Message(kNotValidKvrFile);
            return nullptr;
        }
        info.profileCount = probe.ProfileCount();
        info.facts = MemoryFactsOf(probe);
    }
    PmkSettings pmk;
    ReadPmkSettings(path, pmk);
    info.echoSounderPresent = pmk.echoSounderPresent;
    info.caption = "FileName: " + path;
    info.input.end = info.profileCount;

    LoadDialogResult chosen;
    for (;;) {
        const std::optional<LoadDialogInput> answer = dialog(info);
        if (!answer) return nullptr;
        chosen = ApplyLoadDialog(*answer, info.profileCount, info.facts, availableBytes);
        if (chosen.accepted) break;
        prompt.Message(chosen.message);
        info.refusal = chosen.message;
        info.input = *answer;
        info.input.end = chosen.end;
    }

    LoadFields load;
    load.start = chosen.start;
    load.end = chosen.end;
    load.step = chosen.step;
    load.count = chosen.count;
    load.groupType = chosen.groupType;
    load.valid = 1;
    if (fields != nullptr) *fields = load;

    auto document = std::make_unique<CSurveyKVRDoc>(app, prompt, kModePlayback, std::move(options));
    if (document->OpenDocument(path, load) == 0) return nullptr;
    return document;
}

}  // namespace rm
