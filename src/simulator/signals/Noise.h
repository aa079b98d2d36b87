#pragma once

// Gaussian noise that depends on nothing but its seed and its place in the run.

#include <cstdint>

namespace kalvio::simulator {

// A draw of mean 0 and deviation 1 for one reading.
double GaussianNoise(std::uint32_t seed, std::uint32_t reading, std::uint32_t channel);

} // namespace kalvio::simulator
