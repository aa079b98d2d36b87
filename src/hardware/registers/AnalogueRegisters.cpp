#include "hardware/registers/AnalogueRegisters.h"

#include "hardware/link/Holding.h"
#include "hardware/registers/Bits.h"

namespace kalvio {

std::int16_t AnalogueRegisters::Get(std::uint8_t reg, std::uint8_t& value) {
    return m_commands.MicroGetMem(kSpaceI2c, reg, value);
}

std::int16_t AnalogueRegisters::PutGuarded(std::uint8_t reg, std::uint8_t value) {
    m_relays.PrepareWrite(static_cast<char>(reg), value);
    return m_commands.MicroPutMem(kSpaceI2c, reg, value, 0);
}

std::int16_t AnalogueRegisters::Put(std::uint8_t reg, std::uint8_t value) {
    const Holding hold(m_relays.lock);
    return PutGuarded(reg, value);
}

std::int16_t AnalogueRegisters::PutBits(std::uint8_t reg, std::uint8_t clearMask, std::uint8_t setBits) {
    const Holding hold(m_relays.lock);
    return PutGuarded(reg, WithBits(m_relays.At(static_cast<char>(reg)).value, clearMask, setBits));
}

} // namespace kalvio
