#include "hardware/measurement/Readings.h"

#include "platform/formats/Endian.h"

#include <algorithm>
#include <array>

namespace kalvio {

namespace {

constexpr std::size_t kPeakBytes = 8;
constexpr std::size_t kPeakAnswerBytes = 18;

} // namespace

void Readings::ReadPeaks(std::uint8_t* peakA, std::uint8_t* peakB) {
    if (!m_commands.IsActive()) {
        return;
    }
    const std::array<std::uint8_t, 2> wanted{std::uint8_t{peakA != nullptr}, std::uint8_t{peakB != nullptr}};
    std::array<std::uint8_t, kPeakAnswerBytes> values{};
    m_commands.DoCommand(kCommandPeakDetectors, wanted.size(), wanted.data(), values.size(), values.data());
    if (peakA != nullptr) {
        std::copy_n(values.begin(), kPeakBytes, peakA);
    }
    if (peakB != nullptr) {
        std::copy_n(values.begin() + kPeakBytes, kPeakBytes, peakB);
    }
}

std::int16_t Readings::ReadTemperature(std::uint8_t sensor, double& degrees, bool evenIfSuspended) {
    std::array<std::uint8_t, 2> bytes{};
    const std::int16_t status =
        m_commands.MicroGetMemBlock(kSpaceI2c, sensor, bytes.size(), bytes.data(), evenIfSuspended ? 1 : 0);
    if (status == 0) {
        // The upper nine bits, two's complement, in half degrees.
        degrees = (static_cast<std::int16_t>(GetBig16(bytes.data())) >> 7) / 2.0;
    }
    return status;
}

double Readings::Temperature(std::uint8_t sensor) {
    double degrees = 0.0;
    ReadTemperature(sensor, degrees, true);
    return degrees;
}

} // namespace kalvio
