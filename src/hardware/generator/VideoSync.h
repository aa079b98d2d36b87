#pragma once

// The pair of video standards sent last. It belongs to the process: the unit keeps it across hardware
// objects.

#include <cstdint>

namespace kalvio {

// Remembers a pair; true when it differs from the one before (0xFF, 0xFF at first). Any thread, one step.
[[nodiscard]] bool RememberVideoStandards(std::uint8_t standardA, std::uint8_t standardB);

} // namespace kalvio
