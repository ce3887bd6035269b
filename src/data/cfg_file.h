#pragma once
// The .cfg companion of a recording: the document root tree with what was decided about the
// data after recording (lock flag, the instrument setup by reference, display and sound-speed
// choices, discharge and echo sounder settings).

#include <cstdint>
#include <optional>
#include <string>

#include "data/node_tree.h"

namespace rm {

// Processing/SoundSpeed keys.
struct SoundSpeedSettings {
    int32_t temperatureCorrectionType = 0;
    int32_t salinityCorrectionType = 0;
    double correctedSalinityInPpt = 0.0;
    double correctedTemperatureInDegC = 0.0;
};

// Display keys.
struct CfgDisplay {
    int32_t contourDisplayVariable = 0;
    int32_t contourDisplayComponent = 0;
    int32_t coordinateSystem = 0;
    int32_t velocityReference = 0;
    int32_t trackReference = 0;
    uint8_t showXAxisAs = 0;
    double mapGridSpacing = 10.0;
    double mapVectorScale = 50.0;
};

// The document's values that the .cfg carries as plain keys.
struct CfgValues {
    bool fileIsLocked = false;  // General/FileIsLocked
    CfgDisplay display;
    SoundSpeedSettings soundSpeed;
};

// The track window's scales, when the window is open.
struct TrackWindowScale {
    double gridSpacing = 10.0;
    double vectorScale = 50.0;
};

enum class CfgLoadResult {
    Missing,     // no .cfg: defaults, no message
    Loaded,      // the document root now holds the file's tree
    Unreadable,  // a damaged .cfg: the root is left empty, the file is kept as ".cfg.unreadable"
};

// Loads the .cfg beside `dataPath` into `documentRoot` (cleared and refilled in place, so
// every holder of the root sees it). On Loaded the SoundSpeed keys and FileIsLocked go into
// `values` (their current contents are the defaults), and `systemFromFile` gets the file's
// System node when it has items: the caller's setup takes its values from it.
CfgLoadResult LoadCfg(const std::string& dataPath, const NodeRef& documentRoot, CfgValues& values,
                      NodeRef& systemFromFile);

// Reads the Display keys, the current contents of `display` being the defaults.
void LoadDisplay(const NodeRef& documentRoot, CfgDisplay& display);

enum class CfgSaveReason {
    Closing,          // not written while the measurement is locked
    LockMeasurement,  // always written
};

// Writes the .cfg: FileIsLocked first; MapGridSpacing and MapVectorScale from the open track
// window, else 10.0 and 50.0; `systemRoot` hung under System by reference; every Display and
// SoundSpeed key; then the whole document root. Returns false when the file cannot be written
// (the previous .cfg then stays as it was); true, without writing, when closing a locked
// measurement.
bool SaveCfg(const std::string& dataPath, const NodeRef& documentRoot, const NodeRef& systemRoot,
             const CfgValues& values, const std::optional<TrackWindowScale>& trackWindow,
             CfgSaveReason reason);

}  // namespace rm
