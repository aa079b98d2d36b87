#pragma once

// The data memories of one DSP: 'X' and 'Y', 64 K words of 24 bits each. On the wire a block is three
// bytes a word, most significant first.

#include "simulator/Bytes.h"
#include "simulator/UnitError.h"

namespace kalvio::simulator {

inline constexpr std::uint32_t kDspWords = 0x10000; // of each space
inline constexpr std::uint32_t kDspWordMask = 0xFFFFFF;
inline constexpr std::size_t kDspWordBytes = 3;

class DspMemory {
public:
    DspMemory();

    // Whether a run of words lies within a space.
    static UnitError Check(std::uint8_t space, std::uint32_t address, std::size_t words);

    // One word; the address must have been checked.
    [[nodiscard]] std::uint32_t Get(std::uint8_t space, std::uint32_t address) const;
    void Put(std::uint8_t space, std::uint32_t address, std::uint32_t value);

    UnitError ReadBlock(std::uint8_t space, std::uint32_t address, std::size_t bytes, ByteVector& into) const;
    UnitError WriteBlock(std::uint8_t space, std::uint32_t address, ByteView bytes);
    UnitError Fill(std::uint8_t space, std::uint32_t address, std::uint32_t words, std::uint32_t value);

private:
    std::vector<std::uint32_t> m_words[2]; // 'X', 'Y'
};

} // namespace kalvio::simulator
