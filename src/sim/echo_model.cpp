#include "sim/echo_model.h"

#include <algorithm>
#include <cmath>

namespace rm::sim {

namespace {
constexpr double kNearAmplitude = 200.0;
constexpr double kNoiseFloor = 30.0;
constexpr double kDecayM = 15.0;
constexpr double kBedEcho = 230.0;

uint8_t Counts(double v) { return static_cast<uint8_t>(std::clamp(std::lround(v), 0L, 255L)); }
}  // namespace

uint8_t EchoAmplitude(double rangeM, double bedRangeM, double cellM, int beam) {
    const double half = 0.5 * cellM;
    if (std::fabs(rangeM - bedRangeM) <= half) return Counts(kBedEcho - beam);
    if (rangeM > bedRangeM) {
        // Past the bed only reverberation, dying away within a few cells.
        const double beyond = (rangeM - bedRangeM - half) / std::max(cellM, 0.01);
        return Counts(kNoiseFloor + 20.0 * std::exp(-beyond) - beam);
    }
    const double water = kNoiseFloor + (kNearAmplitude - kNoiseFloor) * std::exp(-rangeM / kDecayM);
    return Counts(water - 2.0 * beam);
}

uint8_t VelocityStdError(double rangeM, double noiseCms) {
    const double base = std::max(noiseCms * 10.0, 5.0);
    return Counts(std::min(base * (1.0 + std::max(rangeM, 0.0) / 20.0), 254.0));
}

}  // namespace rm::sim
