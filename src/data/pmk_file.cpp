#include "data/pmk_file.h"

#include "data/side_file_path.h"

namespace rm {

namespace {

void FillSettingsNode(const NodeRef& node, const PmkSettings& settings) {
    node.SetValue("GpsPresent", Variant(settings.gpsPresent));
    node.SetValue("EchoSounderPresent", Variant(settings.echoSounderPresent));
    node.SetValue("CustomEsString", Variant(settings.customEsString));
    node.SetValue("DepthIndex", Variant(settings.depthIndex));
}

void ReadSettingsNode(const NodeRef& node, PmkSettings& settings) {
    settings.gpsPresent = node.GetTyped<int32_t>("GpsPresent", settings.gpsPresent);
    settings.echoSounderPresent = node.GetTyped<int32_t>("EchoSounderPresent", settings.echoSounderPresent);
    settings.customEsString = node.GetTyped<std::string>("CustomEsString", settings.customEsString);
    settings.depthIndex = node.GetTyped<int32_t>("DepthIndex", settings.depthIndex);
}

void HangChild(const NodeRef& parent, const std::string& name, const NodeRef& child) {
    parent.Append(name, Variant());
    parent.SetChild(parent.ItemCount() - 1, child);
}

}  // namespace

std::string ProfileNodeName(int profileNumber) { return "Prf" + std::to_string(profileNumber); }

NodeRef MakeProfileNode(const NodeRef& gpsData, const NodeRef& esData) {
    NodeRef profile = NodeRef::MakeNew();
    if (!gpsData.IsNull()) HangChild(profile, "GPSData", gpsData);
    if (!esData.IsNull()) HangChild(profile, "EsData", esData);
    return profile;
}

PmkWriter::~PmkWriter() { Close(); }

void PmkWriter::Close() {
    if (file_ != nullptr) std::fclose(file_);
    file_ = nullptr;
}

bool PmkWriter::CreatePmk(const std::string& dataPath, const PmkSettings& settings, UserPrompt& prompt,
                          const NodeRef& extraDataRoot) {
    Close();
    failed_ = false;
    path_ = SideFilePath(dataPath, ".pmk");
    NodeRef settingsNode = NodeRef::MakeNew();
    FillSettingsNode(settingsNode, settings);
    if (!extraDataRoot.IsNull()) {
        extraDataRoot.Clear();
        HangChild(extraDataRoot, "Settings", settingsNode);
    }
    file_ = std::fopen(path_.c_str(), "wb");
    if (file_ == nullptr || !settingsNode.Save(file_) || std::fflush(file_) != 0) {
        Close();
        prompt.Message("Error - Unable to record to GPS and EchoSounder data file " + path_);
        return false;
    }
    return true;
}

bool PmkWriter::AppendProfile(const NodeRef& gpsData, const NodeRef& esData, UserPrompt& prompt) {
    return AppendProfileNode(MakeProfileNode(gpsData, esData), prompt);
}

bool PmkWriter::AppendProfileNode(const NodeRef& profile, UserPrompt& prompt) {
    if (failed_) return false;
    if (file_ == nullptr || !profile.Save(file_) || std::fflush(file_) != 0) {
        failed_ = true;
        prompt.Message("Can not write output file");
        return false;
    }
    return true;
}

int LoadPmk(const std::string& dataPath, PmkState& state) {
    if (state.loaded) return 1;
    std::FILE* file = std::fopen(SideFilePath(dataPath, ".pmk").c_str(), "rb");
    if (file == nullptr) return 0;
    const NodeRef& root = state.extraDataRoot;
    root.Clear();
    const NodeRef settings = root.GetOrCreateChild("Settings");
    settings.Load(file);
    state.profileTrees = 0;
    try {
        ReadSettingsNode(settings, state.settings);
        // The root was cleared, so each "Prf%d" is new: appending it directly is what
        // GetOrCreateChild would do, without a search through thousands of profiles.
        for (int n = 1;; ++n) {
            NodeRef profile = NodeRef::MakeNew();
            root.Append(ProfileNodeName(n), Variant(), profile);
            if (!profile.Load(file)) break;
            state.profileTrees = n;
        }
    } catch (...) {
        std::fclose(file);
        throw;
    }
    state.loaded = true;
    std::fclose(file);
    return 1;
}

bool ReadPmkSettings(const std::string& dataPath, PmkSettings& settings) {
    std::FILE* file = std::fopen(SideFilePath(dataPath, ".pmk").c_str(), "rb");
    if (file == nullptr) return false;
    NodeRef node = NodeRef::MakeNew();
    node.Load(file);
    std::fclose(file);
    ReadSettingsNode(node, settings);
    return true;
}

}  // namespace rm
