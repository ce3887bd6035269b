#include "output/discharge_calculation.h"

#include <cstdio>

#include "output/significant_digits.h"
#include "output/summary_columns.h"
#include "processing/processing_types.h"

namespace rm {

DischargeCalculationFields DischargeCalculationFieldsOf(const NodeRef& d) {
    DischargeCalculationFields f;
    f.leftProfile = d.GetTyped<int32_t>("LeftProfile", 1);
    f.rightProfile = d.GetTyped<int32_t>("RightProfile", 0);
    f.startBank = d.GetTyped<int32_t>("CorrectedStartBankSide", 0);
    f.leftMethod = d.GetTyped<int32_t>("LeftBankMethod", 2);
    f.rightMethod = d.GetTyped<int32_t>("RightBankMethod", 2);
    f.leftNumProfiles = d.GetTyped<int32_t>("LeftNumProfiles", 1);
    f.rightNumProfiles = d.GetTyped<int32_t>("RightNumProfiles", 1);
    f.correctedLeftDistance = d.GetTyped<double>("CorrectedLeftDistance", 0.0);
    f.correctedRightDistance = d.GetTyped<double>("CorrectedRightDistance", 0.0);
    return f;
}

const char* StartBankNote(int side) {
    switch (side) {
        case 0: return "(Left was selected during measurement)";
        case 1: return "(Right was selected during measurement)";
        default: return "(No bank was selected during measurement)";
    }
}

namespace {

std::string Fixed(const char* format, double value, double factor) {
    if (value == MissingValue) return "--";
    char text[128];
    std::snprintf(text, sizeof text, format, value * factor);
    return text;
}

std::string Rounded(float value, double factor, int digits) {
    if (value == MissingValueF) return "--";
    return SignificantDigitsText(value * factor, digits);
}

}  // namespace

DischargeCalculationTexts DischargeCalculationResults(const CDischargeData& m, int unitSystem, int digits) {
    const double L = SummaryLengthFactor(unitSystem);
    const double Q = L * L * L;
    DischargeCalculationTexts t;
    t.totalMeasured = Rounded(m.MiddleDischarge, Q, digits);
    t.top = Rounded(m.TopDischarge, Q, digits);
    t.bottom = Rounded(m.BottomDischarge, Q, digits);
    t.left = Rounded(m.LeftDischarge, Q, digits);
    t.right = Rounded(m.RightDischarge, Q, digits);
    t.total = Rounded(m.TotalDischarge, Q, digits);
    if (m.TotalDischarge == 0.0f || m.TotalDischarge == MissingValueF || m.MiddleDischarge == MissingValueF) {
        t.measuredPercent = "--";
    } else {
        t.measuredPercent = Fixed("%5.1f %%", 100.0 * m.MiddleDischarge / m.TotalDischarge, 1.0);
    }
    t.totalWidth = Fixed("%8.1f", m.TotalWidth, L);
    t.maximumDepth = Fixed("%8.2f", m.MaxDepth, L);
    t.maximumDepthAveragedVelocity = Fixed("%8.2f", m.MaxMeanSpeed, L);
    t.maximumBoatSpeed = Fixed("%8.2f", m.MaxBoatSpeed, L);
    t.maximumPitch = Fixed("%8.1f", m.MaxPitch, 1.0);
    t.maximumRoll = Fixed("%8.1f", m.MaxRoll, 1.0);
    return t;
}

}  // namespace rm
