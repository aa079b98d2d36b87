#pragma once

// The unit's 24-bit DSP words, most significant byte first.

#include "platform/Export.h"

#include <cstdint>

struct DSPWord {
    std::uint8_t bytes[3] = {0, 0, 0};
};

// The unsigned value, 0 to 16777215; both functions give the same.
[[nodiscard]] KALVIO_API unsigned long DSPWordToULong(DSPWord word);
[[nodiscard]] KALVIO_API long DSPWordToLong(DSPWord word);
// Keeps the low 24 bits.
[[nodiscard]] KALVIO_API DSPWord LongToDSPWord(long value);
