// Depth of a profile from the bottom-track beams and the echo sounder: the mean and minimum
// depth with their status (UpdateDepth), the depth in the forms other steps ask for
// (GetDepth) and the instrument's transducer depth.

#include <algorithm>

#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {
constexpr int kDepthTypeSetup = 0;
constexpr int kDepthTypeUser = 1;
constexpr int kDepthStatusGood = 1;
constexpr int kDepthStatusNoSource = 2;
constexpr double kMinimumStart = 999999.9;
constexpr uint8_t kEchoGood = 2;

// The bottom-track side of the depth: mean and minimum over the beams that hold a depth,
// each with the transducer depth added.
struct BeamDepth {
    double mean = MissingValue;
    double min = MissingValue;
    int good = 0;
};

BeamDepth BeamDepthOf(const ProcessingContext& ctx, const SlotResults& results) {
    BeamDepth b;
    const double t = GetTransducerDepth(ctx);
    double sum = 0.0, minimum = kMinimumStart;
    int count = 0;
    for (float depth : results.bottomTrack.Depth) {
        if (!(depth < MissingValueF && depth > 0.0f)) continue;
        sum += depth;
        ++count;
        minimum = std::min(minimum, static_cast<double>(depth));
    }
    if (count == 0 || minimum > MissingValue) minimum = MissingValue;
    if (count > 0) {
        b.mean = sum / count + t;
        if (minimum < MissingValue) b.min = minimum + t;
        b.good = results.bottomTrack.flag != 0 ? 1 : 0;
    }
    return b;
}
}  // namespace

double GetTransducerDepth(const ProcessingContext& ctx) {
    double t = 0.0;
    if (ctx.settings.DepthType == kDepthTypeSetup) t = ctx.data.user.SensorDepth * 0.01;
    else if (ctx.settings.DepthType == kDepthTypeUser) t = ctx.settings.UserTransducerDepth;
    return std::max(t, 0.0);
}

void UpdateDepth(ProcessingContext& ctx, int slot, bool swap) {
    slot = NormalSlot(ctx, slot);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return;
    SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    const bool hasBottomTrack = FileHasBottomTrack(ctx.data);
    const bool hasEcho = ctx.state.echoDepthSeen;

    BeamDepth beam;
    if (hasBottomTrack) beam = BeamDepthOf(ctx, results);
    double echo = MissingValue;
    int echoGood = 0;
    if (hasEcho) {
        echo = results.echoDepth;
        echoGood = results.echoStatus == kEchoGood ? 1 : 0;
    }

    double mean = MissingValue, minimum = MissingValue;
    int status = kDepthStatusNoSource;
    if (!hasBottomTrack && !hasEcho) {
        // No depth source at all, whichever source is preferred.
    } else if (ctx.settings.UseEchoSounderForDepth == 0) {
        mean = beam.mean;
        minimum = beam.min;
        status = beam.good;
        if (beam.good == 0 && echoGood == 1 && swap) {
            mean = minimum = echo;
            status = kDepthStatusGood;
        }
    } else {
        mean = echo;
        minimum = std::min(echo, beam.min);
        status = echoGood;
        if (echoGood == 0 && beam.good == 1 && swap) {
            mean = beam.mean;
            minimum = beam.min;
            status = kDepthStatusGood;
        }
    }
    results.meanDepth = static_cast<float>(mean);
    results.minDepth = static_cast<float>(minimum);
    results.processed.DepthStatus = status;
}

double GetDepth(const ProcessingContext& ctx, int slot, int mode) {
    slot = NormalSlot(ctx, slot);
    if (static_cast<size_t>(slot) >= ctx.slots.size()) return MissingValue;
    const SlotResults& results = ctx.slots[static_cast<size_t>(slot)];
    const double mean = results.meanDepth;
    const double minimum = results.minDepth;
    if (!(mean < MissingValue)) return mean;
    if (mode == 1) return minimum < MissingValue ? minimum - GetTransducerDepth(ctx) : minimum;
    if (mode == 2) return std::min(minimum - GetTransducerDepth(ctx), mean - ctx.settings.EchoTransducerDepth);
    return mean;
}

}  // namespace rm
