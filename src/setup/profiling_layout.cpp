#include "setup/profiling_layout.h"

#include <cmath>

#include "setup/frequency_limits.h"
#include "setup/setup_keys.h"
#include "setup/setup_text.h"

namespace rm {

namespace {

// Whole cells to list; the tree holds at most a signed 16-bit count.
int CellCount(double cells) {
    if (!(cells >= 1.0)) return 0;
    return static_cast<int>(std::fmin(std::floor(cells), 32767.0));
}

}  // namespace

ProfilingLayout ReadProfilingLayout(const NodeRef& system) {
    const SetupTreeReader tree(system);
    using setup_nodes::kSetup;
    return {tree.Number(kSetup, "NumberOfCells"), tree.Number(kSetup, "CellSizeInCm"),
            tree.Number(kSetup, "BlankingDistanceInCm")};
}

std::string ProfilingRangeLine(const ProfilingLayout& layout, bool metric) {
    const double firstStartM = (layout.blankingDistanceCm + 0.5 * layout.cellSizeCm) * 0.01;
    const double lastEndM =
        ProfilingRangeCm(layout.numberOfCells, layout.cellSizeCm, layout.blankingDistanceCm) * 0.01;
    const char* format = metric ? "Profiling Range: %6.2f - %6.2f m" : "Profiling Range: %6.2f - %6.2f ft";
    return FormatText(format, MetresForDisplay(firstStartM, metric), MetresForDisplay(lastEndM, metric));
}

std::vector<std::string> CellTableLines(const ProfilingLayout& layout, bool metric) {
    std::vector<std::string> lines;
    lines.emplace_back(metric ? "Cell #           Depth Range (m) (relative to sensor)"
                              : "Cell #           Depth Range (ft) (relative to sensor)");
    const int cells = CellCount(layout.numberOfCells);
    for (int cell = 1; cell <= cells; ++cell) {
        const double centreM = (layout.blankingDistanceCm + cell * layout.cellSizeCm) * 0.01;
        lines.push_back(FormatText("%5d                    %10.2f", cell, MetresForDisplay(centreM, metric)));
    }
    return lines;
}

}  // namespace rm
