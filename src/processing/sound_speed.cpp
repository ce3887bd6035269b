#include "processing/sound_speed.h"

#include "processing/processing_steps.h"

namespace rm {

namespace {
constexpr int kCorrectionNone = 0;
constexpr int kCorrectionUser = 1;
constexpr int kCorrectionCtd = 2;
constexpr int kTemperatureModeMeasured = 1;
}  // namespace

double SoundSpeed(double salinity, double temperature, double depth) {
    const double t = temperature;
    return 1449.2 + t * (4.6 + t * (-0.055 + 0.00029 * t)) + (salinity - 35.0) * (1.34 - 0.01 * t) + 0.016 * depth;
}

double SoundSpeedFactor(const ProcessingContext& ctx, int slot) {
    const ProcessingSettings& s = ctx.settings;
    if (s.TemperatureCorrectionType == kCorrectionNone && s.SalinityCorrectionType == kCorrectionNone) return 1.0;

    const UserSetup& user = ctx.data.user;
    const ProfileRecord& record = ctx.Raw(slot);
    const double s0 = user.DefaultSalinity * 0.1;
    const double t0 = user.TemperatureMode == kTemperatureModeMeasured ? record.header.temperature * 0.01
                                                                       : user.DefaultTemperature * 0.1;

    // The user's values are single precision, as the document keeps them. The CTD values are the slot's as they stand, also in a file without a CTD block.
    double s1 = s0;
    if (s.SalinityCorrectionType == kCorrectionUser) s1 = static_cast<float>(s.CorrectedSalinityInPpt);
    else if (s.SalinityCorrectionType == kCorrectionCtd) s1 = record.ctd.salinity;
    double t1 = t0;
    if (s.TemperatureCorrectionType == kCorrectionUser) t1 = static_cast<float>(s.CorrectedTemperatureInDegC);
    else if (s.TemperatureCorrectionType == kCorrectionCtd) t1 = record.ctd.temperature;

    const float numerator = static_cast<float>(SoundSpeed(s1, t1, 0.0));
    return numerator / SoundSpeed(s0, t0, 0.0);
}

}  // namespace rm
