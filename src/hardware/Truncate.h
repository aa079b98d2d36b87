#pragma once

// Doubles to integers without undefined behaviour.

#include <cmath>
#include <cstdint>

namespace kalvio {

// The integer part of a value as the low 32 bits of its two's complement, so that a narrower field takes the
// value modulo its own size. NaN and the infinities give 0.
inline std::uint32_t TruncatedBits(double value) {
    if (!std::isfinite(value)) {
        return 0;
    }
    const double wrapped = std::fmod(std::trunc(value), 4294967296.0); // exact, and within 33 bits
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(wrapped));
}

} // namespace kalvio
