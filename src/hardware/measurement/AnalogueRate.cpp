#include "hardware/measurement/AnalogueRate.h"

#include "hardware/measurement/RateCoefficients.h"
#include "hardware/registers/UnitAddresses.h"
#include "host/HostApplication.h"
#include "platform/Registry.h"

#include <algorithm>
#include <iterator>

namespace kalvio {

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

constexpr std::uint8_t kConverterRun = 0x80; // in 'v' and in 's'
constexpr std::uint8_t kAcCoupled = 0x40;    // in 's'
constexpr std::uint32_t kConverterResetMs = 100;
constexpr int kDefaultConverterWaitMs = 1000;
constexpr int kHintSampleRate = 4300;
constexpr std::uint8_t kDspCount = 2;

// Runs the steps in order up to the first that fails; its status, or 0.
template<typename... Steps>
std::int16_t FirstFailure(Steps... steps) {
    std::int16_t status = 0;
    static_cast<void>((((status = steps()) == 0) && ...));
    return status;
}

} // namespace

std::int16_t AnalogueRate::Set(SampleRate rate, bool resetConverters, bool force) {
    if (m_rate.exchange(rate) == rate && !force) {
        return 0;
    }
    const std::int16_t status = FirstFailure(
        [&] { return Select(rate); }, [&] { return resetConverters ? ResetConverters() : std::int16_t{0}; },
        [&] { return SetConverters(rate, resetConverters); });
    if (status != 0) {
        return status;
    }
    WriteCoefficients();
    UpdateViews(nullptr, kHintSampleRate, nullptr, 0);
    return 0;
}

std::int16_t AnalogueRate::Select(SampleRate rate) {
    const RateSettings& settings = SettingsOf(rate);
    const std::int16_t status = m_analogue.PutBits('w', settings.clearW, settings.setW);
    if (status == 0) {
        m_commands.MicroPutBit(kSpaceS, address::kRateBit, settings.microBit);
    }
    return status;
}

std::int16_t AnalogueRate::ResetConverters() {
    return FirstFailure([&] { return m_analogue.PutBits('v', kConverterRun, 0); },
                        [&] {
                            BusyWaitSince(GetTickCount(), kConverterResetMs);
                            return m_analogue.PutBits('v', 0, kConverterRun);
                        });
}

std::int16_t AnalogueRate::SetConverters(SampleRate rate, bool resetConverters) {
    const RateSettings& settings = SettingsOf(rate);
    const auto set = static_cast<std::uint8_t>(settings.setS | (m_links.IsDcCoupled() ? 0 : kAcCoupled));
    if (!resetConverters) {
        return m_analogue.PutBits('s', settings.clearS, set);
    }
    const int wait = CRegistry::GetRegistryValue(RegistryKeyType::Machine, "Hardware",
                                                 "ConverterResetWaitTime", kDefaultConverterWaitMs);
    BusyWaitSince(m_converterStamp.load(), static_cast<std::uint32_t>(std::max(wait, 0)));
    const auto clear = static_cast<std::uint8_t>(settings.clearS | kConverterRun);
    const std::int16_t status = FirstFailure([&] { return m_analogue.PutBits('s', clear, set); },
                                             [&] { return m_analogue.PutBits('s', 0, kConverterRun); });
    if (status == 0) {
        StampConverters();
        BusyWaitSince(m_converterStamp.load(), settings.settleMs);
    }
    return status;
}

double AnalogueRate::Hertz() const {
    return SettingsOf(Get()).hertz;
}

void AnalogueRate::StampConverters() {
    m_converterStamp.store(GetTickCount());
}

std::int16_t AnalogueRate::WriteCoefficients() {
    const CGeneratorSettings* generator = GetHostApplication().generator;
    const double digitalRate = generator == nullptr ? kRateNotSet : generator->digitalSampleRate.Get();
    const auto block = ComputeRateCoefficients(Hertz(), m_links.Is192k(), digitalRate);
    std::int16_t status = 0;
    for (std::uint8_t dsp = 0; block.has_value() && status == 0 && dsp < kDspCount; ++dsp) {
        status = m_commands.DSPPutMemBlock24(dsp, kSpaceY, address::kRateCoefficients, block->length,
                                             block->bytes.data());
    }
    return status;
}

} // namespace kalvio
