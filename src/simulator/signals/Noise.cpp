#include "simulator/signals/Noise.h"

#include <cmath>
#include <numbers>

namespace kalvio::simulator {

namespace {

// One step of a mixing generator: a good 64-bit hash of its argument.
std::uint64_t Mix(std::uint64_t value) {
    value += 0x9E3779B97F4A7C15ULL;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9ULL;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBULL;
    return value ^ (value >> 31);
}

// In (0, 1].
double Uniform(std::uint64_t bits) {
    return (static_cast<double>(bits >> 11) + 1.0) / 9007199254740992.0;
}

} // namespace

double GaussianNoise(std::uint32_t seed, std::uint32_t reading, std::uint32_t channel) {
    const std::uint64_t place = Mix((std::uint64_t{seed} << 32 | reading) ^ Mix(channel));
    const double radius = std::sqrt(-2.0 * std::log(Uniform(place)));
    return radius * std::cos(2.0 * std::numbers::pi * Uniform(Mix(place)));
}

} // namespace kalvio::simulator
