#include "app/dis_export.h"

#include "processing/dis_file.h"

namespace rm {

DisFileHead DisFileHeadOf(const CSurveyKVRDoc& document, AppSettings& app) {
    DisFileHead head;
    head.dataFileName = document.Stem() + ".kvr";
    head.start = document.Data().FirstProfileTime();
    head.trackReference = document.Values().display.trackReference;
    head.velocityReference = document.Values().display.velocityReference;
    head.unitSystem = app.Get(app_keys::UnitSystem);
    head.significantDigits = app.Get(app_keys::SignificantDigits);
    return head;
}

bool ExportDisFile(CSurveyKVRDoc& document, AppSettings& app, UserPrompt& prompt, const std::string& path) {
    return WriteDischargeText(document, DisFileHeadOf(document, app), prompt, path);
}

bool WriteDischargeText(CSurveyKVRDoc& document, const DisFileHead& head, UserPrompt& prompt, const std::string& path) {
    DisFileWriter writer;
    if (!writer.Open(path, head)) {
        prompt.Message(kWriteFileError);
        return false;
    }
    const bool computed = document.Recompute(&writer);
    const bool written = writer.Finish(document.Measurement());
    if (!written) prompt.Message(kWriteFileError);
    return computed && written;
}

}  // namespace rm
