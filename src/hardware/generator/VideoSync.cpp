#include "hardware/generator/VideoSync.h"

#include <atomic>

namespace kalvio {

namespace {

std::atomic<std::uint16_t> lastPair{0xFFFF};

} // namespace

bool RememberVideoStandards(std::uint8_t standardA, std::uint8_t standardB) {
    const auto pair = static_cast<std::uint16_t>((standardA << 8) | standardB);
    return lastPair.exchange(pair) != pair;
}

} // namespace kalvio
