#include "processing/profile_source.h"

#include <algorithm>

#include "processing/processing_steps.h"

namespace rm {

namespace {
// How far back the start fix of an item is looked for when the item before it was not the one
// read last: enough for any selection step in practice, and bounded so that a long GPS outage
// costs nothing per profile.
constexpr int kFixSearchDepth = 64;

GpsBlock BlockBetween(const GpsFix& start, const GpsFix& end) {
    GpsBlock b;
    b.startTime = start.Time;
    b.startLatitude = start.Latitude;
    b.startLongitude = start.Longitude;
    b.endTime = end.Time;
    b.endLatitude = end.Latitude;
    b.endLongitude = end.Longitude;
    return b;
}

NodeRef ChildNamed(const NodeRef& node, const char* name) {
    const int index = node.FindIndex(name);
    return index < 0 ? NodeRef() : node.ItemChild(index);
}
}  // namespace

ProfileSource::ProfileSource(CKvrData& data) : data_(data) {}

void ProfileSource::SetSelection(const ProfileSelection& selection) {
    selection_ = selection;
    selection_.step = std::max(selection_.step, 1);
    selection_.firstIndex = std::max(selection_.firstIndex, 0);
    data_.SetGrouping(selection_.step, selection_.type, selection_.firstIndex);
    lastItem_ = 0;
}

int ProfileSource::ItemCount() const {
    const int available = data_.GroupCount();
    return selection_.count < 0 ? available : std::min(selection_.count, available);
}

void ProfileSource::Restart(const ProcessingSettings& settings) {
    echo_ = EchoSounderSettings{};
    echo_.TransducerDepth = settings.EchoTransducerDepth;
    echo_.Offset = settings.EchoOffset;
    echo_.Scale = settings.EchoScale;
    echo_.CorrectForSpeedOfSound = settings.CorrectForSpeedOfSound;
    if (pmk_ != nullptr && !pmk_->settings.customEsString.empty() &&
        SplitSentenceHead(pmk_->settings.customEsString, echo_.customPrefix, echo_.customId)) {
        echo_.customDepthIndex = pmk_->settings.depthIndex;
    }
    lastItem_ = 0;
    lastFixValid_ = false;
}

int ProfileSource::FirstFileProfile(int item) const {
    const int group = item - 1;
    switch (selection_.type) {
        case GroupType::EveryProfile:
            return selection_.firstIndex + group + 1;
        case GroupType::SelectEvery:
        case GroupType::Average:
            break;
    }
    return selection_.firstIndex + group * selection_.step + 1;
}

int ProfileSource::LastFileProfile(int item) const {
    if (selection_.type == GroupType::Average) return FirstFileProfile(item) + selection_.step - 1;
    return FirstFileProfile(item);
}

int ProfileSource::ReadRecord(int group, int slot) { return data_.LoadGroup(group, slot); }

int ProfileSource::Load(ProcessingContext& ctx, int item) {
    const int slot = ctx.SlotOfProfile(item);
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    results.processed = ProcessedProfile{};
    results.waterCells = 0;
    results.shallowCells = 0;
    results.shallowWaterFlag = 0;
    ++recordReads_;
    const int result = ReadRecord(item - 1, slot);
    results.readOk = result == kReadOk || result == kReadBadChecksum;
    if (results.readOk) {
        AttachGps(ctx, slot, item);
        AttachEcho(ctx, slot, item);
    }
    return result;
}

NodeRef ProfileSource::ProfileNode(int fileProfile) const {
    // Item n of the extra-data root is "Prf<n>"; item 0 is the Settings tree.
    if (pmk_ == nullptr || fileProfile < 1 || fileProfile >= pmk_->extraDataRoot.ItemCount()) return NodeRef();
    return pmk_->extraDataRoot.ItemChild(fileProfile);
}

bool ProfileSource::FixOfProfile(int fileProfile, GpsFix& fix) const {
    const NodeRef gps = ChildNamed(ProfileNode(fileProfile), "GpsData");
    return !gps.IsNull() && TakeNewestFix(gps, fix) == 1;
}

bool ProfileSource::NewestFixAtOrBefore(int fileProfile, int lowest, GpsFix& fix) const {
    for (int p = fileProfile; p >= std::max(lowest, 1); --p) {
        if (FixOfProfile(p, fix)) return true;
    }
    return false;
}

void ProfileSource::AttachGps(ProcessingContext& ctx, int slot, int item) {
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    const ProfileRecord& record = ctx.Raw(slot);
    if (record.hasGps) {
        results.gps = record.gps;
        results.gpsPresent = true;
        return;
    }
    results.gpsPresent = false;
    if (pmk_ == nullptr || pmk_->settings.gpsPresent == 0) return;

    const int first = FirstFileProfile(item);
    GpsFix start;
    bool haveStart = false;
    if (item == lastItem_ + 1 && selection_.type == GroupType::EveryProfile) {
        start = lastFix_;
        haveStart = lastFixValid_;
    } else {
        haveStart = NewestFixAtOrBefore(first - 1, first - kFixSearchDepth, start);
    }
    GpsFix end;
    const bool haveEnd = NewestFixAtOrBefore(LastFileProfile(item), first, end);
    if (!haveEnd) end = start;
    if (!haveStart) start = end;
    lastItem_ = item;
    lastFixValid_ = haveEnd || haveStart;
    lastFix_ = end;
    if (!lastFixValid_) {
        // Before the first fix of the recording the track stands at its start.
        results.gpsTrackPoint = TrackPoint{};
        return;
    }
    results.gps = BlockBetween(start, end);
    results.gpsPresent = true;
}

void ProfileSource::AttachEcho(ProcessingContext& ctx, int slot, int item) {
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    results.echoDepth = MissingValueF;
    results.echoStatus = 0;
    if (pmk_ == nullptr || pmk_->settings.echoSounderPresent == 0) return;
    const ProfileHeader& header = ctx.Raw(slot).header;
    const NodeRef sentences = ChildNamed(ProfileNode(LastFileProfile(item)), "EsData");
    const double depth =
        sentences.IsNull() ? MissingValue
                           : ReadEchoDepth(sentences, echo_, header.pitch * 0.1, header.roll * 0.1,
                                           SoundSpeedFactor(ctx, slot));
    constexpr uint8_t kEchoGood = 2, kEchoBad = 3;
    if (depth < MissingValue) {
        results.echoDepth = static_cast<float>(depth);
        results.echoStatus = kEchoGood;
        ctx.state.echoDepthSeen = true;
    } else {
        results.echoStatus = kEchoBad;
    }
}

}  // namespace rm
