#pragma once

#include <cstdint>

namespace kalvio {

// A register's value with some bits cleared, then some set.
template<typename Word>
[[nodiscard]] constexpr Word WithBits(Word value, Word clearMask, Word setBits) {
    return static_cast<Word>((value & ~clearMask) | setBits);
}

} // namespace kalvio
