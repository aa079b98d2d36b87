#pragma once

// A command of the peripheral bus as a trace shows it.

#include <cstdint>
#include <span>
#include <string>

namespace kalvio::bench {

// What a frame carries: its command byte and its data.
struct BusBytes {
    std::uint8_t command = 0;
    std::span<const std::uint8_t> data;
};

// A row of a device's table. `data` and `answer` say what the bytes mean, with as many of them as the frame
// brought; null: the bytes are shown in hex.
struct BusCommand {
    std::uint8_t code;
    const char* name;
    std::string (*data)(const BusBytes& frame) = nullptr;
    std::string (*answer)(const BusBytes& frame) = nullptr;
};

} // namespace kalvio::bench
