#pragma once

// Numbers in byte sequences, width and byte order spelled out.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kalvio::simulator {

using ByteView = std::span<const std::uint8_t>;
using ByteSpan = std::span<std::uint8_t>;
using ByteVector = std::vector<std::uint8_t>;

inline std::uint32_t ReadBig(ByteView bytes, std::size_t offset, std::size_t width) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < width; ++i) {
        value = (value << 8) | bytes[offset + i];
    }
    return value;
}

inline std::uint32_t ReadLittle(ByteView bytes, std::size_t offset, std::size_t width) {
    std::uint32_t value = 0;
    for (std::size_t i = width; i-- > 0;) {
        value = (value << 8) | bytes[offset + i];
    }
    return value;
}

inline void StoreBig(ByteSpan bytes, std::size_t offset, std::uint32_t value, std::size_t width) {
    for (std::size_t i = width; i-- > 0; value >>= 8) {
        bytes[offset + i] = static_cast<std::uint8_t>(value);
    }
}

inline void StoreLittle(ByteSpan bytes, std::size_t offset, std::uint32_t value, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i, value >>= 8) {
        bytes[offset + i] = static_cast<std::uint8_t>(value);
    }
}

} // namespace kalvio::simulator
