#include "hardware/generator/AutoRange.h"

#include "hardware/link/Holding.h"
#include "platform/formats/Endian.h"

#include <algorithm>
#include <array>
#include <bit>

namespace kalvio {

namespace {

constexpr std::array<char, 4> kRegisters{'p', 'q', 'r', 's'};
constexpr std::size_t kRelayRegisters = 3; // 's' moves no relay that must rest

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

} // namespace

std::int16_t AutoRange::Write(WriteAutoRangeDetailsOut& record) {
    record.value0 = InBigEndian(record.value0);
    record.value1 = InBigEndian(record.value1);
    const Holding hold(m_relays.lock);
    std::array<std::uint8_t, kRegisters.size()> changed{};
    bool togglesBack = false;
    for (std::size_t i = 0; i < kRegisters.size(); ++i) {
        RegisterShadow& shadow = m_relays.At(kRegisters[i]);
        changed[i] = static_cast<std::uint8_t>(shadow.value ^ record.registers[i]);
        shadow.value = record.registers[i];
        togglesBack |= i < kRelayRegisters && (shadow.lastChanged & changed[i]) != 0;
    }
    if (togglesBack) {
        m_relays.WaitFor({'p', 'q', 'r'});
    }
    const auto bytes = BytesOf(record);
    const std::int16_t status =
        m_commands.DoCommand(kCommandAutoRange, bytes.size(), bytes.data(), 0, nullptr);
    if (status != 0) {
        return status;
    }
    for (std::size_t i = 0; i < kRegisters.size(); ++i) {
        m_relays.At(kRegisters[i]) = {record.registers[i], changed[i], GetTickCount()};
    }
    return 0;
}

} // namespace kalvio
