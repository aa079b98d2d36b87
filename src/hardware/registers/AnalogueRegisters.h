#pragma once

// The registers 'p' to 'w' of the analogue board.

#include "hardware/CommandSet.h"
#include "hardware/registers/RelayGuard.h"

#include <cstdint>

namespace kalvio {

// Any thread. Writes go by the relay guard and may wait up to 120 ms.
class AnalogueRegisters {
public:
    AnalogueRegisters(CommandSet& commands, RelayGuard& relays) : m_commands(commands), m_relays(relays) {}

    std::int16_t Get(std::uint8_t reg, std::uint8_t& value); // asks the unit
    std::int16_t Put(std::uint8_t reg, std::uint8_t value);
    std::int16_t PutBits(std::uint8_t reg, std::uint8_t clearMask, std::uint8_t setBits); // by the shadow

private:
    std::int16_t PutGuarded(std::uint8_t reg, std::uint8_t value) KALVIO_REQUIRES(m_relays.lock);

    CommandSet& m_commands;
    RelayGuard& m_relays;
};

} // namespace kalvio
