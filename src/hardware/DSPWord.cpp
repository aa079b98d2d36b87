#include "hardware/DSPWord.h"

unsigned long DSPWordToULong(DSPWord word) {
    return (static_cast<unsigned long>(word.bytes[0]) << 16) |
           (static_cast<unsigned long>(word.bytes[1]) << 8) | word.bytes[2];
}

long DSPWordToLong(DSPWord word) {
    return static_cast<long>(DSPWordToULong(word));
}

DSPWord LongToDSPWord(long value) {
    return {{static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8),
             static_cast<std::uint8_t>(value)}};
}
