// The window of profiles: moves to a profile, reading forward or rebuilding from the first
// profile when the target is not held, and the reaction to a read error.

#include <algorithm>

#include "app/survey_document.h"

namespace rm {

namespace {
constexpr const char* kFirstPassReadError = "KVR DataFile: Incorrect file format";
constexpr const char* kReadErrorMessage = "Incorrect file format";

bool Unreadable(int result) { return result != kReadOk && result != kReadBadChecksum; }
}  // namespace

void CSurveyKVRDoc::ReadFailed(int lastGood, bool firstPass) {
    prompt_.Message(firstPass ? kFirstPassReadError : kReadErrorMessage);
    current_ = lastGood;
    transport_.KillTimer();
    transport_.SetState(kStatePaused);
}

bool CSurveyKVRDoc::LoadForward(int target, bool firstPass) {
    ProcessingContext ctx = Context();
    target = std::min(target, itemCount_);
    bool ok = true;
    for (int item = windowEnd_ + 1; item <= target; ++item) {
        const int result = TakeProfile(ctx, *source_, item);
        // Taking the item overwrote the slot of the oldest profile of a full window.
        windowStart_ = std::max(windowStart_, item - window_ + 1);
        if (Unreadable(result)) {
            state_.count = item - 1;
            ReadFailed(item - 1, firstPass);
            ok = false;
            break;
        }
        windowEnd_ = item;
    }
    FinishPass(ctx);
    if (ok) current_ = target;
    return ok;
}

bool CSurveyKVRDoc::RebuildTo(int target, bool firstPass) {
    ProcessingContext ctx = Context();
    BeginPass(ctx, *source_);
    windowStart_ = 1;
    windowEnd_ = 0;
    return LoadForward(target, firstPass);
}

bool CSurveyKVRDoc::GotoProfile(int n) {
    if (!IsOpen() || itemCount_ < 1) return false;
    n = std::clamp(n, 1, itemCount_);
    if (n >= windowStart_ && n <= windowEnd_) {
        current_ = n;
        return true;
    }
    if (n > windowEnd_) return LoadForward(n, false);
    return RebuildTo(n, false);
}

bool CSurveyKVRDoc::ReloadWindow() {
    if (!IsOpen() || itemCount_ < 1) return false;
    SnapshotSettings();
    return RebuildTo(std::clamp(current_, 1, itemCount_), false);
}

}  // namespace rm
