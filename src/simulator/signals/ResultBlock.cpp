#include "simulator/signals/ResultBlock.h"

#include <algorithm>
#include <cmath>

namespace kalvio::simulator {

namespace {

constexpr std::uint32_t kWordMask = 0xFFFFFF;
constexpr double kFractionScale = 16777216.0;       // 2^24
constexpr double kLargestSplit = 281474976710655.0; // 2^48 - 1
constexpr double kLargestSigned = 8388607.0;        // 2^23 - 1
constexpr std::size_t kStatusWord = ResultBlock::kWords - 1;
constexpr std::uint32_t kValid = 0x01;

} // namespace

void ResultBlock::PutSplit(std::size_t index, double value) {
    const double scaled = std::clamp(std::round(value * kFractionScale), 0.0, kLargestSplit);
    const auto number = static_cast<std::uint64_t>(scaled);
    m_words[index] = static_cast<std::uint32_t>(number >> 24);
    m_words[index + 1] = static_cast<std::uint32_t>(number) & kWordMask;
}

void ResultBlock::PutSigned(std::size_t index, double value, double scale) {
    const double scaled = std::clamp(std::round(value * scale), -kLargestSigned - 1.0, kLargestSigned);
    m_words[index] = static_cast<std::uint32_t>(static_cast<std::int32_t>(scaled)) & kWordMask;
}

void ResultBlock::PutStatus(std::uint32_t blockCount, bool valid) {
    m_words[kStatusWord] = ((blockCount << 8) | (valid ? kValid : 0)) & kWordMask;
}

} // namespace kalvio::simulator
