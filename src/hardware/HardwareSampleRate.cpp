// The analogue sample rate, and what depends on the rates in force.

#include "hardware/Hardware.h"

#include "hardware/QuietLock.h"
#include "hardware/RateCoefficients.h"
#include "host/HostApplication.h"
#include "platform/Registry.h"

#include <algorithm>
#include <mutex>
#include <utility>

using namespace kalvio;

namespace {

// What one analogue sample rate asks of the registers.
struct RateSettings {
    double hertz;
    std::uint8_t clearW;
    std::uint8_t setW;
    int microBit;
    std::uint8_t clearS;
    std::uint8_t setS;
    std::uint32_t settleMs;
};

constexpr RateSettings kRates[] = {
    {48000.0, 0x03, 0x00, 0, 0x30, 0x00, 400},
    {96000.0, 0x01, 0x02, 1, 0x20, 0x10, 200},
    {192000.0, 0x02, 0x01, 0, 0x10, 0x20, 100},
};

// A rate outside the enumeration counts as 96 kHz.
const RateSettings& SettingsOf(SampleRate rate) {
    const auto index = static_cast<std::size_t>(rate);
    return index < std::size(kRates) ? kRates[index] : kRates[static_cast<std::size_t>(SampleRate::k96kHz)];
}

constexpr std::uint32_t kRateBitAddress = 0xA00008;
constexpr std::uint8_t kConverterRun = 0x80; // in 'v' and in 's'
constexpr std::uint8_t kAcCoupled = 0x40;    // in 's'
constexpr std::uint32_t kConverterResetMs = 100;
constexpr int kDefaultConverterWaitMs = 1000;
constexpr int kHintSampleRate = 4300;

constexpr std::uint32_t kCoefficientAddress = 400;
constexpr std::uint8_t kDspCount = 2;

constexpr double kDspClockCycle = 19.929846; // nanoseconds, before the clock is raised

constexpr int kWindowRectangular = 0;
constexpr int kHintWindowFunction = 3305;
constexpr unsigned kTextTooFewSamples = 12533;
constexpr std::uint32_t kMostSamples = 0x40000;

// Window functions that correct the frequency, which takes samples of both rates.
bool CorrectsFrequency(const CAnalyserSettings& analyser) {
    const int window = analyser.windowFunction;
    return window == 12 || window == 13;
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
    const std::scoped_lock lock(fft->lock);
    return static_cast<std::uint32_t>(std::max(fft->fftLength, 0));
}

// Runs the steps in order up to the first that fails; its status, or 0.
template<typename... Steps>
std::int16_t FirstFailure(Steps... steps) {
    std::int16_t status = 0;
    static_cast<void>((((status = steps()) == 0) && ...));
    return status;
}

} // namespace

std::int16_t CHardware::SetAnalogueSampleRate(SampleRate rate, int resetConverters, int force) {
    if (m_sampleRate.exchange(rate) == rate && force == 0) {
        return 0;
    }
    const std::int16_t status =
        FirstFailure([&] { return WriteRateSelection(rate); },
                     [&] { return resetConverters != 0 ? ResetConverters() : std::int16_t{0}; },
                     [&] { return WriteConverterRate(rate, resetConverters != 0); });
    if (status != 0) {
        return status;
    }
    WriteCoefficientsOnSampleRateChange();
    UpdateViews(nullptr, kHintSampleRate, nullptr, 0);
    return 0;
}

std::int16_t CHardware::WriteRateSelection(SampleRate rate) {
    const RateSettings& settings = SettingsOf(rate);
    const std::int16_t status = AnaloguePutBits('w', settings.clearW, settings.setW);
    if (status == 0) {
        m_commands.MicroPutBit(kSpaceS, kRateBitAddress, settings.microBit);
    }
    return status;
}

