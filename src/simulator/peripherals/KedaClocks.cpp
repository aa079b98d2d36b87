#include "simulator/peripherals/KedaClocks.h"

#include <cmath>
#include <iterator>

namespace kalvio::simulator {

namespace {

constexpr std::uint8_t kMultiplierBits = 0x07; // of clocks 1
constexpr std::uint8_t kMasterIsInput = 0x40;
constexpr std::uint8_t kSerialIsInput = 0x80; // of clocks 2
constexpr double kMasterClockRatio = 256.0;
constexpr double kMultipliers[] = {64, 96, 128, 192, 256, 384, 512, 64};
constexpr double kRates[] = {32000, 44100, 48000, 88200, 96000, 176400, 192000}; // codes 1 to 7
constexpr double kRateTolerance = 0.01;

bool SerialIsInput(const KedaRegisters& registers, std::size_t clocks) {
    return (registers[clocks + 1] & kSerialIsInput) != 0;
}

// Of a direction whose serial clocks are outputs.
double DrivenRate(const KedaRegisters& registers, std::size_t clocks, const KedaClockSource& source) {
    if ((registers[clocks] & kMasterIsInput) == 0) {
        return source.digitalRateHz;
    }
    return source.deviceRateHz * kMasterClockRatio / kMultipliers[registers[clocks] & kMultiplierBits];
}

double RateOf(const KedaRegisters& registers, std::size_t clocks, std::size_t otherClocks,
              const KedaClockSource& source) {
    if (!SerialIsInput(registers, clocks)) {
        return DrivenRate(registers, clocks, source);
    }
    if (source.deviceRateHz > 0.0 || SerialIsInput(registers, otherClocks)) {
        return source.deviceRateHz;
    }
    return DrivenRate(registers, otherClocks, source);
}

} // namespace

KedaFrameRates FollowClocks(const KedaRegisters& registers, const KedaClockSource& source) {
    return {RateOf(registers, kKedaGenClocks, kKedaAnaClocks, source),
            RateOf(registers, kKedaAnaClocks, kKedaGenClocks, source)};
}

std::uint8_t FrameRateCode(double rateHz) {
    for (std::size_t i = 0; i < std::size(kRates); ++i) {
        if (std::fabs(rateHz / kRates[i] - 1.0) <= kRateTolerance) {
            return static_cast<std::uint8_t>(i + 1);
        }
    }
    return 0;
}

} // namespace kalvio::simulator
