#pragma once

// The unit's commands as a trace shows them: names and parameters.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace kalvio::bench {

inline constexpr std::uint32_t kGeneralCommand = 22;

// "MicroPutMem(space 'S', address 0x8000, value 0x7, check 0)" for a command code and the header bytes
// from offset 16, appended to the text; a code that is not known is named by its number.
void AppendCommand(std::string& text, std::uint32_t code, std::span<const std::uint8_t> parameters);

// Whether the command's 16-byte response carries a value at offset 12, and how many bytes it takes there
// (0 when it carries none).
std::size_t ResultBytes(std::uint32_t code);

} // namespace kalvio::bench
