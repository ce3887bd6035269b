#include "cli/plot_kinds.h"

#include <algorithm>
#include <cctype>
#include <map>

#include "display/display_variable.h"

namespace rm::cli {

const std::vector<PlotKind>& PlotKinds() {
    static const std::vector<PlotKind> kinds{
        {"contour", "the velocity contour of the transect with the bed, the side-lobe limit and the legend",
         PrepareContourPlot},
        {"profiles", "the profile graphs of one profile (--profile N)", PrepareProfilePlot},
    };
    return kinds;
}

std::optional<int> ParseComponent(const std::string& text) {
    static const std::map<std::string, int> kNames{
        {"beam1", 0}, {"x", 0}, {"e", 0}, {"1", 0}, {"beam2", 1}, {"y", 1}, {"n", 1}, {"2", 1},
        {"beam3", 2}, {"z", 2}, {"u", 2}, {"3", 2}, {"beam4", 3}, {"4", 3},
        {"mean", kComponentMean}, {"speed", kComponentMagnitude}, {"direction", kComponentDirection}};
    std::string key = text;
    std::transform(key.begin(), key.end(), key.begin(), [](unsigned char c) { return std::tolower(c); });
    const auto it = kNames.find(key);
    if (it == kNames.end()) return std::nullopt;
    return it->second;
}

std::string PlotFileName(const CSurveyKVRDoc& document) { return document.Stem() + ".kvr"; }

}  // namespace rm::cli
