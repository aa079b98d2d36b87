#pragma once

// The version of this software: what calibration images are stamped with and what the unit's firmware is
// matched against.

#include <cstdint>

namespace kalvio {

inline constexpr std::uint8_t kSoftwareMajor = 1;
inline constexpr std::uint8_t kSoftwareMinor = 11;
inline constexpr char kSoftwareLetter = 'g';

} // namespace kalvio
