#pragma once

// The micro-controller's memories: data 'X' (64 K), hardware registers 'S' (64 K), code 'C' (32 K) and
// internal 'I' (256 bytes). A write to one of the four control registers in 'S' also lands in its
// shadow in 'X'.

#include "simulator/Bytes.h"
#include "simulator/UnitError.h"

#include <map>

namespace kalvio::simulator {

inline constexpr std::uint16_t kCommandBuffer = 0x7900; // in 'X': out data of the last general command
inline constexpr std::size_t kCommandBufferBytes = 0x100;
inline constexpr std::uint16_t kStatusVersion = 0x8000; // in 'X': main-board hardware version
inline constexpr std::uint16_t kStatusOptions = 0x8001; // in 'X': main-board options

class MicroMemory {
public:
    MicroMemory();

    UnitError Read(std::uint8_t space, std::uint32_t address, ByteSpan into) const;
    UnitError Write(std::uint8_t space, std::uint32_t address, ByteView bytes);
    UnitError Fill(std::uint8_t space, std::uint32_t address, std::size_t length, std::uint8_t value);
    // Clears bits of a byte, then sets bits.
    UnitError Modify(std::uint8_t space, std::uint32_t address, std::uint8_t clear, std::uint8_t set);

private:
    [[nodiscard]] UnitError Check(std::uint8_t space, std::uint32_t address, std::size_t length) const;
    void MirrorControlRegisters();

    std::map<std::uint8_t, ByteVector> m_spaces;
};

} // namespace kalvio::simulator
