#include "app/live_profile_source.h"

#include "data/velocity_unwrap.h"

namespace rm {

LiveProfileSource::LiveProfileSource(CKvrData& data, const LiveAcquisition& acquisition)
    : ProfileSource(data), data_(data), acquisition_(acquisition) {}

void LiveProfileSource::SetArrived(int item, bool good) {
    item_ = item;
    good_ = good;
}

int LiveProfileSource::ReadRecord(int group, int slot) {
    if (group + 1 != item_ || !good_) return kReadError;
    UnwrapProfile(data_.Slot(slot), data_.conf, data_.oper, data_.user, data_.derived, kDefaultUnwrapThreshold);
    return kReadOk;
}

void LiveProfileSource::AttachEcho(ProcessingContext& ctx, int slot, int item) {
    constexpr uint8_t kEchoGood = 2, kEchoBad = 3;
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    const LiveSlot& live = acquisition_.Slot(item);
    results.echoDepth = MissingValueF;
    results.echoStatus = 0;
    if (live.echoFlag == kSlotEmpty) return;  // no echo sounder
    if (live.echoFlag == kSlotGood && live.echoDepth < MissingValue) {
        results.echoDepth = static_cast<float>(live.echoDepth);
        results.echoStatus = kEchoGood;
        ctx.state.echoDepthSeen = true;
    } else {
        results.echoStatus = kEchoBad;
    }
}

}  // namespace rm
