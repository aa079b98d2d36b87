#pragma once

// What the I/O switcher understands. A bus state is three bytes: the relays of group X, those of group Y
// (relay r is bit r), the bus flags (bit 0 balanced measurement mode, bit 1 load).

#include "peripheral_network/bus/KvNetExchange.h"

#include <cstdint>

namespace kalvio {

inline constexpr KvNetCommand kSwitcherGetBothBuses{0x80, 0, 6}; // states of bus A and bus B
inline constexpr KvNetCommand kSwitcherSetBothBuses{0x81, 6, 6};
// The commands of one bus; bus B's code is the next higher one.
inline constexpr KvNetCommand kSwitcherSetBus{0x82, 3, 3};
inline constexpr KvNetCommand kSwitcherRelayOn{0x84, 1, 3}; // relay + 8 * group; answers the bus state
inline constexpr KvNetCommand kSwitcherRelayOff{0x86, 1, 3};
inline constexpr KvNetCommand kSwitcherGetBus{0x88, 0, 3};
inline constexpr KvNetCommand kSwitcherSetFlags{0x8A, 1, 3}; // answers the bus state
inline constexpr KvNetCommand kSwitcherSetGroup{0x8C, 1, 1}; // group Y: two codes further
inline constexpr KvNetCommand kSwitcherGetDC{0x92, 0, 4}; // signed: positive A, negative A, positive B, ...

// The command for bus A (0) or bus B (any other).
[[nodiscard]] constexpr KvNetCommand OnBus(KvNetCommand command, unsigned bus) {
    command.code = static_cast<std::uint8_t>(command.code + (bus != 0 ? 1 : 0));
    return command;
}

} // namespace kalvio
