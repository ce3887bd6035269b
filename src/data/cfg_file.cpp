#include "data/cfg_file.h"

#include <cstdio>
#include <filesystem>

#include "data/node_key_table.h"
#include "data/side_file_path.h"

namespace rm {

namespace {

const NodeKey<SoundSpeedSettings, int32_t, double> kSoundSpeedKeys[] = {
    {"TemperatureCorrectionType", &SoundSpeedSettings::temperatureCorrectionType},
    {"SalinityCorrectionType", &SoundSpeedSettings::salinityCorrectionType},
    {"CorrectedSalinityInPpt", &SoundSpeedSettings::correctedSalinityInPpt},
    {"CorrectedTemperatureInDegC", &SoundSpeedSettings::correctedTemperatureInDegC},
};

const NodeKey<CfgDisplay, int32_t, uint8_t, double> kDisplayKeys[] = {
    {"ContourDisplayVariable", &CfgDisplay::contourDisplayVariable},
    {"ContourDisplayComponent", &CfgDisplay::contourDisplayComponent},
    {"CoordinateSystem", &CfgDisplay::coordinateSystem},
    {"VelocityReference", &CfgDisplay::velocityReference},
    {"TrackReference", &CfgDisplay::trackReference},
    {"ShowXAxisAs", &CfgDisplay::showXAxisAs},
    {"MapGridSpacing", &CfgDisplay::mapGridSpacing},
    {"MapVectorScale", &CfgDisplay::mapVectorScale},
};

NodeRef SoundSpeedNode(const NodeRef& documentRoot) {
    return documentRoot.GetOrCreateChild("Processing").GetOrCreateChild("SoundSpeed");
}

void HangByReference(const NodeRef& parent, const std::string& name, const NodeRef& child) {
    int index = parent.FindIndex(name);
    if (index < 0) {
        parent.Append(name, Variant());
        index = parent.ItemCount() - 1;
    }
    parent.SetChild(index, child);
}

}  // namespace

CfgLoadResult LoadCfg(const std::string& dataPath, const NodeRef& documentRoot, CfgValues& values,
                      NodeRef& systemFromFile) {
    systemFromFile = NodeRef();
    const std::string path = SideFilePath(dataPath, ".cfg");
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return CfgLoadResult::Missing;
    const bool whole = documentRoot.Load(file);
    std::fclose(file);
    if (!whole) {
        // Half a .cfg could put half a setup in force; start from defaults instead and keep
        // the damaged file, since the next save would replace it.
        documentRoot.Clear();
        std::error_code error;
        std::filesystem::copy_file(path, path + ".unreadable", std::filesystem::copy_options::overwrite_existing,
                                   error);
        return CfgLoadResult::Unreadable;
    }
    const int systemIndex = documentRoot.FindIndex("System");
    const NodeRef system = documentRoot.ItemChild(systemIndex);
    if (system.ItemCount() > 0) systemFromFile = system;

    ReadKeys(SoundSpeedNode(documentRoot), kSoundSpeedKeys, values.soundSpeed);
    values.fileIsLocked = documentRoot.GetOrCreateChild("General")
                              .GetTyped<uint8_t>("FileIsLocked", values.fileIsLocked ? 1 : 0) != 0;
    return CfgLoadResult::Loaded;
}

void LoadDisplay(const NodeRef& documentRoot, CfgDisplay& display) {
    ReadKeys(documentRoot.GetOrCreateChild("Display"), kDisplayKeys, display);
}

bool SaveCfg(const std::string& dataPath, const NodeRef& documentRoot, const NodeRef& systemRoot,
             const CfgValues& values, const std::optional<TrackWindowScale>& trackWindow,
             CfgSaveReason reason) {
    if (reason == CfgSaveReason::Closing && values.fileIsLocked) return true;
    if (documentRoot.IsNull()) return false;
    documentRoot.GetOrCreateChild("General").SetValue("FileIsLocked", Variant(static_cast<uint8_t>(values.fileIsLocked ? 1 : 0)));
    const std::string path = SideFilePath(dataPath, ".cfg");
    const TrackWindowScale scale = trackWindow.value_or(TrackWindowScale{10.0, 50.0});
    if (!systemRoot.IsNull()) HangByReference(documentRoot, "System", systemRoot);

    // The map keys come from the track window, not from the document's display values.
    CfgDisplay display = values.display;
    display.mapGridSpacing = scale.gridSpacing;
    display.mapVectorScale = scale.vectorScale;
    WriteKeys(documentRoot.GetOrCreateChild("Display"), kDisplayKeys, display);
    WriteKeys(SoundSpeedNode(documentRoot), kSoundSpeedKeys, values.soundSpeed);
    return SaveTreeFile(documentRoot, path);
}

}  // namespace rm
