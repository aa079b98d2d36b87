#pragma once

// What stands between the virtual unit's generator outputs and its analyser inputs.

#include <cstdint>
#include <functional>

namespace kalvio::simulator {

// What the generator of one channel puts out, as the last generator record told it.
struct Stimulus {
    bool on = false;
    double frequencyHz = 0.0;
    double amplitudeVolts = 0.0; // RMS
    double dcOffsetVolts = 0.0;
    double jitterFrequencyHz = 0.0;
    double jitterAmplitudeUi = 0.0;
};

// The settled answer of the device to a stimulus; all zero while the output is off.
struct Response {
    double amplitudeVolts = 0.0; // RMS, fundamental and all
    double frequencyHz = 0.0;
    double phaseDegrees = 0.0; // output against input
    double dcVolts = 0.0;
    double harmonicVolts[3] = {0.0, 0.0, 0.0}; // fundamental, second, third
    double jitterUi = 0.0;
};

// A transfer function in plain figures: gain, then a resonance, then soft saturation, then noise. The
// resonance passes its own frequency in full, falls off on both sides by 1/sqrt(1 + Q^2 (f/f0 - f0/f)^2)
// and turns the phase from +90 to -90 degrees. DC takes the gain and the limit of the saturation only.
// `custom`, when set, replaces gain, resonance and saturation for the amplitude of an output that is on;
// it is called with the unit's lock held and must not call the unit.
struct DeviceUnderTest {
    double gain = 1.0;        // ratio
    double offsetVolts = 0.0; // added to the amplitude after the gain
    double resonanceHz = 0.0; // 0: none
    double resonanceQ = 1.0;
    double saturationVolts = 0.0; // output never exceeds it; 0: none
    double noiseVolts = 0.0;      // RMS of a seeded Gaussian on each reading
    double timeConstantMs = 0.0;  // a change of stimulus is followed exponentially; 0: at once
    double channelBGain = 1.0;    // further ratio of channel B
    double overloadVolts = 0.0;   // a channel above it reads nothing valid; 0: never
    bool silent = false;          // no results at all
    std::uint32_t seed = 1;
    std::function<double(const Stimulus& stimulus, int channel)> custom{}; // volts RMS
};

// The settled, noise-free answer of the device on a channel (0 = A, 1 = B).
Response Respond(const DeviceUnderTest& device, const Stimulus& stimulus, int channel);

} // namespace kalvio::simulator
