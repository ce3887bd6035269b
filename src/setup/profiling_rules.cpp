// The rules of the profiling layout: number of cells, cell size, blanking distance and the range
// that they reach together, against the limits of the system's frequency and of the instrument.

#include <limits>

#include "setup/frequency_limits.h"
#include "setup/rule_set.h"
#include "setup/setup_text.h"

namespace rm::rules {

namespace {

using namespace setup_nodes;

constexpr double kFeetPerCentimetre = 0.0328084;
constexpr double kFeetPerMillimetre = 0.00328084;

// The limits of the frequency in `Conf/SystemFreq`; an unknown index refuses the rule, since no
// limit can be checked without it.
std::optional<FrequencyLimits> LimitsOrRefuse(const RuleInputs& in, ParameterCheck& check) {
    const double index = in.tree.Number(kConf, "SystemFreq");
    std::optional<FrequencyLimits> limits = FrequencyLimitsForValue(index);
    if (!limits) Refuse(check, UnknownFrequencyMessage(index));
    return limits;
}

CellSizeLimitsMm CellLimits(const RuleInputs& in, const FrequencyLimits& limits) {
    return CellSizeLimits(limits, in.tree.Number(kOther, "MinCellSizeInCm", -1.0),
                          in.tree.Number(kOther, "MaxCellSizeInCm", -1.0));
}

double CurrentRangeCm(const RuleInputs& in) {
    return ProfilingRangeCm(in.tree.Number(kSetup, "NumberOfCells"), in.tree.Number(kSetup, "CellSizeInCm"),
                            in.tree.Number(kSetup, "BlankingDistanceInCm"));
}

// Both range tests name the working range, whichever failed, and the current range.
void RefuseRange(const RuleInputs& in, ParameterCheck& check, const char* format, const FrequencyLimits& limits,
                 double rangeCm) {
    const char* unit = LengthUnitWord(in.metric);
    Refuse(check, FormatText(format, MetresForDisplay(limits.workingRangeM, in.metric), unit,
                             MetresForDisplay(rangeCm * 0.01, in.metric), unit));
}

}  // namespace

void CheckNumberOfCells(const RuleInputs& in, ParameterCheck& check) {
    const double cells = in.tree.Number(kSetup, "NumberOfCells");
    // A maximum of 0 or below was never told by the instrument; the tree's own ceiling stands in.
    double told = in.tree.Number(kOther, "MaxNumberOfCells");
    const int maximum = told >= 1.0 && told <= std::numeric_limits<int16_t>::max()
                            ? static_cast<int>(told)
                            : std::numeric_limits<int16_t>::max();
    if (!(cells >= 1.0 && cells <= maximum))
        Refuse(check, FormatText("Number of cells should be between %d and %d.", 1, maximum));
}

void CheckCellSize(const RuleInputs& in, ParameterCheck& check) {
    const std::optional<FrequencyLimits> limits = LimitsOrRefuse(in, check);
    if (!limits) return;
    const CellSizeLimitsMm cells = CellLimits(in, *limits);
    const double sizeMm = in.tree.Number(kSetup, "CellSizeInCm") * 10.0;
    if (AtMost(static_cast<double>(cells.least), sizeMm) && AtMost(sizeMm, static_cast<double>(cells.greatest)))
        return;
    if (in.metric)
        Refuse(check, FormatText("Cell size should be in\nthe range of %5.2f to %5.2f m.", cells.least * 0.001,
                                 cells.greatest * 0.001));
    else
        Refuse(check, FormatText("Cell size should be in\nthe range of %5.2f to %5.2f ft.",
                                 cells.least * kFeetPerMillimetre, cells.greatest * kFeetPerMillimetre));
}

void CheckBlankingDistance(const RuleInputs& in, ParameterCheck& check) {
    const std::optional<FrequencyLimits> limits = LimitsOrRefuse(in, check);
    if (!limits) return;
    const double leastCm = in.tree.Number(kOper, "MinBlankLengthInCm");
    const double limitCm = BlankLimitCm(*limits, CellLimits(in, *limits));
    const double blankCm = in.tree.Number(kSetup, "BlankingDistanceInCm");
    if (AtMost(leastCm, blankCm) && AtMost(blankCm, limitCm)) return;
    if (in.metric)
        Refuse(check, FormatText("Blanking distance should be in\nthe range of %5.2f to %5.2f m.", leastCm * 0.01,
                                 limitCm * 0.01));
    else
        Refuse(check, FormatText("Blanking distance should be in\nthe range of %5.2f to %5.2f ft.",
                                 leastCm * kFeetPerCentimetre, limitCm * kFeetPerCentimetre));
}

void CheckAbsoluteProfilingRange(const RuleInputs& in, ParameterCheck& check) {
    const std::optional<FrequencyLimits> limits = LimitsOrRefuse(in, check);
    if (!limits) return;
    const double rangeCm = CurrentRangeCm(in);
    if (AtMost(rangeCm, limits->absoluteRangeM * 100.0)) return;
    RefuseRange(in, check,
                "The profiling parameters significantly exceed the maximum range of this system (%.1f %s). "
                "Please reduce the current range (%.1f %s) by changing the number of cells, cell size or "
                "blanking distance.",
                *limits, rangeCm);
}

void CheckProfilingRange(const RuleInputs& in, ParameterCheck& check) {
    const std::optional<FrequencyLimits> limits = LimitsOrRefuse(in, check);
    if (!limits) return;
    const double rangeCm = CurrentRangeCm(in);
    if (AtMost(rangeCm, limits->workingRangeM * 100.0)) return;
    RefuseRange(in, check,
                "The profiling parameters exceed the maximum range of this system (%.1f %s). Please reduce the "
                "current range (%.1f %s) by changing the number of cells, cell size or blanking distance.",
                *limits, rangeCm);
}

}  // namespace rm::rules
