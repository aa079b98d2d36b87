#pragma once

// The record of general command 13: both generator channels and the relay registers 't', 'u' and 'v'.

#include "hardware/GeneratorDetails.h"
#include "platform/Export.h"

#include <array>
#include <cstdint>

namespace kalvio {

// One byte for each of the three registers.
struct GeneratorRegisters {
    std::uint8_t t = 0;
    std::uint8_t u = 0;
    std::uint8_t v = 0;
    bool operator==(const GeneratorRegisters&) const = default;
};

// Bytes 0-23 and 24-47: a channel's four big-endian values and eight bytes as given. 48: m0. 49 and 50: what
// channels A and B ask for, and which registers change. 51 't', 52 'u', 53 'v' for channel A, 54 'v' for
// channel B, 55 zero.
struct GeneratorRecord {
    std::array<std::uint8_t, 56> bytes{};
    GeneratorRegisters values;  // what the registers hold afterwards
    GeneratorRegisters changed; // the bits that the unit toggles, its own doings included
};

// From what the registers hold now. Any thread; no state.
[[nodiscard]] GeneratorRecord BuildGeneratorRecord(const GeneratorRegisters& now,
                                                   const DSPGeneratorDetails& dsp,
                                                   const MicroGeneratorDetails& micro);

} // namespace kalvio
