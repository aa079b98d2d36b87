#pragma once

// Integers on the wire, written and read byte by byte with explicit width and order.

#include <cstdint>

namespace kalvio {

inline void PutBig16(std::uint8_t* at, std::uint16_t value) {
    at[0] = static_cast<std::uint8_t>(value >> 8);
    at[1] = static_cast<std::uint8_t>(value);
}

inline void PutBig32(std::uint8_t* at, std::uint32_t value) {
    PutBig16(at, static_cast<std::uint16_t>(value >> 16));
    PutBig16(at + 2, static_cast<std::uint16_t>(value));
}

inline std::uint16_t GetBig16(const std::uint8_t* at) {
    return static_cast<std::uint16_t>((at[0] << 8) | at[1]);
}

inline std::uint32_t GetBig32(const std::uint8_t* at) {
    return (static_cast<std::uint32_t>(GetBig16(at)) << 16) | GetBig16(at + 2);
}

inline void PutLittle16(std::uint8_t* at, std::uint16_t value) {
    at[0] = static_cast<std::uint8_t>(value);
    at[1] = static_cast<std::uint8_t>(value >> 8);
}

inline void PutLittle32(std::uint8_t* at, std::uint32_t value) {
    PutLittle16(at, static_cast<std::uint16_t>(value));
    PutLittle16(at + 2, static_cast<std::uint16_t>(value >> 16));
}

inline std::uint16_t GetLittle16(const std::uint8_t* at) {
    return static_cast<std::uint16_t>(at[0] | (at[1] << 8));
}

inline std::uint32_t GetLittle32(const std::uint8_t* at) {
    return (static_cast<std::uint32_t>(GetLittle16(at + 2)) << 16) | GetLittle16(at);
}

} // namespace kalvio
