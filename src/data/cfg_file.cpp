#include "data/cfg_file.h"

#include <cstdio>
#include <filesystem>

#include "data/side_file_path.h"

namespace rm {

namespace {

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

    const NodeRef soundSpeed = SoundSpeedNode(documentRoot);
    SoundSpeedSettings& s = values.soundSpeed;
    s.temperatureCorrectionType = soundSpeed.GetTyped<int32_t>("TemperatureCorrectionType", s.temperatureCorrectionType);
    s.salinityCorrectionType = soundSpeed.GetTyped<int32_t>("SalinityCorrectionType", s.salinityCorrectionType);
    s.correctedSalinityInPpt = soundSpeed.GetTyped<double>("CorrectedSalinityInPpt", s.correctedSalinityInPpt);
    s.correctedTemperatureInDegC =
        soundSpeed.GetTyped<double>("CorrectedTemperatureInDegC", s.correctedTemperatureInDegC);
    values.fileIsLocked = documentRoot.GetOrCreateChild("General")
                              .GetTyped<uint8_t>("FileIsLocked", values.fileIsLocked ? 1 : 0) != 0;
    return CfgLoadResult::Loaded;
}

void LoadDisplay(const NodeRef& documentRoot, CfgDisplay& d) {
    const NodeRef display = documentRoot.GetOrCreateChild("Display");
    d.contourDisplayVariable = display.GetTyped<int32_t>("ContourDisplayVariable", d.contourDisplayVariable);
    d.contourDisplayComponent = display.GetTyped<int32_t>("ContourDisplayComponent", d.contourDisplayComponent);
    d.coordinateSystem = display.GetTyped<int32_t>("CoordinateSystem", d.coordinateSystem);
    d.velocityReference = display.GetTyped<int32_t>("VelocityReference", d.velocityReference);
    d.trackReference = display.GetTyped<int32_t>("TrackReference", d.trackReference);
    d.showXAxisAs = display.GetTyped<uint8_t>("ShowXAxisAs", d.showXAxisAs);
    d.mapGridSpacing = display.GetTyped<double>("MapGridSpacing", d.mapGridSpacing);
    d.mapVectorScale = display.GetTyped<double>("MapVectorScale", d.mapVectorScale);
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

    const NodeRef display = documentRoot.GetOrCreateChild("Display");
    const CfgDisplay& d = values.display;
    display.SetValue("ContourDisplayVariable", Variant(d.contourDisplayVariable));
    display.SetValue("ContourDisplayComponent", Variant(d.contourDisplayComponent));
    display.SetValue("CoordinateSystem", Variant(d.coordinateSystem));
    display.SetValue("VelocityReference", Variant(d.velocityReference));
    display.SetValue("TrackReference", Variant(d.trackReference));
    display.SetValue("ShowXAxisAs", Variant(d.showXAxisAs));
    display.SetValue("MapGridSpacing", Variant(scale.gridSpacing));
    display.SetValue("MapVectorScale", Variant(scale.vectorScale));

    const NodeRef soundSpeed = SoundSpeedNode(documentRoot);
    const SoundSpeedSettings& s = values.soundSpeed;
    soundSpeed.SetValue("TemperatureCorrectionType", Variant(s.temperatureCorrectionType));
    soundSpeed.SetValue("SalinityCorrectionType", Variant(s.salinityCorrectionType));
    soundSpeed.SetValue("CorrectedSalinityInPpt", Variant(s.correctedSalinityInPpt));
    soundSpeed.SetValue("CorrectedTemperatureInDegC", Variant(s.correctedTemperatureInDegC));
    return SaveTreeFile(documentRoot, path);
}

}  // namespace rm
