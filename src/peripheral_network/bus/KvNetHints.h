#pragma once

// View updates of the peripheral network. User-interface thread.

#include "platform/Export.h"

#include <cstdint>

enum KvNetHint : int {
    HINT_SWITCHER_CHANGED = -601, // object: packed device word, top byte the device class
    HINT_ARRAY_ADDED = -602,
    HINT_ARRAY_CHANGED = -603,      // object: the array
    HINT_ARRAY_NAME_CHANGED = -604, // object: the array
    HINT_ARRAY_REMOVED = -605,      // object: the array, gone already; compare only
    HINT_ARRAY_MOVED = -606,        // object: the array
    HINT_EXCLUSIVE_MODE_CHANGED = -607,
    HINT_BALANCE_CHANGED = -608, // object: the array
    HINT_DEVICE_CHANGED = -609,  // object: packed device word, top byte the class-type byte
};

namespace kalvio {

inline constexpr std::uint8_t kAllBuses = 0xFF;
inline constexpr std::uint8_t kAllGroups = 0xFF;

// Which part of which device changed: class code in bits 24 to 31, address, bus, group below.
struct DeviceWord {
    std::uint8_t classCode = 0;
    std::uint8_t address = 0;
    std::uint8_t bus = kAllBuses;
    std::uint8_t group = kAllGroups;
};

[[nodiscard]] KALVIO_API std::uint32_t PackDeviceWord(const DeviceWord& word);
[[nodiscard]] KALVIO_API DeviceWord UnpackDeviceWord(std::uint32_t word);
// A packed word as the object of a view update, and back.
[[nodiscard]] KALVIO_API void* HintObject(std::uint32_t word);
[[nodiscard]] KALVIO_API std::uint32_t HintWord(const void* object);

// Tells every view that relays of a switcher changed: HINT_SWITCHER_CHANGED with its class,
// HINT_DEVICE_CHANGED with its class type.
KALVIO_API void TellSwitcherChanged(std::uint8_t address, std::uint8_t bus, std::uint8_t group);
// The same two hints for a device that was reset, whose class they leave open.
KALVIO_API void TellDeviceReset(std::uint8_t address);

} // namespace kalvio
