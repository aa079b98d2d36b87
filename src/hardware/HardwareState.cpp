// Small readers of the unit's state: HF2 flags, peak detectors, temperatures.

#include "hardware/Hardware.h"

#include "platform/Endian.h"

#include <algorithm>

using namespace kalvio;

namespace {

constexpr std::uint32_t kHf2BitA = 0xB02208;
constexpr std::uint32_t kHf2BitB = 0xB02A08;
constexpr std::uint16_t kHf2TimeOut = 1;
constexpr std::uint8_t kDspCommandResetHf2 = 0x3C;
constexpr std::size_t kPeakBytes = 8;
constexpr std::uint8_t kMainBoardSensor = 72;
constexpr std::uint8_t kAnalogueBoardSensor = 73;

} // namespace

int CHardware::IsHF2FlagReady(std::uint8_t dsp) {
    int bit = 0;
    if (m_commands.MicroWaitBit(kSpaceX, dsp == 1 ? kHf2BitB : kHf2BitA, 1, kHf2TimeOut, bit) != 0) {
        return 0;
    }
    std::atomic<std::int16_t>& ignore = m_hf2Ignore[dsp == 1 ? 1 : 0];
    std::int16_t left = ignore.load();
    while (left >= 1) {
        if (ignore.compare_exchange_weak(left, static_cast<std::int16_t>(left - 1))) {
            return 0;
        }
    }
    return bit;
}

std::int16_t CHardware::ResetHF2Flag(std::uint8_t dsp) {
    return m_commands.DSPSendCommand(dsp, kDspCommandResetHf2);
}

void CHardware::SetHF2FlagIgnoreCount(std::uint8_t dsp, std::int16_t count) {
    m_hf2Ignore[dsp == 1 ? 1 : 0].store(count);
}

std::int16_t CHardware::ReadPeakDetectorValues(std::uint8_t* peakA, std::uint8_t* peakB) {
    if (!IsUnitPresent()) {
        return 0;
    }
    const std::array<std::uint8_t, 2> wanted{std::uint8_t{peakA != nullptr}, std::uint8_t{peakB != nullptr}};
    std::array<std::uint8_t, 18> values{};
    m_commands.DoCommand(kCommandPeakDetectors, wanted.size(), wanted.data(), values.size(), values.data());
    if (peakA != nullptr) {
        std::copy_n(values.begin(), kPeakBytes, peakA);
    }
    if (peakB != nullptr) {
        std::copy_n(values.begin() + kPeakBytes, kPeakBytes, peakB);
    }
    return 0;
}

std::int16_t CHardware::GetTemperature(std::uint8_t sensor, double& degrees, int evenIfSuspended) {
    std::array<std::uint8_t, 2> bytes{};
    const std::int16_t status =
        m_commands.MicroGetMemBlock(kSpaceI2c, sensor, bytes.size(), bytes.data(), evenIfSuspended);
    if (status == 0) {
        // The upper nine bits, two's complement, in half degrees.
        degrees = (static_cast<std::int16_t>(GetBig16(bytes.data())) >> 7) / 2.0;
    }
    return status;
}

double CHardware::GetMainBoardTemperature() {
    double degrees = 0.0;
    GetTemperature(kMainBoardSensor, degrees, 1);
    return degrees;
}

double CHardware::GetAnalogueBoardTemperature() {
    double degrees = 0.0;
    GetTemperature(kAnalogueBoardSensor, degrees, 1);
    return degrees;
}
