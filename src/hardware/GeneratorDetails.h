#pragma once

// Records that the host's generator and analyser documents hand to the hardware object.

#include <array>
#include <cstdint>

// One generator channel: four 32-bit values (sent big-endian at record offsets 0, 4, 8, 12) and eight bytes
// (sent as they are at 16 to 23).
struct DSPGeneratorChannel {
    std::array<std::uint32_t, 4> values{};
    std::array<std::uint8_t, 8> bytes{};
};

// Channel A, then B.
struct DSPGeneratorDetails {
    std::array<DSPGeneratorChannel, 2> channels{};
};

// m0 a value; m1 to m3 and m10 to m12 flags of channels A and B; m4 to m9 and m13 to m18 masks for the
// analogue registers 't', 'u' and 'v'.
struct MicroGeneratorDetails {
    std::array<std::uint8_t, 19> m{};
};

// Bytes 0-3 and 4-7: 32-bit values in host order; 8-15 pass through; 16-19 the new values of the analogue
// registers 'p', 'q', 'r', 's'.
struct WriteAutoRangeDetailsOut {
    std::uint32_t value0 = 0;
    std::uint32_t value1 = 0;
    std::array<std::uint8_t, 8> passThrough{};
    std::array<std::uint8_t, 4> registers{};
};
