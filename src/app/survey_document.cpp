// The document's data set and settings: construction, the processing context over its window,
// the settings snapshot, the changes of settings that rerun the computation, and the lock.

#include "app/survey_document.h"

#include <algorithm>

#include "app/live_profile_source.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {
constexpr int kLinkedReferences = 1;

NodeRef DisplayNode(const NodeRef& root) { return root.GetOrCreateChild("Display"); }

void ReadSoundSpeed(const NodeRef& root, SoundSpeedSettings& s) {
    const NodeRef node = root.GetOrCreateChild("Processing").GetOrCreateChild("SoundSpeed");
    s.temperatureCorrectionType = node.GetTyped<int32_t>("TemperatureCorrectionType", s.temperatureCorrectionType);
    s.salinityCorrectionType = node.GetTyped<int32_t>("SalinityCorrectionType", s.salinityCorrectionType);
    s.correctedSalinityInPpt = node.GetTyped<double>("CorrectedSalinityInPpt", s.correctedSalinityInPpt);
    s.correctedTemperatureInDegC = node.GetTyped<double>("CorrectedTemperatureInDegC", s.correctedTemperatureInDegC);
}
}  // namespace

CSurveyKVRDoc::CSurveyKVRDoc(AppSettings& app, UserPrompt& prompt, int mode)
    : CSurveyKVRDoc(app, prompt, mode, Options{}) {}

CSurveyKVRDoc::CSurveyKVRDoc(AppSettings& app, UserPrompt& prompt, int mode, Options options)
    : app_(app), prompt_(prompt), options_(std::move(options)), transport_(mode),
      discharge_(std::make_shared<CDischargeData>()) {
    data_.SetPrompt(&prompt_);
    source_ = options_.makeSource ? options_.makeSource(data_) : std::make_unique<ProfileSource>(data_);
    source_->SetSideFile(&pmk_);
    // A data set without a .cfg starts in ENU with bottom track as velocity and track reference.
    values_.display.coordinateSystem = kCoordEnu;
    values_.display.velocityReference = kVelocityRefBottomTrack;
    values_.display.trackReference = kTrackRefBottomTrack;
    state_.live = mode == kModeLive;
    // A live document has its Discharge settings from the start: the edges are set before the
    // first profile comes.
    if (state_.live) CreateDischargeDefaults(DischargeNode(root_));
}

CSurveyKVRDoc::~CSurveyKVRDoc() { CloseDocument(); }

ProcessingContext CSurveyKVRDoc::Context() {
    return ProcessingContext{data_, slots_, state_, settings_, *discharge_, working_};
}

const ProcessingContext CSurveyKVRDoc::ReadContext() const {
    // The context holds references for the steps that write; a const context passes them on
    // only to readers.
    auto& self = const_cast<CSurveyKVRDoc&>(*this);
    return ProcessingContext{self.data_, self.slots_, self.state_, settings_, *discharge_, self.working_};
}

const SlotResults* CSurveyKVRDoc::ResultsOf(int item) const {
    if (item < windowStart_ || item > windowEnd_ || slots_.empty()) return nullptr;
    const int ring = static_cast<int>(slots_.size());
    return &slots_[static_cast<size_t>((item - 1) % ring)];
}

void CSurveyKVRDoc::SetCoordinateSystem(int system) {
    values_.display.coordinateSystem = system;
    DisplayNode(root_).SetValue("CoordinateSystem", Variant(int32_t{system}));
}

void CSurveyKVRDoc::SetVelocityReference(int reference) {
    values_.display.velocityReference = reference;
    DisplayNode(root_).SetValue("VelocityReference", Variant(int32_t{reference}));
    const bool linked = app_.Get(app_keys::VelocityTrackReference) == kLinkedReferences;
    if (linked && (reference == kVelocityRefBottomTrack || reference == kVelocityRefGps)) SetTrackReference(reference);
}

void CSurveyKVRDoc::SetTrackReference(int reference) {
    values_.display.trackReference = reference;
    DisplayNode(root_).SetValue("TrackReference", Variant(int32_t{reference}));
}

void CSurveyKVRDoc::SnapshotSettings() {
    // The tree is where every setting of the data set lives; the document's fields follow it.
    LoadDisplay(root_, values_.display);
    ReadSoundSpeed(root_, values_.soundSpeed);
    fields_.CoordinateSystem = values_.display.coordinateSystem;
    fields_.VelocityReference = values_.display.velocityReference;
    fields_.TrackReference = values_.display.trackReference;
    fields_.DepthType = systemFields_.MountingMethod;
    fields_.UserTransducerDepth = systemFields_.AutoMountingDepthInCm * 0.01;
    fields_.soundSpeed = values_.soundSpeed;
    settings_ = ReadProcessingSettings(root_, app_.General(), fields_);
    discharge_->TrackReference = settings_.TrackReference;
    discharge_->VelocityReference = settings_.VelocityReference;
    discharge_->DepthReference = settings_.UseEchoSounderForDepth != 0 ? 1 : 0;
    state_.ring = window_;
}

void CSurveyKVRDoc::SettingsChanged() {
    SnapshotSettings();
    ProcessingContext ctx = Context();
    if (Mode() == kModeLive || !IsOpen()) {
        if (live_) live_->SetNumBadBeams(settings_.NumBadBeams);
        ReprocessRing(ctx);
        return;
    }
    const int n = std::clamp(current_, 1, std::max(itemCount_, 1));
    if (GoToProfile(ctx, *source_, n)) {
        windowEnd_ = std::min(n, itemCount_);
        windowStart_ = std::max(1, windowEnd_ - window_ + 1);
        current_ = windowEnd_;
    }
}

bool CSurveyKVRDoc::Recompute(PassObserver* observer) {
    SnapshotSettings();
    ProcessingContext ctx = Context();
    if (!rm::Recompute(ctx, *source_, observer)) return false;
    windowEnd_ = std::min(itemCount_, state_.count);
    windowStart_ = std::max(1, windowEnd_ - window_ + 1);
    current_ = windowEnd_;
    return true;
}

bool CSurveyKVRDoc::LockMeasurement() {
    values_.fileIsLocked = !values_.fileIsLocked;
    return SaveCfg(path_, root_, systemRoot_, values_, std::nullopt, CfgSaveReason::LockMeasurement);
}

bool CSurveyKVRDoc::SaveSideFile() {
    if (path_.empty()) return false;
    LoadDisplay(root_, values_.display);
    return SaveCfg(path_, root_, systemRoot_, values_, std::nullopt, CfgSaveReason::Closing);
}

}  // namespace rm
