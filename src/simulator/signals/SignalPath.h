#pragma once

// The way from the generators through the slots of the device under test to the analyser. The device
// treats even slots as its channel A, odd ones as its channel B. Without anything in the way generator A
// drives slot 0 and generator B slot 1, and analyser A and B hear these two.

#include <array>
#include <cstddef>
#include <cstdint>

namespace kalvio::simulator {

inline constexpr std::size_t kSlotCount = 16;
inline constexpr std::uint8_t kNoSlot = 0xFF;

enum class SlotSource : std::uint8_t { Silence, GeneratorA, GeneratorB };

struct SignalPath {
    std::array<SlotSource, kSlotCount> driven{SlotSource::GeneratorA, SlotSource::GeneratorB};
    std::array<std::uint8_t, 2> heard{0, 1}; // the slot that an analyser channel hears; kNoSlot: none

    bool operator==(const SignalPath&) const = default;
};

} // namespace kalvio::simulator
