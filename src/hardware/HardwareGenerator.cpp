// What the host's generator and analyser documents push into the unit.

#include "hardware/Hardware.h"

#include "hardware/GeneratorRecord.h"
#include "hardware/Truncate.h"
#include "hardware/VideoSync.h"
#include "host/HostApplication.h"
#include "platform/Endian.h"

#include <algorithm>
#include <bit>
#include <mutex>

using namespace kalvio;

namespace {

constexpr std::array<char, 4> kAutoRangeRegisters{'p', 'q', 'r', 's'};
constexpr std::size_t kAutoRangeRelayRegisters = 3; // 's' moves no relay that must rest

constexpr int kCalibrationPhaseA = 25; // entries of the main board's table
constexpr int kCalibrationPhaseB = 24;

constexpr std::int32_t kJitterAveragingRestart = 4;

bool TogglesBack(const RegisterShadow& shadow, std::uint8_t changed) {
    return (shadow.lastChanged & changed) != 0;
}

std::uint32_t InBigEndian(std::uint32_t value) {
    std::array<std::uint8_t, 4> bytes{};
    PutBig32(bytes.data(), value);
    return std::bit_cast<std::uint32_t>(bytes);
}

// The record as it goes out; its two values are big-endian already.
std::array<std::uint8_t, 20> BytesOf(const WriteAutoRangeDetailsOut& record) {
    std::array<std::uint8_t, 20> bytes{};
    auto* at = bytes.data();
    for (const std::uint32_t value : {record.value0, record.value1}) {
        at = std::ranges::copy(std::bit_cast<std::array<std::uint8_t, 4>>(value), at).out;
    }
    at = std::ranges::copy(record.passThrough, at).out;
    std::ranges::copy(record.registers, at);
    return bytes;
}

template<std::size_t Count>
void PutBig16s(std::uint8_t* at, const std::array<std::uint16_t, Count>& values) {
    for (const std::uint16_t value : values) {
        PutBig16(at, value);
        at += 2;
    }
}

} // namespace

std::int16_t CHardware::SendGeneratorDetails(const DSPGeneratorDetails* dsp,
                                             const MicroGeneratorDetails* micro) {
    const std::scoped_lock lock(m_relays.Lock());
    RegisterShadow& t = m_relays['t'];
    RegisterShadow& u = m_relays['u'];
    RegisterShadow& v = m_relays['v'];
    const GeneratorRecord record = BuildGeneratorRecord({t.value, u.value, v.value}, *dsp, *micro);
    if (TogglesBack(t, record.changed.t) || TogglesBack(u, record.changed.u) ||
        TogglesBack(v, record.changed.v)) {
        m_relays.WaitFor({'t', 'u', 'v'});
    }
    const std::int16_t status =
        m_commands.DoCommand(kCommandGenerator, record.bytes.size(), record.bytes.data(), 0, nullptr);
    const std::uint32_t now = GetTickCount();
    t = {record.values.t, record.changed.t, now};
    u = {record.values.u, record.changed.u, now};
    v = {record.values.v, record.changed.v, now};
    return status;
}

std::int16_t CHardware::WriteAutoRangeDetails(WriteAutoRangeDetailsOut* record) {
    record->value0 = InBigEndian(record->value0);
    record->value1 = InBigEndian(record->value1);
    const std::scoped_lock lock(m_relays.Lock());
    std::array<std::uint8_t, kAutoRangeRegisters.size()> changed{};
    bool togglesBack = false;
    for (std::size_t i = 0; i < kAutoRangeRegisters.size(); ++i) {
        RegisterShadow& shadow = m_relays[kAutoRangeRegisters[i]];
        changed[i] = static_cast<std::uint8_t>(shadow.value ^ record->registers[i]);
        shadow.value = record->registers[i];
        togglesBack |= i < kAutoRangeRelayRegisters && TogglesBack(shadow, changed[i]);
    }
    if (togglesBack) {
        m_relays.WaitFor({'p', 'q', 'r'});
    }
    const auto bytes = BytesOf(*record);
    const std::int16_t status =
        m_commands.DoCommand(kCommandAutoRange, bytes.size(), bytes.data(), 0, nullptr);
    if (status != 0) {
        return status;
    }
    for (std::size_t i = 0; i < kAutoRangeRegisters.size(); ++i) {
        m_relays[kAutoRangeRegisters[i]] = {record->registers[i], changed[i], GetTickCount()};
    }
    return 0;
}

std::int16_t CHardware::WriteDivisorsToHardware(std::uint16_t d1, std::uint16_t d2, std::uint16_t d3,
                                                std::uint16_t d4, std::uint16_t d5) {
    std::array<std::uint8_t, 10> bytes{};
    PutBig16s(bytes.data(), std::array{d1, d2, d3, d4, d5});
    return m_commands.DoCommand(kCommandDivisors, bytes.size(), bytes.data(), 0, nullptr);
}

std::int16_t CHardware::SetVideoSyncDetails(int mode, std::uint8_t standardA, std::uint8_t standardB,
                                            std::uint16_t s1, std::uint16_t s2, std::uint16_t s3,
                                            std::uint16_t s4, std::uint16_t s5, std::uint16_t s6,
                                            std::uint16_t s7, std::uint16_t s8) {
    std::array<std::uint8_t, 20> bytes{};
    PutBig16s(bytes.data(), std::array{s5, s6, s7, s8, s1, s2, s3, s4});
    bytes[16] = static_cast<std::uint8_t>(mode);
    bytes[17] = standardA;
    bytes[18] = standardB;
    bytes[19] = RememberVideoStandards(standardA, standardB) ? 1 : 0;
    return m_commands.DoCommand(kCommandVideoSync, bytes.size(), bytes.data(), 0, nullptr);
}

namespace {

std::int32_t PhaseCalibration(const CHardware& hardware, int channel) {
    return static_cast<std::int32_t>(TruncatedBits(hardware.GetMainBoardCalibrationValueForID(
        channel == kChannelA ? kCalibrationPhaseA : kCalibrationPhaseB)));
}

} // namespace

int CHardware::GetJTAPhaseBaseCalibOffset(int channel) const {
    return PhaseCalibration(*this, channel) >> 1;
}

int CHardware::GetJTAXPHCalibValue(int channel) const {
    return (PhaseCalibration(*this, channel) & 1) ^ 1;
}

void CHardware::ResetJitterAveraging(int restart) {
    CAnalyserSettings* analyser = GetHostApplication().analyser;
    if (analyser == nullptr) {
        return;
    }
    analyser->jitterAverage = 0.0;
    analyser->jitterAverageCount = 0;
    analyser->jitterAveragingState = restart != 0 ? kJitterAveragingRestart : 0;
}
