#pragma once

// The DSP coefficients that depend on the analogue and digital sample rates.

#include "platform/Export.h"

#include <array>
#include <cstdint>
#include <optional>

namespace kalvio {

// 24-bit words, most significant byte first: three for the analogue rate and, when a digital rate is set,
// four for that.
struct RateCoefficients {
    std::array<std::uint8_t, 21> bytes{};
    std::uint32_t length = 0; // 9 or 21
};

inline constexpr double kRateNotSet = -1.0;

// Rates in hertz. Nothing for a digital rate that has no coefficients. Any thread; no state.
[[nodiscard]] std::optional<RateCoefficients>
ComputeRateCoefficients(double analogueRate, bool is192kHardware, double digitalRate);

} // namespace kalvio
