#include "setup/depth_method.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "data/variant.h"
#include "setup/frequency_limits.h"
#include "setup/setup_keys.h"
#include "setup/setup_text.h"

namespace rm {

namespace {

using namespace setup_nodes;

constexpr const char* kInvalidDepths = "Please input valid values for Minimum and Maximum Depths";

DepthMethodResult Failed(std::string message) {
    DepthMethodResult result;
    result.message = std::move(message);
    return result;
}

DepthMethodResult Derive(const SetupTreeReader& tree, double minimumDepthM, double maximumDepthM) {
    if (!std::isfinite(minimumDepthM) || !std::isfinite(maximumDepthM) || minimumDepthM < 0.0 ||
        maximumDepthM <= 0.0)
        return Failed(kInvalidDepths);
    if (minimumDepthM >= maximumDepthM) return Failed("Minimum Depth must be less than the Maximum Depth");

    const double index = tree.Number(kConf, "SystemFreq");
    const std::optional<FrequencyLimits> limits = FrequencyLimitsForValue(index);
    if (!limits) return Failed(UnknownFrequencyMessage(index));
    const bool metric = tree.Metric();
    if (!AtMost(maximumDepthM, limits->workingRangeM))
        return Failed(std::string("You have input a maximum depth greater than the range of this instrument.\n"
                                  "Please reduce the maximum depth below ") +
                      FormatText("%.1f %s", MetresForDisplay(limits->workingRangeM, metric), LengthUnitWord(metric)));

    const CellSizeLimitsMm cells = CellSizeLimits(*limits, tree.Number(kOther, "MinCellSizeInCm", -1.0),
                                                  tree.Number(kOther, "MaxCellSizeInCm", -1.0));
    const double leastCm = std::ceil(static_cast<double>(cells.least) * 0.1 - 1e-9);
    const double greatestCm = std::floor(static_cast<double>(cells.greatest) * 0.1 + 1e-9);
    const double told = tree.Number(kOther, "MaxNumberOfCells");
    const double maxCells = told >= 1.0 ? std::fmin(std::floor(told), 32767.0) : 32767.0;

    const double blankCm =
        std::max(std::ceil(minimumDepthM * 100.0 - 1e-9), std::fmax(tree.Number(kOper, "MinBlankLengthInCm"), 0.0));
    const double spanCm = std::floor(maximumDepthM * 100.0 + 1e-9) - blankCm;
    double cellCm = std::max({leastCm, 1.0, std::ceil(spanCm / (maxCells + 0.5) - 1e-9)});
    cellCm = std::min(cellCm, greatestCm);
    const double count = std::min(std::floor(spanCm / cellCm - 0.5 + 1e-9), maxCells);
    if (!(cellCm >= 1.0) || !(count >= 1.0)) return Failed(kInvalidDepths);

    DepthMethodResult result;
    result.ok = true;
    result.numberOfCells = static_cast<int>(count);
    result.cellSizeCm = static_cast<int>(cellCm);
    result.blankingDistanceCm = static_cast<int>(blankCm);
    return result;
}

}  // namespace

DepthMethodResult DeriveProfilingFromDepths(const NodeRef& system, double minimumDepthM, double maximumDepthM) {
    try {
        return Derive(SetupTreeReader(system), minimumDepthM, maximumDepthM);
    } catch (const VariantConversionError& error) {
        return Failed(std::string("A setting needed for the profiling range could not be read: ") + error.what());
    }
}

}  // namespace rm
