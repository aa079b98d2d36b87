#include "hardware/measurement/AnalyserInput.h"

#include "hardware/HardwareTexts.h"
#include "hardware/link/QuietLock.h"
#include "hardware/measurement/RateCoefficients.h"
#include "host/HostApplication.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace kalvio {

namespace {

constexpr int kWindowRectangular = 0;
// Window functions that correct the frequency, which takes samples of both rates.
constexpr int kFirstCorrectingWindow = 12;
constexpr int kLastCorrectingWindow = 13;
constexpr std::uint32_t kMostSamples = 0x40000;

constexpr std::int32_t kJitterAveragingRestart = 4;

bool CorrectsFrequency(const CAnalyserSettings& analyser) {
    const int window = analyser.windowFunction;
    return window >= kFirstCorrectingWindow && window <= kLastCorrectingWindow;
}

bool AreSet(double first, double second) {
    return first > 0.0 && second > 0.0;
}

// The smallest power of two not below the ratio of the higher rate to the lower.
double SamplesPerPoint(double first, double second) {
    double factor = 1.0;
    while (AreSet(first, second) && factor < kMostSamples &&
           factor * std::min(first, second) < std::max(first, second)) {
        factor *= 2.0;
    }
    return factor;
}

// Points of the host's FFT; 0 without an FFT document.
std::uint32_t FftLength() {
    CFFTParametersSettings* fft = GetHostApplication().fftParameters;
    if (fft == nullptr) {
        return 0;
    }
    const std::scoped_lock hold(fft->lock);
    return static_cast<std::uint32_t>(std::max(fft->fftLength.Get(), 0));
}

} // namespace

double AnalyserInput::InputRate() const {
    const CAnalyserSettings* analyser = GetHostApplication().analyser;
    const bool digital =
        analyser != nullptr && analyser->inputType == static_cast<std::int32_t>(InputType::Digital);
    return digital ? analyser->inputSampleRate.Get() : m_analogue.Hertz();
}

double AnalyserInput::RateInForce() const {
    const CAnalyserSettings* analyser = GetHostApplication().analyser;
    const double input = InputRate();
    if (analyser == nullptr || !CorrectsFrequency(*analyser)) {
        return input;
    }
    const double output = analyser->outputSampleRate;
    return AreSet(input, output) ? std::min(input, output) : kRateNotSet;
}

AnalyserInput::BufferLength AnalyserInput::ComputeBufferLength() {
    CAnalyserSettings* analyser = GetHostApplication().analyser;
    const std::uint32_t points = FftLength();
    if (analyser == nullptr || !CorrectsFrequency(*analyser)) {
        return {points, false};
    }
    const double samples = points * SamplesPerPoint(InputRate(), analyser->outputSampleRate);
    if (samples <= kMostSamples) {
        return {static_cast<std::uint32_t>(samples), false};
    }
    analyser->windowFunction = kWindowRectangular;
    analyser->SetModifiedFlag();
    return {points, true};
}

void AnalyserInput::TellWindowReset(bool showMessage) {
    if (showMessage) {
        ShowMessageWhenQuiet(LoadText(kTextTooFewSamples));
    }
    UpdateViews(nullptr, kCtrlWindowFunction, nullptr, 0);
}

void AnalyserInput::ConvertersInUse(int& channelA, int& channelB) {
    int first = kChannelA;
    int second = kChannelB;
    GetSWAnalyserChannels(first, second);
    channelA = first == kChannelA || second == kChannelA ? 1 : 0;
    channelB = first == kChannelB || second == kChannelB ? 1 : 0;
    if (IsJDO()) { // the jitter of the carrier is one signal, on the first converter
        channelA = 1;
        channelB = 0;
    } else if (AreChannelsReversed()) {
        std::swap(channelA, channelB);
    }
}

void ResetJitterAverages(bool restart) {
    CAnalyserSettings* analyser = GetHostApplication().analyser;
    if (analyser == nullptr) {
        return;
    }
    analyser->jitterAverage = 0.0;
    analyser->jitterAverageCount = 0;
    analyser->jitterAveragingState = restart ? kJitterAveragingRestart : 0;
}

} // namespace kalvio
