#include "reference_host/measurement/GeneratorRecords.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kalvio::reference_host {

namespace {

constexpr std::size_t kOnByte = 0; // record offset 16
constexpr std::size_t kWaveformByte = 1;
constexpr std::uint8_t kSine = 0;
constexpr double kMilli = 1e3;
constexpr double kMicro = 1e6;

// Where the masks that set register bits stand; the values are those that bring-up leaves.
constexpr std::size_t kSetBitsT = 5;
constexpr std::size_t kSetBitsU = 7;
constexpr std::size_t kSetBitsV = 9;
constexpr std::uint8_t kFullRange = 0xC0;
constexpr std::uint8_t kBothBalanced = 0x77;

// A storage value as a whole number of the record's unit, held inside 32 bits.
std::uint32_t Whole(double storageValue, Unit unit, double perUnit) {
    const double value = std::round(CPhysicalValue::StorageToUnit(storageValue, unit, {}) * perUnit);
    return static_cast<std::uint32_t>(
        std::clamp(value, 0.0, static_cast<double>(std::numeric_limits<std::uint32_t>::max())));
}

std::uint32_t WholeSigned(double storageValue, Unit unit, double perUnit) {
    using Limits = std::numeric_limits<std::int32_t>;
    const double value = std::round(CPhysicalValue::StorageToUnit(storageValue, unit, {}) * perUnit);
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(
        std::clamp(value, static_cast<double>(Limits::min()), static_cast<double>(Limits::max()))));
}

} // namespace

DSPGeneratorDetails PackGenerator(const GeneratorState& state) {
    DSPGeneratorDetails details;
    const std::array<std::uint32_t, 2> fourth{Whole(state.jitterFrequency, kUnitHertz, kMilli),
                                              Whole(state.jitterAmplitude, kUnitUi, kMicro)};
    for (std::size_t i = 0; i < details.channels.size(); ++i) {
        DSPGeneratorChannel& channel = details.channels[i];
        channel.values = {Whole(state.frequency[i], kUnitHertz, kMilli),
                          Whole(state.amplitude[i], kUnitVolt, kMicro),
                          WholeSigned(state.dcOffset, kUnitVolt, kMicro), fourth[i]};
        channel.bytes[kOnByte] = state.on[i] ? 1 : 0;
        channel.bytes[kWaveformByte] = kSine;
    }
    return details;
}

MicroGeneratorDetails OutputRelays() {
    MicroGeneratorDetails details;
    details.m[kSetBitsT] = kFullRange;
    details.m[kSetBitsU] = kFullRange;
    details.m[kSetBitsV] = kBothBalanced;
    return details;
}

std::int16_t GeneratorRecords::Apply(const GeneratorState& state) {
    m_gate.Close();
    const std::int16_t status = Send(state);
    m_gate.Open();
    return status;
}

std::int16_t GeneratorRecords::Send(const GeneratorState& state) {
    const DSPGeneratorDetails dsp = PackGenerator(state);
    const MicroGeneratorDetails relays = OutputRelays();
    std::int16_t status = m_hardware.SendGeneratorDetails(&dsp, &relays);
    for (const std::uint8_t unit : {std::uint8_t{0}, std::uint8_t{1}}) {
        const std::int16_t cleared = m_hardware.ResetHF2Flag(unit);
        status = status == 0 ? cleared : status;
    }
    return status;
}

} // namespace kalvio::reference_host
