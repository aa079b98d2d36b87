#include "simulator/DeviceUnderTest.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kalvio::simulator {

namespace {

// How far off resonance a frequency lies, in half bandwidths: 0 at the resonance, 1 at -3 dB above it.
double Detuning(const DeviceUnderTest& device, double frequencyHz) {
    if (device.resonanceHz <= 0.0 || frequencyHz <= 0.0) {
        return 0.0;
    }
    const double ratio = frequencyHz / device.resonanceHz;
    return device.resonanceQ * (ratio - 1.0 / ratio);
}

double ChannelGain(const DeviceUnderTest& device, int channel) {
    return device.gain * (channel == 1 ? device.channelBGain : 1.0);
}

// Sets amplitude and harmonics from what goes into the saturating stage.
void Saturate(const DeviceUnderTest& device, double linearVolts, Response& response) {
    response.amplitudeVolts = linearVolts;
    if (device.saturationVolts > 0.0) {
        response.amplitudeVolts = device.saturationVolts * std::tanh(linearVolts / device.saturationVolts);
    }
    // For small excess tanh puts a quarter of what it takes away into the third harmonic; a square wave
    // has a third.
    const double total = std::fabs(response.amplitudeVolts);
    const double third = std::min((std::fabs(linearVolts) - total) / 4.0, total / 3.0);
    response.harmonicVolts[0] = std::sqrt(total * total - third * third);
    response.harmonicVolts[2] = third;
}

double LimitDc(const DeviceUnderTest& device, double volts) {
    return device.saturationVolts > 0.0 ? std::clamp(volts, -device.saturationVolts, device.saturationVolts)
                                        : volts;
}

} // namespace

Response Respond(const DeviceUnderTest& device, const Stimulus& stimulus, int channel) {
    Response response;
    if (!stimulus.on) {
        return response;
    }
    const double detuning = Detuning(device, stimulus.frequencyHz);
    response.frequencyHz = stimulus.frequencyHz;
    response.phaseDegrees = -std::atan(detuning) * 180.0 / std::numbers::pi;
    response.dcVolts = LimitDc(device, stimulus.dcOffsetVolts * ChannelGain(device, channel));
    response.jitterUi = stimulus.jitterAmplitudeUi;
    if (device.custom) {
        response.amplitudeVolts = device.custom(stimulus, channel);
        response.harmonicVolts[0] = response.amplitudeVolts;
        return response;
    }
    const double amplified = stimulus.amplitudeVolts * ChannelGain(device, channel) + device.offsetVolts;
    Saturate(device, amplified / std::sqrt(1.0 + detuning * detuning), response);
    return response;
}

} // namespace kalvio::simulator
