#pragma once
// The pass over a data set from its first profile: what "Recompute" and GoToProfile run after a
// change of a setting, and what the document runs, a profile at a time, when it loads its window
// and plays back. The sums of the measurement are only right when profiles come in order from
// the first, so every pass starts with BeginPass and takes items 1, 2, 3 ... in turn.
//
// The settings snapshot in the context is used for the whole pass; take a fresh one before
// BeginPass when a setting has changed.

#include "processing/profile_source.h"

namespace rm {

// Told about each profile once it has been processed (a .dis file, a collector of results).
class PassObserver {
public:
    virtual ~PassObserver() = default;
    // `item` from 1; `slot` holds its results; `readOk` false for a profile that could not be
    // read, which carries the previous track point and no discharge.
    virtual void OnProfile(const ProcessingContext& ctx, int item, int slot, bool readOk) = 0;
};

// Clears the running state, the measurement's sums (its references survive) and every slot's
// results; the phase becomes 3 (recomputation), `count` 0.
void BeginPass(ProcessingContext& ctx, ProfileSource& source);

// Reads item `item` (from 1) as the next profile of the pass and processes it: the chain of
// ProcessProfile, then for profiles in the measurement's range the maxima and the running means
// of correlation and standard deviation. A profile that cannot be read takes the previous
// profile's track points and bottom-track values and gets only its quality index. Returns the
// read result.
int TakeProfile(ProcessingContext& ctx, ProfileSource& source, int item, PassObserver* observer = nullptr);

// The end of a pass: distance made good from the last track point of the track reference, made
// good speed, total width and total discharge.
void FinishPass(ProcessingContext& ctx);

// Items 1 to `upTo` (limited to the items of the source). False, with the old results cleared,
// when the data file is not open.
bool RunPass(ProcessingContext& ctx, ProfileSource& source, int upTo, PassObserver* observer = nullptr);

// The whole data set.
bool Recompute(ProcessingContext& ctx, ProfileSource& source, PassObserver* observer = nullptr);

// The pass up to item `n`, then ReprocessRing. Nothing happens when n is below 1.
bool GoToProfile(ProcessingContext& ctx, ProfileSource& source, int n, PassObserver* observer = nullptr);

// The first and last item of the measurement's range: LeftProfile and RightProfile, the smaller
// first.
struct ItemRange {
    int first = 1, last = 0;
    bool Contains(int item) const { return first <= item && item <= last; }
};
ItemRange MeasurementRange(const ProcessingSettings& settings);

// Mean over the water cells of the beam mean of the velocity standard deviation (code 3,
// component 4), times 0.001; MissingValue when the profile has no value.
double ProfileStandardDeviation(const ProcessingContext& ctx, int slot);

}  // namespace rm
