#pragma once

// Bytes as a trace shows them.

#include "platform/Text.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>

namespace kalvio::bench {

// "01 02 03", with "..." behind the most that are shown.
inline std::string HexText(std::span<const std::uint8_t> bytes, std::size_t most) {
    std::string text;
    for (const std::uint8_t byte : bytes.subspan(0, std::min(bytes.size(), most))) {
        text += Format(text.empty() ? "%02X" : " %02X", byte);
    }
    return bytes.size() > most ? text + " ..." : text;
}

} // namespace kalvio::bench
