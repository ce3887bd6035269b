// Opening a recording into the document (the steps of OpenDocument), its side files and first
// window, and closing it.

#include <algorithm>
#include <new>

#include "app/survey_document.h"
#include "processing/measurement_start.h"

namespace rm {

namespace {
constexpr const char* kIncorrectFileFormat = "Incorrect file format";
constexpr const char* kIncorrectConfiguration = "Incorrect Kvr configuration format";
constexpr const char* kAllocationFailure = "Memory allocation for Profile Data failed.";
constexpr const char* kDownLookingOnly = " will only operate with DOWN looking systems\nThis file contains data from a ";
constexpr uint8_t kOrientationUp = 1;

GroupType GroupTypeOf(LoadGroupType type) {
    switch (type) {
        case LoadGroupType::SelectEvery: return GroupType::SelectEvery;
        case LoadGroupType::AverageOver: return GroupType::Average;
        case LoadGroupType::EveryProfile: break;
    }
    return GroupType::EveryProfile;
}
}  // namespace

void CSurveyKVRDoc::SplitPath(const std::string& path) {
    path_ = path;
    const size_t separator = path.find_last_of("/\\");
    folder_ = separator == std::string::npos ? std::string() : path.substr(0, separator + 1);
    const std::string name = separator == std::string::npos ? path : path.substr(separator + 1);
    stem_ = name.size() > 4 ? name.substr(0, name.size() - 4) : name;
}

bool CSurveyKVRDoc::AllocateProfiles(int slots) {
    try {
        slots_.assign(static_cast<size_t>(std::max(slots, 1)), SlotResults{});
        data_.SetCacheCapacity(std::max(slots, 1));
    } catch (const std::bad_alloc&) {
        slots_.clear();
        prompt_.Message(kAllocationFailure);
        return false;
    }
    window_ = std::max(slots, 1);
    state_.ring = window_;
    return true;
}

int CSurveyKVRDoc::OpenDocument(const std::string& path, const LoadFields& load) {
    if (OpenSteps(path, load)) return 1;
    CloseDocument();
    path_.clear();
    return 0;
}

bool CSurveyKVRDoc::OpenSteps(const std::string& path, const LoadFields& load) {
    CloseDocument();
    if (!data_.OpenFile(path)) return false;
    SplitPath(path);
    if (data_.Validate() != kReadOk) {
        prompt_.Message(kIncorrectFileFormat);
        return false;
    }
    if (data_.ReadHeader(false) != kReadOk) {
        prompt_.Message(kIncorrectConfiguration);
        return false;
    }
    if (data_.conf.SensorOrientation > 0) {
        const char* kind = data_.conf.SensorOrientation == kOrientationUp ? "UP" : "SIDE";
        prompt_.Message(std::string(kProgramName) + kDownLookingOnly + kind + " looking system");
        return false;
    }
    // 0.1 for pulse-coherent or shallow-water-ping systems from firmware 16.5 on: the one rule the
    // records derive and the velocity chain applies.
    velocityScale_ = data_.derived.documentShallowWaterVelocityFactor;

    ProfileSelection selection;
    if (load.valid != 0) {
        selection.firstIndex = load.start - 1;
        selection.step = load.step;
        selection.type = GroupTypeOf(load.groupType);
        selection.count = load.count;
    }
    source_->SetSelection(selection);
    itemCount_ = source_->ItemCount();
    if (!AllocateProfiles(std::min(options_.profilesHeld, std::max(itemCount_, 1)))) return false;

    ReadSideFilesAndSetup();
    return LoadFirstWindow();
}

void CSurveyKVRDoc::ReadSideFilesAndSetup() {
    declination_ = data_.derived.magneticDeclination;
    const NodeRef discharge = DischargeNode(root_);
    discharge.GetTyped<int32_t>("MeasuredStartBankSide", 0);
    discharge.GetTyped<int32_t>("CorrectedStartBankSide", 0);
    discharge.GetTyped<int32_t>("LeftProfile", 1);
    discharge.GetTyped<int32_t>("RightProfile", itemCount_);

    NodeRef systemFromFile;
    LoadCfg(path_, root_, values_, systemFromFile);
    if (!systemFromFile.IsNull()) {
        // The setup decided for the data afterwards takes effect; the number of cells is the one
        // the records of the file are made of.
        const uint16_t cells = data_.user.NumberOfCells;
        ReadTree(systemFromFile, data_.conf, data_.user, systemFields_);
        data_.user.NumberOfCells = cells;
        data_.derived = DeriveValues(data_.conf, data_.oper, data_.user);
    }
    LoadDisplay(root_, values_.display);
    const NodeRef checked = DischargeNode(root_);
    const int32_t right = checked.GetTyped<int32_t>("RightProfile", itemCount_);
    if (right > itemCount_ || right == 0) checked.SetValue("RightProfile", Variant(int32_t{itemCount_}));

    LoadPmk(path_, pmk_);
    FillTree(systemRoot_, data_.conf, data_.user, systemFields_);
    StartNewMeasurement();
}

void CSurveyKVRDoc::StartNewMeasurement() {
    MeasurementSource source;
    source.fileName = path_;
    source.discharge = DischargeNode(root_);
    source.trackReference = values_.display.trackReference;
    source.velocityReference = values_.display.velocityReference;
    source.magneticDeclination = declination_;
    source.transducerDepth = data_.user.SensorDepth * 0.01;
    OpenMeasurement(discharge_, source, data_);
}

bool CSurveyKVRDoc::LoadFirstWindow() {
    SnapshotSettings();
    ProcessingContext ctx = Context();
    BeginPass(ctx, *source_);
    windowStart_ = 1;
    windowEnd_ = 0;
    current_ = 0;
    const bool toEnd = app_.Get(app_keys::LoadToEndOfFile) != 0;
    const int target = toEnd ? itemCount_ : std::min(window_, itemCount_);
    LoadForward(target, true);
    return true;
}

void CSurveyKVRDoc::CloseDocument() {
    if (data_.IsOpen()) data_.CloseFile();
    slots_.clear();
    window_ = 0;
    windowStart_ = 1;
    windowEnd_ = 0;
    current_ = 0;
}

bool CSurveyKVRDoc::OnCloseDocument() {
    if (LiveCollecting()) {
        if (!prompt_.AskYesNo(kStopCollectionQuestion)) return false;
        StopAcquisition();
    }
    if (Mode() == kModePlayback && !path_.empty() && !values_.fileIsLocked) SaveSideFile();
    app_.General().SetValue("ShowXAxisAs", Variant(values_.display.showXAxisAs));
    CloseDocument();
    return true;
}

}  // namespace rm
