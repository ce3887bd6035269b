#include "data/kvr_file_layout.h"

#include "data/profile_record.h"

namespace rm {

namespace {

// Division rounding towards minus infinity, for offsets that may be negative.
int64_t FloorDiv(int64_t a, int64_t b) {
    int64_t q = a / b;
    if ((a % b != 0) && ((a < 0) != (b < 0))) --q;
    return q;
}

}  // namespace

WaveSetup MakeWaveSetup(const UserSetup& user) {
    WaveSetup w;
    w.interval = user.PressureTimeSeriesInterval;
    w.rateByte = user.PseriesRate;
    w.length = user.PseriesLength;
    const int rateBits = (w.rateByte >> 2) & 0x3;
    w.rateHz = rateBits == 0 ? 1 : (rateBits == 1 ? 2 : 4);
    w.flag = (w.rateByte & 0x2) != 0;
    w.twoMoreSeries = ((w.rateByte >> 4) & 0x3) == 1;
    w.threeMoreSeries = w.twoMoreSeries && user.reserved252 != 0;

    const int64_t L = w.length;
    w.burstSize = 3 * L + static_cast<int64_t>(kProfileHeaderSize + kChecksumSize);
    if (w.twoMoreSeries) {
        w.burstSize += 6 * L;
        if (w.threeMoreSeries) w.burstSize += 9 * L;
        w.firstBurstIndex = 0;
    } else if (user.ProfileInterval > 0) {
        w.firstBurstIndex = (w.length / w.rateHz) / user.ProfileInterval;
    } else {
        // No interval to divide by: the burst is taken to stand at the head of each cycle.
        w.firstBurstIndex = 0;
    }
    return w;
}

bool HasCalibrationBlock(const InstrumentConf& conf, int fileVersion) {
    return (conf.ExtPressureSensorInstalled == 2 || conf.ExtPressureSensorInstalled == 3) &&
           conf.CPUSoftwareVerNum >= 165 && fileVersion >= 2;
}

int64_t HeaderLength(const InstrumentConf& conf, int fileVersion) {
    int64_t h = static_cast<int64_t>(fileVersion < 2 ? kConfSizeOld : kConfSize) + kOperSize + kUserSize;
    if (HasCalibrationBlock(conf, fileVersion)) h += kCalibrationBlockSize;
    return h;
}

RecordCounts CountRecords(int64_t fileSize, int64_t headerLength, int64_t profileSize, const WaveSetup& waves) {
    RecordCounts counts;
    const int64_t S = profileSize;
    if (S <= 0 || fileSize <= headerLength) return counts;
    const int64_t body = fileSize - headerLength;
    if (!waves.HasBursts()) {
        counts.profiles = body / S;
        return counts;
    }
    const int64_t N = waves.interval;
    const int64_t W = waves.burstSize;
    const int64_t cycle = N * S + W;
    const int64_t q = body / cycle;
    counts.bursts = q;
    counts.profiles = N * q;
    int64_t rest = body - q * cycle;
    // The last, incomplete cycle: profiles and the burst in the order they are written.
    for (int64_t index = -1;; ++index) {
        if (rest < S && rest < W) break;
        if (index == waves.firstBurstIndex) {
            if (rest < W) {
                rest = 0;  // a burst cut short
            } else {
                ++counts.bursts;
                rest -= W;
            }
        } else if (rest < S) {
            rest = 0;
        } else {
            ++counts.profiles;
            rest -= S;
        }
    }
    return counts;
}

int64_t ProfileOffsetWithoutBursts(int64_t index, int64_t headerLength, int64_t profileSize) {
    return headerLength + index * profileSize;
}

int64_t ProfileOffset(int64_t index, int64_t headerLength, int64_t profileSize, const WaveSetup& waves) {
    int64_t offset = ProfileOffsetWithoutBursts(index, headerLength, profileSize);
    if (waves.HasBursts()) {
        const int64_t N = waves.interval;
        int64_t burstsBefore = FloorDiv(N - waves.firstBurstIndex + index - 1, N);
        if (burstsBefore < 0) burstsBefore = 0;  // profiles before the first burst
        offset += burstsBefore * waves.burstSize;
    }
    return offset;
}

int64_t BurstOffset(int64_t burst, int64_t headerLength, int64_t profileSize, const WaveSetup& waves) {
    const int64_t profilesBefore = waves.firstBurstIndex + 1 + burst * waves.interval;
    return headerLength + profilesBefore * profileSize + burst * waves.burstSize;
}

}  // namespace rm
