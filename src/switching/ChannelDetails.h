#pragma once

// One channel of a channel array.

#include <cstdint>

namespace kalvio {

inline constexpr std::uint8_t kChannelBalanced = 1; // flags: balanced measurement mode
inline constexpr std::uint8_t kChannelLoaded = 2;   // flags: load switched in

} // namespace kalvio

// Seven bytes in this order, also in archives.
struct ChannelDetails {
    std::uint8_t address = 0;   // device address, 0 to 63
    std::uint8_t classType = 0; // 0x11 I/O switcher, 0x21 adapter
    std::uint8_t bus = 0;       // I/O switcher: 0 A, 1 B; adapter: its channel selector
    std::uint8_t group = 0;     // I/O switcher: 0 X, 1 Y; adapter: 0 generator, 1 analyser
    std::uint8_t channel = 0;   // within the group; I/O switcher: relay 0 to 7
    std::uint8_t state = 0;     // 1: the channel should be on
    std::uint8_t flags = 0;

    bool operator==(const ChannelDetails&) const = default;
};
