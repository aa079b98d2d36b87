#pragma once

// A regulation's status in words and colour.

#include "platform/Export.h"
#include "platform/Text.h"
#include "preprocessor/EResult.h"

#include <cstdint>

namespace kalvio::regulation {

inline constexpr std::uint32_t kStatusBlack = 0x000000; // red, green, blue from the top
inline constexpr std::uint32_t kStatusGreen = 0x008000;
inline constexpr std::uint32_t kStatusRed = 0xFF0000;

struct StatusText {
    CString text; // a failure's reason stands on its second line
    std::uint32_t color = kStatusBlack;
};

// Any status; those that a regulation does not end with read as a general failure. Any thread.
[[nodiscard]] KALVIO_API StatusText DescribeStatus(NPreProcessor::EResult status);

} // namespace kalvio::regulation
