#pragma once

// The frame clocks that a KEDA adapter sees, as the directions of its clocks are set.

#include "simulator/peripherals/KedaRegisters.h"

namespace kalvio::simulator {

// What gives clocks: the unit's own digital output, and the device under test. A device that gives none
// (rate 0) passes on the frame clock that it gets.
struct KedaClockSource {
    double digitalRateHz = 48000.0;
    double deviceRateHz = 0.0; // its master clock is 256 times that
};

struct KedaFrameRates {
    double generatorHz = 0.0; // 0: no clock
    double analyserHz = 0.0;
};

// Serial clocks that are inputs run at the device's rate, or at that of the other direction when the device
// passes it on; else a master clock that is an input gives the rate by the multiplier; else the digital
// output does.
KedaFrameRates FollowClocks(const KedaRegisters& registers, const KedaClockSource& source);

// The code of a frame rate, within a per cent of it; 0 for none and for one without a code.
std::uint8_t FrameRateCode(double rateHz);

} // namespace kalvio::simulator
