#pragma once

// Frames of the peripheral bus on their way through the unit.

#include "hardware/CommandSet.h"

#include <cstdint>
#include <span>

namespace kalvio {

// Any thread.
class PeripheralExchange {
public:
    explicit PeripheralExchange(CommandSet& commands) : m_commands(commands) {}

    // One frame out, one back, inside the hardware-access lock; sent once more when the unit gives a status.
    // 0: answered; the unit's status word (the response is filled all the same); kPeripheralFailed: no unit
    // (the response is zeroed) or the exchange with it failed; kPeripheralTooLong: more than 40 bytes.
    std::uint16_t Send(std::span<const std::uint8_t> frame, std::span<std::uint8_t> response,
                       std::uint16_t timeout);

private:
    CommandSet& m_commands;
};

} // namespace kalvio
