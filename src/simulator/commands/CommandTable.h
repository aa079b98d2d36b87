#pragma once

// The command set of the unit as a table: how long each frame is, where its parameters stand and what
// data it carries.

#include <array>
#include <cstddef>
#include <cstdint>

namespace kalvio::simulator {

inline constexpr std::uint32_t kFrameMagic = 0x0000ABCD;
inline constexpr std::size_t kFrameFixedBytes = 16; // magic, code, out length, in length
inline constexpr std::size_t kBulkChunkBytes = 65472;

enum class CommandCode : std::uint32_t {
    Initialise = 1,
    Terminate = 2,
    MicroGetMem = 3,
    MicroGetBit = 4,
    DspGetMem = 5,
    DspGetBit = 6,
    MicroPutMem = 7,
    MicroPutBit = 8,
    DspPutMem = 9,
    DspPutBit = 10,
    MicroGetBlock = 11,
    DspGetBlock = 12,
    MicroPutBlock = 13,
    DspPutBlock = 14,
    MicroFill = 15,
    DspFill = 16,
    MicroWaitBit = 17,
    DspWaitBit = 18,
    MicroLoad = 19,
    FpgaLoad = 20,
    DspLoad = 21,
    General = 22,
    DspCommand = 23,
    MicroPutBits = 24,
};

// What data a frame may carry in one direction.
enum class DataRule { None, Bytes, Words24 };

enum class Field : std::uint8_t {
    None,
    Address,
    Space,
    Dsp,
    Mask,
    Value,
    Check,
    Length,
    ClearBits,
    SetBits,
    Selector,
};

struct FieldPlace {
    Field field = Field::None;
    std::uint8_t offset = 0; // from the start of the parameters
    std::uint8_t width = 0;
};

struct CommandShape {
    CommandCode code;
    const char* name;
    std::size_t headerBytes;
    std::size_t responseBytes;
    DataRule outData;
    DataRule inData;
    std::array<FieldPlace, 5> fields;
};

// The shape of a command; null for a code that the unit does not know.
const CommandShape* FindCommand(std::uint32_t code);

// Whether a frame may declare that much data.
bool Allows(DataRule rule, std::uint32_t length);

} // namespace kalvio::simulator
