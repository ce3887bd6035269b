#pragma once
// A `System` node that passes every rule, for the setup tests to change one value at a time,
// and a flat text of a tree to tell whether anything in it changed.

#include <string>

#include "data/node_tree.h"

namespace rm::setup_test {

// 3000 kHz (index 0 unless given), temperature sensor, bottom track installed and on, metric,
// 20 cells of 20 cm behind a 30 cm blank (range 4.4 m), averaging 10 s, profiling 10 s, limits
// not told by the instrument but for 128 cells and a 10 cm least blank.
inline NodeRef ValidSystem(int frequencyIndex = 0) {
    const NodeRef system = NodeRef::MakeNew();
    const NodeRef conf = system.GetOrCreateChild("Conf");
    conf.SetValue("SystemFreq", Variant(static_cast<uint8_t>(frequencyIndex)));
    conf.SetValue("TemperatureInstalled", Variant(uint8_t{1}));
    const NodeRef options = system.GetOrCreateChild("Options");
    options.SetValue("BottomTrack", Variant(uint8_t{1}));
    options.SetValue("BottomTrackInstalled", Variant(uint8_t{1}));
    const NodeRef setup = system.GetOrCreateChild("Setup");
    setup.SetValue("DeploymentName", Variant("RIVER"));
    setup.SetValue("AveragingInterval", Variant(int16_t{10}));
    setup.SetValue("ProfilingInterval", Variant(int16_t{10}));
    setup.SetValue("FixedMountingDepthInCm", Variant(int16_t{25}));
    setup.SetValue("TemperatureMode", Variant(uint8_t{1}));
    setup.SetValue("UserTemperature", Variant(15.0));
    setup.SetValue("UserSalinity", Variant(0.0));
    setup.SetValue("PCMode", Variant(uint8_t{0}));
    setup.SetValue("NumberOfCells", Variant(int16_t{20}));
    setup.SetValue("CellSizeInCm", Variant(int16_t{20}));
    setup.SetValue("BlankingDistanceInCm", Variant(int16_t{30}));
    const NodeRef other = system.GetOrCreateChild("Other");
    other.SetValue("EstimatedDepth", Variant(300.0));
    other.SetValue("MagneticDeclination", Variant(12.5));
    other.SetValue("UnitSystem", Variant(int16_t{1}));
    other.SetValue("MinCellSizeInCm", Variant(-1.0));
    other.SetValue("MaxCellSizeInCm", Variant(-1.0));
    other.SetValue("MaxNumberOfCells", Variant(int16_t{128}));
    const NodeRef oper = system.GetOrCreateChild("Oper");
    oper.SetValue("MinBlankLengthInCm", Variant(uint8_t{10}));
    return system;
}

inline void Set(const NodeRef& system, const char* node, const char* key, const Variant& value) {
    system.GetOrCreateChild(node).SetValue(key, value);
}

inline void UseEnglishUnits(const NodeRef& system) { Set(system, "Other", "UnitSystem", Variant(int16_t{0})); }

// Names, type codes and values at every depth, one item a line.
inline std::string TreeText(const NodeRef& node, const std::string& indent = "") {
    std::string text;
    for (int i = 0; i < node.ItemCount(); ++i) {
        text += indent + node.ItemName(i) + " [" + std::to_string(static_cast<int>(node.ItemValue(i).type())) +
                "] " + node.ItemValue(i).ToText() + "\n";
        if (node.ItemChild(i)) text += TreeText(node.ItemChild(i), indent + "  ");
    }
    return text;
}

}  // namespace rm::setup_test
