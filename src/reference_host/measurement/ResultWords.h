#pragma once

// What the unit's result blocks say, in storage units.

#include "hardware/DSPMap.h"

#include <array>

namespace kalvio::reference_host {

inline constexpr std::size_t kHarmonics = 3; // fundamental, second, third

// One channel's block.
struct ChannelReading {
    bool valid = false;
    double rms = 0.0;
    double frequency = 0.0;
    double phase = 0.0; // of B against A; in A's block only
    double ctDetector = 0.0;
    std::array<double, kHarmonics> harmonics{};
};

// The block of the digital input and the reference.
struct DigitalReading {
    bool valid = false;
    double carrierAmplitude = 0.0;
    double carrierJitter = 0.0;
    double carrierPhase = 0.0;
    double frameRate = 0.0;
    double frameDeviation = 0.0;
    double syncRate = 0.0;
    double syncDeviation = 0.0;
};

ChannelReading ReadChannel(const CDSPMap& words);
DigitalReading ReadDigital(const CDSPMap& words);

} // namespace kalvio::reference_host
