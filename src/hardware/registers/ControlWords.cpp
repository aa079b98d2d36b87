#include "hardware/registers/ControlWords.h"

#include "hardware/link/Holding.h"
#include "hardware/registers/Bits.h"
#include "hardware/registers/UnitAddresses.h"

namespace kalvio {

namespace {

std::size_t IndexOf(std::uint8_t dsp) {
    return dsp == 0 ? 0 : 1;
}

} // namespace

std::uint32_t ControlWords::Get(std::uint8_t dsp) const {
    return m_words[IndexOf(dsp)].load();
}

std::int16_t ControlWords::PutHeld(std::uint8_t dsp, std::uint32_t word) {
    m_words[IndexOf(dsp)].store(word);
    return m_commands.DSPPutMem24(dsp, kSpaceX, address::kControlWord, word);
}

std::int16_t ControlWords::Put(std::uint8_t dsp, std::uint32_t word) {
    const Holding hold(m_lock);
    return PutHeld(dsp, word);
}

std::int16_t ControlWords::PutBits(std::uint8_t dsp, std::uint32_t clearMask, std::uint32_t setBits) {
    const Holding hold(m_lock);
    return PutHeld(dsp, WithBits(Get(dsp), clearMask, setBits));
}

} // namespace kalvio
