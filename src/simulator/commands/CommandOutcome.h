#pragma once

// What carrying out a command came to, before it is put into a response.

#include "simulator/Bytes.h"
#include "simulator/UnitError.h"

namespace kalvio::simulator {

struct CommandOutcome {
    UnitError error = UnitError::None;
    std::uint32_t value = 0; // response bytes 12-15
    ByteVector inData;
    std::uint32_t delayMs = 0; // that carrying it out took

    static CommandOutcome Refused(UnitError why) { return {why, 0, {}, 0}; }
    static CommandOutcome Value(std::uint32_t value) { return {UnitError::None, value, {}, 0}; }
    // A one-byte result stands first in the four.
    static CommandOutcome ByteValue(std::uint8_t value) {
        return Value(static_cast<std::uint32_t>(value) << 24);
    }
    static CommandOutcome Data(ByteVector bytes, std::uint32_t delayMs = 0) {
        return {UnitError::None, 0, std::move(bytes), delayMs};
    }
};

} // namespace kalvio::simulator
