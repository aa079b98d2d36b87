#pragma once

// Program images of the unit.

#include "platform/Text.h"

#include <cstdint>
#include <vector>

namespace kalvio {

// Reads an image whole, padded with zeroes to a multiple of `unitBytes`. 0, kImageNotOpened for a file that
// is missing or cannot be read, kImageNoMemory for one that does not fit into memory. Any thread.
[[nodiscard]] std::int16_t ReadImageFile(const CString& path, std::size_t unitBytes,
                                         std::vector<std::uint8_t>& image);

} // namespace kalvio