std::int16_t CHardware::ResetConverters() {
    return FirstFailure([&] { return AnaloguePutBits('v', kConverterRun, 0); },
                        [&] {
                            BusyWaitSince(GetTickCount(), kConverterResetMs);
                            return AnaloguePutBits('v', 0, kConverterRun);
                        });
}

std::int16_t CHardware::WriteConverterRate(SampleRate rate, bool resetConverters) {
    const RateSettings& settings = SettingsOf(rate);
    const auto set = static_cast<std::uint8_t>(settings.setS | (IsAnalogueDCCoupled() != 0 ? 0 : kAcCoupled));
    if (!resetConverters) {
        return AnaloguePutBits('s', settings.clearS, set);
    }
    const int wait = CRegistry::GetRegistryValue(RegistryKeyType::Machine, "Hardware",
                                                 "ConverterResetWaitTime", kDefaultConverterWaitMs);
    BusyWaitSince(m_converterStamp.load(), static_cast<std::uint32_t>(std::max(wait, 0)));
    const auto clear = static_cast<std::uint8_t>(settings.clearS | kConverterRun);
    const std::int16_t status = FirstFailure([&] { return AnaloguePutBits('s', clear, set); },
                                             [&] { return AnaloguePutBits('s', 0, kConverterRun); });
    if (status == 0) {
        m_converterStamp.store(GetTickCount());
        BusyWaitSince(m_converterStamp.load(), settings.settleMs);
    }
    return status;
}

double CHardware::GetAnalogueSamplingFreq() const {
    return SettingsOf(m_sampleRate.load()).hertz;
}

double CHardware::GetDSPClockCycleTime() const {
    return kDspClockCycle / m_clockFactor.load();
}

std::int16_t CHardware::WriteCoefficientsOnSampleRateChange() {
    const CGeneratorSettings* generator = GetHostApplication().generator;
    const double digitalRate = generator == nullptr ? kRateNotSet : generator->digitalSampleRate.Get();
    const auto block =
        ComputeRateCoefficients(GetAnalogueSamplingFreq(), IsAnalogueHardware192k() != 0, digitalRate);
    std::int16_t status = 0;
    for (std::uint8_t dsp = 0; block.has_value() && status == 0 && dsp < kDspCount; ++dsp) {
        status = m_commands.DSPPutMemBlock24(dsp, kSpaceY, kCoefficientAddress, block->length,
                                             block->bytes.data());
    }
    return status;
}

double CHardware::GetInputSampleRate() const {
    const CAnalyserSettings* analyser = GetHostApplication().analyser;
    const bool digital =
        analyser != nullptr && analyser->inputType == static_cast<std::int32_t>(InputType::Digital);
    return digital ? analyser->inputSampleRate.Get() : GetAnalogueSamplingFreq();
}

double CHardware::GetSampleRate() const {
    const CAnalyserSettings* analyser = GetHostApplication().analyser;
    const double input = GetInputSampleRate();
    if (analyser == nullptr || !CorrectsFrequency(*analyser)) {
        return input;
    }
    const double output = analyser->outputSampleRate;
    return AreSet(input, output) ? std::min(input, output) : kRateNotSet;
}

std::uint32_t CHardware::GetSampleBufferLength(int showMessage) {
    CHostApplication& host = GetHostApplication();
    const std::uint32_t points = FftLength();
    if (host.analyser == nullptr || !CorrectsFrequency(*host.analyser)) {
        return points;
    }
    const double samples = points * SamplesPerPoint(GetInputSampleRate(), host.analyser->outputSampleRate);
    if (samples <= kMostSamples) {
        return static_cast<std::uint32_t>(samples);
    }
    host.analyser->windowFunction = kWindowRectangular;
    host.analyser->SetModifiedFlag();
    if (showMessage != 0) {
        ShowMessageWhenQuiet(LoadText(kTextTooFewSamples));
    }
    UpdateViews(nullptr, kHintWindowFunction, nullptr, 0);
    return points;
}

void CHardware::GetHWAnalyserChannels(int& channelA, int& channelB) const {
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
