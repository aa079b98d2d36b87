#include "hardware/measurement/Hf2Flags.h"

namespace kalvio {

namespace {

constexpr std::uint32_t kBitA = 0xB02208; // bit addresses in 'X'
constexpr std::uint32_t kBitB = 0xB02A08;
constexpr std::uint16_t kTimeOut = 1;
constexpr std::uint8_t kDspCommandReset = 0x3C;

} // namespace

int Hf2Flags::IsReady(std::uint8_t dsp) {
    int bit = 0;
    if (m_commands.MicroWaitBit(kSpaceX, dsp == 1 ? kBitB : kBitA, 1, kTimeOut, bit) != 0) {
        return 0;
    }
    std::atomic<std::int16_t>& ignore = m_ignore[dsp == 1 ? 1 : 0];
    std::int16_t left = ignore.load();
    while (left >= 1) {
        if (ignore.compare_exchange_weak(left, static_cast<std::int16_t>(left - 1))) {
            return 0;
        }
    }
    return bit;
}

std::int16_t Hf2Flags::Reset(std::uint8_t dsp) {
    return m_commands.DSPSendCommand(dsp, kDspCommandReset);
}

} // namespace kalvio
