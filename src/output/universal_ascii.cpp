#include "output/universal_ascii.h"

#include <optional>

#include "app/dis_export.h"
#include "processing/dis_file.h"

namespace rm {

bool WriteUniversalAscii(CSurveyKVRDoc& document, AppSettings& app, UserPrompt& prompt, const std::string& path,
                         bool withSummary) {
    DisFileHead head = DisFileHeadOf(document, app);
    head.trailer = false;
    head.trackPrefix = "- ";
    // The totals stand before the lines, so they come from a pass of their own; the copy keeps
    // them while the writing pass clears and rebuilds the measurement's sums.
    std::optional<CDischargeData> totals;
    if (withSummary) {
        if (!document.Recompute()) return false;
        totals = document.Measurement();
        head.headSummary = &*totals;
    }
    return WriteDischargeText(document, head, prompt, path);
}

}  // namespace rm
