#pragma once

// Frames of the I/O switcher as records, byte by byte as on the wire.

#include "platform/Export.h"

#include <cstdint>

// Switches one relay of a bus.
struct STRUCT_COMMAND_RELAY_ADDREMOVE_BUS {
    std::uint8_t start = 0;
    std::uint8_t address = 0;
    std::uint8_t dataLength = 0; // 1
    std::uint8_t command = 0;
    std::uint8_t channel = 0; // relay 0 to 7 of group X, 8 to 15 of group Y
    std::uint8_t checksum = 0;
    std::uint8_t terminator = 0;
};

// Tells the state of a bus.
struct STRUCT_RESPONSE_RELAY_STATUS_BUS {
    std::uint8_t start = 0;
    std::uint8_t address = 0;
    std::uint8_t dataLength = 0; // 3
    std::uint8_t command = 0;
    std::uint8_t groupX = 0; // a bit a relay
    std::uint8_t groupY = 0;
    std::uint8_t flags = 0; // bit 0 balanced measurement mode, bit 1 load
    std::uint8_t checksum = 0;
    std::uint8_t terminator = 0;
};

// 1 when the answer shows the relay of the command closed (open with `remove`). The channels 64, 128 and 192
// stand for all relays of group X, of group Y and of both, which must be closed either way; any other channel
// above 15 never matches. Any thread.
[[nodiscard]] KALVIO_API int AddRemoveResponseMatches(const STRUCT_COMMAND_RELAY_ADDREMOVE_BUS& command,
                                                      const STRUCT_RESPONSE_RELAY_STATUS_BUS& answer,
                                                      int remove);
