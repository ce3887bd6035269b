#include "setup/collection_warnings.h"

#include "data/variant.h"
#include "setup/setup_keys.h"

namespace rm {

namespace {

// The number; 0 (not set) when missing or when it cannot be read.
double NumberOrZero(const SetupTreeReader& tree, const char* node, const char* key) {
    try {
        return tree.Number(node, key, 0.0);
    } catch (const VariantConversionError&) {
        return 0.0;
    }
}

}  // namespace

std::vector<std::string> CollectionWarnings(const NodeRef& system, bool showUserWarnings) {
    std::vector<std::string> warnings;
    if (!showUserWarnings) return warnings;
    const SetupTreeReader tree(system);
    using namespace setup_nodes;
    if (NumberOrZero(tree, kOther, "MagneticDeclination") == 0.0)
        warnings.emplace_back("Magnetic declination is zero. This value may not have been set.");
    if (NumberOrZero(tree, kOptions, "BottomTrackInstalled") != 0.0 &&
        NumberOrZero(tree, kOptions, "BottomTrack") == 0.0)
        warnings.emplace_back(
            "Bottom Track has been disabled. In general, it is preferable to have Bottom Track set to YES.");
    return warnings;
}

bool ConfirmDeclinationChange(UserPrompt& prompt, bool dataHeld, double oldDeclination, double newDeclination) {
    if (!dataHeld || oldDeclination == newDeclination) return true;
    return prompt.AskYesNo(kDeclinationChangeQuestion);
}

}  // namespace rm
