#pragma once
// Seeded Gaussian noise that gives the same numbers for the same seed on every platform and
// standard library: a 64-bit Mersenne twister (fixed by the standard) and the Box-Muller
// transform written out here, since std::normal_distribution may differ between libraries.

#include <cstdint>
#include <random>

namespace rm::sim {

class GaussianNoise {
public:
    explicit GaussianNoise(uint64_t seed) : engine_(seed) {}

    // A normal value with mean 0 and the given standard deviation; 0 for a deviation of 0,
    // without using the stream.
    double Next(double sigma);

private:
    double Uniform();  // in (0, 1)

    std::mt19937_64 engine_;
    bool haveSpare_ = false;
    double spare_ = 0.0;
};

}  // namespace rm::sim
