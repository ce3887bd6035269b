#include "data/velocity_unwrap.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "data/byte_io.h"

namespace rm {

namespace {

// Offsets in the shallow-water block.
constexpr size_t kSwPingWord = 0;        // u32, the divisor of the pulse count
constexpr size_t kSwRangeStart = 4;      // u16, tenths of a centimetre
constexpr size_t kSwRangeLength = 6;     // u16, tenths of a centimetre
constexpr size_t kSwPulseWord = 8;       // u16
constexpr size_t kSwLimitWord = 10;      // u16, half the limit
constexpr size_t kSwReference = 24;      // i16 per beam
constexpr size_t kSwReferenceCount = 32; // u8 per beam

bool UsesSoundSpeedLimit(int cpu) { return (cpu >= 16 && cpu <= 19) || cpu >= 150; }

bool IsBad(int16_t v) { return v == kBadVelocity || v == kUnwrapBadVelocity; }

int16_t StoredVelocity(double value) {
    const double r = std::round(value);
    return static_cast<int16_t>(std::clamp(r, -32768.0, 32766.0));
}

}  // namespace

UnwrapParameters ComputeUnwrapParameters(const ProfileRecord& record, const InstrumentConf& conf,
                                         const OperationRecord& oper, const UserSetup& user) {
    ByteReader block(record.shallowWater.data(), record.shallowWater.size());
    UnwrapParameters p;
    p.limit = 2.0 * block.u16(kSwLimitWord);
    const uint32_t pingWord = block.u32(kSwPingWord);
    p.pulseCount = pingWord != 0 ? static_cast<double>(block.u16(kSwPulseWord)) / pingWord : 0.0;

    if (UsesSoundSpeedLimit(conf.CPUSoftwareVerNum)) {
        const double frequency = UnwrapFrequencyKHz(conf.KvrType);
        const double samples = oper.unwrapSamples;
        const double c = user.DefaultSpeedOfSound;
        // Without a frequency or a sample count there is no limit, and nothing is unwrapped.
        p.limit = (frequency > 0.0 && samples != 0.0) ? std::round(c * c * 0.125 / frequency / samples) : 0.0;
        p.pulseCount = oper.unwrapPulses != 0 ? samples / oper.unwrapPulses : 0.0;
    }

    const int cells = record.cells;
    const double cellSize = user.CellSizeCm;
    int first = 1;
    int count = 1;
    if (cellSize > 0.0) {
        first = static_cast<int>((block.u16(kSwRangeStart) * 0.1 - user.BlankDistance) / cellSize + 0.5);
        count = static_cast<int>(std::floor(block.u16(kSwRangeLength) * 0.1 / cellSize + 0.5));
    }
    first = std::max(1, std::min(first, cells - 1));
    count = std::max(count, 1);
    count = std::max(0, std::min(count, cells - first));
    p.firstCell = first;
    p.cellCount = count;
    return p;
}

void UnwrapVelocities(ProfileRecord& record, const UnwrapParameters& p, double velocityScale, int threshold) {
    const double L = p.limit;
    if (!(L > 0.0) || !(velocityScale > 0.0)) return;
    thread_local std::vector<double> work;
    work.resize(static_cast<size_t>(std::max(record.cells, 0)));
    ByteReader block(record.shallowWater.data(), record.shallowWater.size());

    for (int b = 0; b < record.beams; ++b) {
        // Walk up the beam; a bad value carries the running value on.
        double running = 0.0;
        for (int c = 0; c < record.cells; ++c) {
            const int16_t v = record.Velocity(b, c);
            double x = running;
            if (!IsBad(v)) {
                x = v * velocityScale;
                const double d = x - running;
                if (d > L) {
                    x -= 2.0 * L;
                } else if (d < -L) {
                    x += 2.0 * L;
                }
            }
            running = x;
            work[static_cast<size_t>(c)] = x;
        }

        // Agreement with the reference over the reference range, by whole multiples of 2 L.
        double shift = 0.0;
        const int count = b < 4 ? block.u8(kSwReferenceCount + static_cast<size_t>(b)) : 0;
        if (b < 4 && count > threshold) {
            double sum = 0.0;
            int good = 0;
            for (int c = p.firstCell; c < p.firstCell + p.cellCount && c < record.cells; ++c) {
                if (IsBad(record.Velocity(b, c))) continue;
                sum += work[static_cast<size_t>(c)];
                ++good;
            }
            if (good > 0) {
                const double reference = block.i16(kSwReference + 2 * static_cast<size_t>(b));
                shift = 2.0 * L * std::round((reference - sum / good) / (2.0 * L));
            }
        }

        for (int c = 0; c < record.cells; ++c) {
            int16_t& v = record.Velocity(b, c);
            if (!IsBad(v)) v = StoredVelocity((work[static_cast<size_t>(c)] + shift) / velocityScale);
        }
    }
}

bool UnwrapProfile(ProfileRecord& record, const InstrumentConf& conf, const OperationRecord& oper,
                   const UserSetup& user, const DerivedValues& derived, int threshold) {
    if (user.PCMode == 0 || !record.hasShallowWater) return false;
    const UnwrapParameters p = ComputeUnwrapParameters(record, conf, oper, user);
    UnwrapVelocities(record, p, derived.shallowWaterVelocityFactor, threshold);
    return true;
}

}  // namespace rm
