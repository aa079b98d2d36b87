#pragma once

// Fifteen 24-bit words of results, as they stand in DSP memory.

#include <array>
#include <cstddef>
#include <cstdint>

namespace kalvio::simulator {

class ResultBlock {
public:
    static constexpr std::size_t kWords = 15;

    // An unsigned figure in two words: integer part, then fraction.
    void PutSplit(std::size_t index, double value);
    // A signed figure in one word, held inside its range.
    void PutSigned(std::size_t index, double value, double scale);
    // The last word: whether the others are valid, and a count of blocks.
    void PutStatus(std::uint32_t blockCount, bool valid);

    [[nodiscard]] const std::array<std::uint32_t, kWords>& Words() const { return m_words; }

private:
    std::array<std::uint32_t, kWords> m_words{};
};

} // namespace kalvio::simulator
