#pragma once

// The main board's control registers, status registers and relays.

#include "hardware/CommandSet.h"

#include <cstdint>

namespace kalvio {

// Any thread. Control registers can only be written; reads and bit writes go by the unit's own shadow of
// them: kUnknownRegisterRead and kUnknownRegisterWrite for a register that has none.
class MainBoard {
public:
    explicit MainBoard(CommandSet& commands) : m_commands(commands) {}

    std::int16_t WriteControl(std::uint16_t reg, std::uint8_t value);
    std::int16_t ReadControl(std::uint16_t reg, std::uint8_t& value);
    std::int16_t WriteControlBits(std::uint16_t reg, std::uint8_t clearMask, std::uint8_t setBits);
    std::int16_t ReadStatus(std::uint16_t address, std::uint8_t& value);
    std::int16_t SetRelay(std::uint8_t relay, std::uint8_t on);

private:
    CommandSet& m_commands;
};

} // namespace kalvio
