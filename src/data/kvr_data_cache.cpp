// CKvrData: reading profiles into the ring of cache slots, and selecting and averaging on load.

#include "data/kvr_data.h"

#include <algorithm>

#include "data/profile_group_average.h"
#include "data/velocity_unwrap.h"

namespace rm {

void CKvrData::SetCacheCapacity(int slotCount) {
    capacity_ = std::max(slotCount, 1);
    slots_.resize(static_cast<size_t>(capacity_));
    if (layout_.cells > 0 && layout_.beams > 0) AllocateSlots();
}

void CKvrData::AllocateSlots() {
    // Slots that already have the file's size keep what they hold, so that re-reading the head
    // of a growing file does not empty the ring.
    for (ProfileRecord& slot : slots_) {
        if (slot.cells != layout_.cells || slot.beams != layout_.beams) slot.Resize(layout_.cells, layout_.beams);
    }
    if (Averaging()) {
        groupSlots_.resize(static_cast<size_t>(groupNumber_));
        for (ProfileRecord& slot : groupSlots_) {
            if (slot.cells != layout_.cells || slot.beams != layout_.beams) slot.Resize(layout_.cells, layout_.beams);
        }
    } else {
        groupSlots_.clear();
    }
}

void CKvrData::SetGrouping(int groupNumber, GroupType type, int firstIndex) {
    groupNumber_ = std::max(groupNumber, 1);
    groupType_ = type;
    groupFirstIndex_ = std::max(firstIndex, 0);
    groupOrder_.assign(static_cast<size_t>(groupNumber_), nullptr);
    if (layout_.cells > 0 && layout_.beams > 0) AllocateSlots();
}

int CKvrData::GroupCount() const {
    const int available = std::max(profileCount_ - groupFirstIndex_, 0);
    if (groupType_ == GroupType::EveryProfile) return available;
    return available / groupNumber_;
}

int CKvrData::ReadProfile(int index, int slot, bool skipArrays) {
    if (file_ == nullptr || !layoutReady_) return kReadError;
    if (index < 0) return kReadOutOfRange;

    ProfileRecord* target = &Slot(slot);
    if (Averaging()) {
        const int member = ((index - groupFirstIndex_ + 1) % groupNumber_ + groupNumber_) % groupNumber_;
        target = &groupSlots_[static_cast<size_t>(member)];
    }
    if (layout_.bottomTrack) target->bottomTrack.fill(kBottomTrackFillByte);

    const size_t size = layout_.RecordSize();
    if (!ReadExact(ProfilePosition(index), recordBuffer_.data(), size)) return kReadError;
    const DecodeResult decoded = DecodeProfileRecord(recordBuffer_.data(), layout_, BlockOrder::File, skipArrays, *target);
    if (!skipArrays) UnwrapProfile(*target, conf, oper, user, derived, unwrapThreshold_);
    return decoded == DecodeResult::Ok ? kReadOk : kReadBadChecksum;
}

int CKvrData::LoadProfile(int index, int slot) {
    if (index < 0 || index >= profileCount_) return kReadOutOfRange;
    const int result = ReadProfile(index, slot, false);
    if (result == kReadError || result == kReadOutOfRange) return result;
    if (Averaging() && (index - groupFirstIndex_ + 1) % groupNumber_ == 0) CombineGroup(slot);
    return result;
}

int CKvrData::LoadGroup(int group, int slot) {
    if (group < 0) return kReadOutOfRange;
    switch (groupType_) {
        case GroupType::EveryProfile:
            return LoadProfile(groupFirstIndex_ + group, slot);
        case GroupType::SelectEvery:
            return LoadProfile(groupFirstIndex_ + group * groupNumber_, slot);
        case GroupType::Average:
            break;
    }
    if (group >= GroupCount()) return kReadOutOfRange;
    int worst = kReadOk;
    const int start = groupFirstIndex_ + group * groupNumber_;
    for (int k = 0; k < groupNumber_; ++k) {
        const int result = LoadProfile(start + k, slot);
        if (result == kReadError || result == kReadOutOfRange) return result;
        if (result == kReadBadChecksum) worst = kReadBadChecksum;
    }
    return worst;
}

void CKvrData::CombineGroup(int slot) {
    if (!Averaging() || groupSlots_.size() != static_cast<size_t>(groupNumber_)) return;
    // The first profile of a group sits in group slot 1, the last in group slot 0.
    for (int k = 0; k < groupNumber_; ++k) {
        groupOrder_[static_cast<size_t>(k)] = &groupSlots_[static_cast<size_t>((k + 1) % groupNumber_)];
    }
    AverageProfiles(groupOrder_.data(), groupOrder_.size(), Slot(slot));
}

}  // namespace rm
