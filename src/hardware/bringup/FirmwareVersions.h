#pragma once

// Which firmware of the unit goes with which version of this software.

#include <cstdint>
#include <optional>

namespace kalvio {

// The USB device release number (bcdDevice) of the firmware that a software version expects; none for an
// unknown version. Any thread.
[[nodiscard]] std::optional<std::uint16_t> FirmwareReleaseFor(int majorVersion, int minorVersion);

} // namespace kalvio
