#include "sim/gaussian_noise.h"

#include <cmath>

namespace rm::sim {

double GaussianNoise::Uniform() {
    // 53 random bits, shifted off zero.
    return (static_cast<double>(engine_() >> 11) + 0.5) * (1.0 / 9007199254740992.0);
}

double GaussianNoise::Next(double sigma) {
    if (sigma == 0.0) return 0.0;
    if (haveSpare_) {
        haveSpare_ = false;
        return sigma * spare_;
    }
    const double r = std::sqrt(-2.0 * std::log(Uniform()));
    const double phi = 2.0 * 3.14159265358979323846 * Uniform();
    spare_ = r * std::sin(phi);
    haveSpare_ = true;
    return sigma * r * std::cos(phi);
}

}  // namespace rm::sim
