#pragma once

// Numbers and bytes as a trace shows them, appended to a line: a command with its bytes has some hundred of
// them, too many for a format string each.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <span>
#include <string>

namespace kalvio::bench {

inline constexpr char kHexDigits[] = "0123456789ABCDEF";

// In decimal, with blanks in front up to the width.
inline void AppendDecimal(std::string& text, std::uint32_t number, std::size_t width = 0) {
    char digits[10]; // of the largest number
    const char* const end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
    const auto length = static_cast<std::size_t>(end - digits);
    text.append(std::max(width, length) - length, ' ');
    text.append(digits, length);
}

// "0x7AFC", without leading zeros.
inline void AppendHex(std::string& text, std::uint32_t number) {
    text += "0x";
    int shift = 28;
    while (shift > 0 && number >> shift == 0) {
        shift -= 4;
    }
    for (; shift >= 0; shift -= 4) {
        text += kHexDigits[number >> shift & 0x0FU];
    }
}

// "01 02 03", with "..." behind the most that are shown.
inline void AppendHexBytes(std::string& text, std::span<const std::uint8_t> bytes, std::size_t most) {
    const std::span<const std::uint8_t> shown = bytes.first(std::min(bytes.size(), most));
    std::size_t at = text.size();
    text.resize(at + 3 * shown.size());
    for (const std::uint8_t byte : shown) {
        text[at] = kHexDigits[byte >> 4U];
        text[at + 1] = kHexDigits[byte & 0x0FU];
        text[at + 2] = ' ';
        at += 3;
    }
    if (bytes.size() > most) {
        text += "...";
    } else if (!shown.empty()) {
        text.pop_back();
    }
}

inline std::string HexText(std::span<const std::uint8_t> bytes, std::size_t most) {
    std::string text;
    AppendHexBytes(text, bytes, most);
    return text;
}

} // namespace kalvio::bench
