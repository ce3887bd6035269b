#include "output/report_inputs.h"

#include <utility>

namespace rm {

TransectFacts TransectFactsOf(const CSurveyKVRDoc& document) {
    TransectFacts facts;
    const ProcessingSettings& s = document.Settings();
    facts.salinity = s.SalinityCorrectionType == 1 ? s.CorrectedSalinityInPpt : document.Data().user.DefaultSalinity * 0.1;
    facts.echoSounderPresent = document.Pmk().settings.echoSounderPresent != 0;

    const int count = document.ProfileCount();
    int left = s.LeftProfile, right = s.RightProfile;
    if (right < 1 || right > count) right = count;
    if (left < 1) left = 1;
    if (left > right) std::swap(left, right);
    for (int item = left; item <= right && item <= count; ++item) {
        const SlotResults* r = document.ResultsOf(item);
        if (r == nullptr) continue;  // no longer held in the window: not known
        if (!r->readOk || r->processed.TotalQ >= MissingValueF) ++facts.badProfiles;
    }
    return facts;
}

ReportSettings ReportSettingsOf(const AppSettings& app) {
    ReportSettings settings;
    settings.unitSystem = app.Get(app_keys::UnitSystem);
    settings.significantDigits = app.Get(app_keys::SignificantDigits);
    settings.usgsRounding = app.Get(app_keys::UseUsgsRoundingFormat) != 0;
    return settings;
}

}  // namespace rm
