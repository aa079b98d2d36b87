#pragma once

// Exchanges over the peripheral bus as a trace shows them: general command 12, whose data are the frame and
// its answer.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace kalvio::bench {

inline constexpr std::uint8_t kPeripheralExchange = 12; // id of the general command
inline constexpr std::size_t kPeripheralBlockBytes = 44;

// "RelayOnA(address 3, relay Y3)" for the block that goes to the unit; a command that no table has is named
// by its code, and bytes that are no frame are shown as they are.
std::string DescribeBusCall(std::span<const std::uint8_t> block);

// "ok, X 00, Y 08, flags 00" for the block that came back, or the unit's status and what it means.
std::string DescribeBusAnswer(std::span<const std::uint8_t> sent, std::span<const std::uint8_t> block);

} // namespace kalvio::bench
