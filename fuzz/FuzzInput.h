#pragma once

// Takes a fuzzer's bytes apart. Past their end everything is zero or empty.

#include "platform/formats/Endian.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <string>

namespace kalvio::fuzz {

class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : m_bytes(data, size) {}

    [[nodiscard]] bool IsAtEnd() const { return m_bytes.empty(); }

    std::span<const std::uint8_t> Take(std::size_t most) {
        const auto taken = m_bytes.first(std::min(most, m_bytes.size()));
        m_bytes = m_bytes.subspan(taken.size());
        return taken;
    }
    std::span<const std::uint8_t> Rest() { return Take(m_bytes.size()); }

    std::uint8_t Byte() { return Fixed<1>()[0]; }
    std::uint16_t Word() { return GetLittle16(Fixed<2>().data()); }
    std::uint32_t Long() { return GetLittle32(Fixed<4>().data()); }
    // Every bit pattern, NaN and the infinities included.
    double Real() {
        const auto bytes = Fixed<8>();
        double value = 0.0;
        std::memcpy(&value, bytes.data(), sizeof value);
        return value;
    }
    std::string Text() {
        const auto bytes = Take(Byte());
        return {bytes.begin(), bytes.end()};
    }

private:
    template<std::size_t Size>
    std::array<std::uint8_t, Size> Fixed() {
        std::array<std::uint8_t, Size> bytes{};
        std::ranges::copy(Take(Size), bytes.begin());
        return bytes;
    }

    std::span<const std::uint8_t> m_bytes;
};

} // namespace kalvio::fuzz
