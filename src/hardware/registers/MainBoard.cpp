#include "hardware/registers/MainBoard.h"

#include "hardware/registers/Bits.h"
#include "hardware/registers/UnitAddresses.h"

#include <algorithm>
#include <array>
#include <optional>

namespace kalvio {

namespace {

constexpr std::array kControlRegisters{address::kControl0, address::kControl1, address::kControl2,
                                       address::kControl3};

std::optional<std::uint16_t> ShadowOf(std::uint16_t reg) {
    const auto found = std::ranges::find(kControlRegisters, reg);
    if (found == kControlRegisters.end()) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(address::kControlShadow0 + (found - kControlRegisters.begin()));
}

} // namespace

std::int16_t MainBoard::WriteControl(std::uint16_t reg, std::uint8_t value) {
    return m_commands.MicroPutMem(kSpaceS, reg, value, 0);
}

std::int16_t MainBoard::ReadControl(std::uint16_t reg, std::uint8_t& value) {
    const auto shadow = ShadowOf(reg);
    return shadow ? m_commands.MicroGetMem(kSpaceX, *shadow, value) : kUnknownRegisterRead;
}

std::int16_t MainBoard::WriteControlBits(std::uint16_t reg, std::uint8_t clearMask, std::uint8_t setBits) {
    if (!ShadowOf(reg)) {
        return kUnknownRegisterWrite;
    }
    std::uint8_t value = 0;
    const std::int16_t status = ReadControl(reg, value);
    return status != 0 ? status : WriteControl(reg, WithBits(value, clearMask, setBits));
}

std::int16_t MainBoard::ReadStatus(std::uint16_t address, std::uint8_t& value) {
    return m_commands.MicroGetMem(kSpaceX, address, value);
}

std::int16_t MainBoard::SetRelay(std::uint8_t relay, std::uint8_t on) {
    const std::array<std::uint8_t, 2> bytes{relay, on};
    return m_commands.DoCommand(kCommandMainBoardRelay, bytes.size(), bytes.data(), 0, nullptr);
}

} // namespace kalvio
