#include "processing/recompute_pass.h"

#include <algorithm>
#include <cmath>

#include "processing/discharge_data.h"
#include "processing/display_units.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {
constexpr uint8_t kShallowWaterPingMode = 2;
constexpr int kCodeShallowCorrelation = 41;
constexpr int kComponentBeamMean = 4;

// Folds `value` into a running mean of which `k` values are already in.
double Fold(double mean, double value, int k) { return (k * mean + value) / (k + 1); }

// The profile could not be read: the track stays where the previous profile left it, the
// bottom-track values are held, and the profile has no discharge.
void TakeFailedProfile(ProcessingContext& ctx, int item, int slot) {
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    if (ctx.state.count > RingSize(ctx)) {
        ctx.state.bottomTrackOrigin = results.bottomTrackPoint;
        ctx.state.gpsTrackOrigin = results.gpsTrackPoint;
    }
    const bool hasPrevious = item > 1;
    const SlotResults* previous = hasPrevious ? &ctx.slots[static_cast<size_t>(PreviousSlot(ctx, slot))] : nullptr;
    if (FileHasBottomTrack(ctx.data)) {
        results.bottomTrackPoint = hasPrevious ? previous->bottomTrackPoint : TrackPoint{};
        if (hasPrevious) {
            results.bottomTrack = previous->bottomTrack;
        } else {
            results.bottomTrack.Velocity.fill(0.0f);
            results.bottomTrack.Depth.fill(MissingValueF);
        }
        results.bottomStatus = kBottomBad;
    }
    if (hasPrevious && previous->gpsPresent) {
        results.gpsTrackPoint = previous->gpsTrackPoint;
        results.gpsStatus = kGpsBad;
    } else if (!hasPrevious) {
        results.gpsTrackPoint = TrackPoint{};
    }
    results.gpsPresent = false;
    results.meanDepth = results.minDepth = MissingValueF;
    results.echoDepth = MissingValueF;
    results.processed.DepthStatus = 0;
    ComputeQualityIndex(ctx, slot);
}

void InRangeStatistics(ProcessingContext& ctx, int item, int slot, const ItemRange& range) {
    UpdateMaxima(ctx, slot);
    CDischargeData& d = ctx.discharge;
    const int k = std::max(item - range.first, 0);
    const ProcessingSettings& s = ctx.settings;
    if (ctx.data.derived.bottomTrackMode == kShallowWaterPingMode) {
        const double correlation = GetProfileValue(ctx, kCodeShallowCorrelation, kComponentBeamMean,
                                                   s.CoordinateSystem, s.VelocityReference, slot, 0);
        if (correlation < MissingValue) d.MeanCorrelation = Fold(d.MeanCorrelation, correlation, k);
    }
    if (ctx.slots[static_cast<size_t>(slot)].waterCells > 0) {
        const double deviation = ProfileStandardDeviation(ctx, slot);
        if (deviation < MissingValue) d.MeanStandardDeviation = Fold(d.MeanStandardDeviation, deviation, k);
    }
}
}  // namespace

ItemRange MeasurementRange(const ProcessingSettings& settings) {
    return {std::min(settings.LeftProfile, settings.RightProfile), std::max(settings.LeftProfile, settings.RightProfile)};
}

double ProfileStandardDeviation(const ProcessingContext& ctx, int slot) {
    // The values of GetProfileValue code 3, component 4 (the beam mean of the standard deviation
    // of a cell), taken straight from the record: this runs for every profile of a pass.
    constexpr uint8_t kMissingDeviation = 255;
    constexpr double kDeviationUnit = 0.1;  // raw mm/s to cm/s
    const SlotResults& results = ctx.slots[static_cast<size_t>(NormalSlot(ctx, slot))];
    const ProfileRecord& record = ctx.Raw(slot);
    const int cells = std::min(results.waterCells, record.cells);
    const int beams = BeamCount(record);
    double sum = 0.0;
    int n = 0;
    for (int cell = 0; cell < cells; ++cell) {
        int present = 0, total = 0;
        for (int beam = 0; beam < beams; ++beam) {
            const uint8_t sd = record.StdError(beam, cell);
            if (sd == kMissingDeviation) continue;
            total += sd;
            ++present;
        }
        if (present == 0) continue;
        sum += ToDisplayUnits(total * kDeviationUnit / present, Quantity::Velocity, ctx.settings.UnitSystem);
        ++n;
    }
    return n == 0 ? MissingValue : sum / n * 0.001;
}

