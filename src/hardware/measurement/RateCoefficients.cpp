#include "hardware/measurement/RateCoefficients.h"

#include "hardware/Truncate.h"

#include <algorithm>
#include <iterator>

namespace kalvio {

namespace {

struct DigitalRateRow {
    std::uint32_t rate; // hertz
    std::array<std::uint32_t, 4> words;
};

constexpr DigitalRateRow kDigitalRates[] = {
    {32000, {8385987, 163840, 671, 2621}}, {44100, {8386706, 118886, 487, 1902}},
    {48000, {8386860, 109227, 447, 1748}}, {64000, {8387297, 81920, 335, 1311}},
    {88200, {8387657, 59443, 243, 951}},   {96000, {8387734, 54613, 223, 874}},
    {176400, {8388132, 29722, 121, 476}},  {192000, {8388171, 27307, 111, 437}},
};

constexpr double kTwoPointTwoPi = 6.911503837897546;
constexpr double kFullScale = 8388608.0; // 1.0 as a 24-bit fraction

void Append(RateCoefficients& block, std::uint32_t word) {
    block.bytes[block.length++] = static_cast<std::uint8_t>(word >> 16);
    block.bytes[block.length++] = static_cast<std::uint8_t>(word >> 8);
    block.bytes[block.length++] = static_cast<std::uint8_t>(word);
}

} // namespace

std::optional<RateCoefficients> ComputeRateCoefficients(double analogueRate, bool is192kHardware,
                                                        double digitalRate) {
    RateCoefficients block;
    const double k = is192kHardware ? 1.3 : 1.5;
    const double a = analogueRate / kTwoPointTwoPi;
    const double d = a + 1.0;
    for (const double coefficient : {(a + k) / (2.0 * d), k / d, -1.0 / d}) {
        Append(block, TruncatedBits(std::floor(coefficient * kFullScale + 0.5)));
    }
    if (digitalRate == kRateNotSet) {
        return block;
    }
    const auto* row = std::ranges::find(kDigitalRates, TruncatedBits(digitalRate), &DigitalRateRow::rate);
    if (row == std::end(kDigitalRates)) {
        return std::nullopt;
    }
    for (const std::uint32_t word : row->words) {
        Append(block, word);
    }
    return block;
}

} // namespace kalvio