void BeginPass(ProcessingContext& ctx, ProfileSource& source) {
    CDischargeData& d = ctx.discharge;
    const int32_t track = d.TrackReference, velocity = d.VelocityReference, depth = d.DepthReference;
    RunningState fresh;
    fresh.ring = ctx.state.ring;
    fresh.live = ctx.state.live;
    fresh.measurementState = ctx.state.measurementState;
    fresh.phase = 3;
    fresh.count = 0;
    ctx.state = fresh;
    d.Reset();
    d.TrackReference = track;
    d.VelocityReference = velocity;
    d.DepthReference = depth;
    std::fill(ctx.slots.begin(), ctx.slots.end(), SlotResults{});
    ctx.working = ProfileWorkingValues{};
    source.Restart(ctx.settings);
}

int TakeProfile(ProcessingContext& ctx, ProfileSource& source, int item, PassObserver* observer) {
    const int slot = ctx.SlotOfProfile(item);
    ctx.state.count = item;
    const int result = source.Load(ctx, item);
    const bool readOk = ctx.slots[static_cast<size_t>(slot)].readOk;
    if (!readOk) {
        TakeFailedProfile(ctx, item, slot);
    } else {
        ProcessProfile(ctx, item);
        const ItemRange range = MeasurementRange(ctx.settings);
        if (range.Contains(item)) InRangeStatistics(ctx, item, slot, range);
    }
    if (observer != nullptr) observer->OnProfile(ctx, item, slot, readOk);
    return result;
}

void FinishPass(ProcessingContext& ctx) {
    const int count = ctx.state.count;
    if (count < 1) return;
    CDischargeData& d = ctx.discharge;
    const SlotResults& last = ctx.slots[static_cast<size_t>(ctx.SlotOfProfile(count))];
    const TrackPoint& point =
        ctx.settings.TrackReference == kTrackRefGps ? last.gpsTrackPoint : last.bottomTrackPoint;
    d.MadeGood = static_cast<float>(std::sqrt(point.East * point.East + point.North * point.North));
    const double seconds = ProfileTimeStep(ctx.data) * count;
    d.MadeGoodSpeed = seconds > 0.0 ? d.MadeGood / seconds : 0.0;
    d.TotalWidth = static_cast<float>(d.MadeGood + ctx.settings.CorrectedLeftDistance +
                                      ctx.settings.CorrectedRightDistance);
    float total = d.MiddleDischarge;
    total += d.RightDischarge;
    total += d.LeftDischarge;
    total += d.TopDischarge;
    total += d.BottomDischarge;
    d.TotalDischarge = total;
}

bool RunPass(ProcessingContext& ctx, ProfileSource& source, int upTo, PassObserver* observer) {
    BeginPass(ctx, source);
    if (!ctx.data.IsOpen()) return false;
    const int n = std::min(upTo, source.ItemCount());
    for (int item = 1; item <= n; ++item) TakeProfile(ctx, source, item, observer);
    FinishPass(ctx);
    return true;
}

bool Recompute(ProcessingContext& ctx, ProfileSource& source, PassObserver* observer) {
    return RunPass(ctx, source, source.ItemCount(), observer);
}

bool GoToProfile(ProcessingContext& ctx, ProfileSource& source, int n, PassObserver* observer) {
    if (n < 1) return false;
    const bool ok = RunPass(ctx, source, n, observer);
    if (ok) ReprocessRing(ctx);
    return ok;
}

}  // namespace rm
