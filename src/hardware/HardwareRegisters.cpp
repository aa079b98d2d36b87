// Registers of the unit that are kept in shadows, and what the calibration tables need of the unit.

#include "hardware/Hardware.h"

#include <algorithm>
#include <mutex>

namespace {

using kalvio::kSpaceI2c;
using kalvio::kSpaceS;
using kalvio::kSpaceX;

constexpr std::uint32_t kDspControlWord = 24; // address in DSP 'X'

// Control registers in 'S' can only be written; the unit keeps what was written in 'X'.
struct ControlRegister {
    std::uint16_t reg;
    std::uint16_t shadow;
};

constexpr std::array<ControlRegister, 4> kControlRegisters{
    {{0x8000, 0x7AFC}, {0x8080, 0x7AFD}, {0x8800, 0x7AFE}, {0x8880, 0x7AFF}}};

const ControlRegister* FindControlRegister(std::uint16_t reg) {
    const auto* found = std::find_if(kControlRegisters.begin(), kControlRegisters.end(),
                                     [=](const ControlRegister& known) { return known.reg == reg; });
    return found != kControlRegisters.end() ? found : nullptr;
}

std::uint8_t WithBits(std::uint8_t value, std::uint8_t clearMask, std::uint8_t setBits) {
    return static_cast<std::uint8_t>((value & ~clearMask) | setBits);
}

std::size_t DspIndex(std::uint8_t dsp) {
    return dsp == 0 ? 0 : 1;
}

} // namespace

std::int16_t CHardware::MicroWriteCtrlRegister(std::uint16_t reg, std::uint8_t value) {
    return MicroPutMem(kSpaceS, reg, value, 0);
}

std::int16_t CHardware::MicroReadCtrlRegister(std::uint16_t reg, std::uint8_t& value) {
    const ControlRegister* known = FindControlRegister(reg);
    return known != nullptr ? MicroGetMem(kSpaceX, known->shadow, value) : kalvio::kUnknownRegisterRead;
}

std::int16_t CHardware::MicroWriteCtrlRegisterBits(std::uint16_t reg, std::uint8_t clearMask,
                                                   std::uint8_t setBits) {
    const ControlRegister* known = FindControlRegister(reg);
    if (known == nullptr) {
        return kalvio::kUnknownRegisterWrite;
    }
    std::uint8_t value = 0;
    const std::int16_t status = MicroGetMem(kSpaceX, known->shadow, value);
    return status != 0 ? status : MicroPutMem(kSpaceS, reg, WithBits(value, clearMask, setBits), 0);
}

std::int16_t CHardware::MicroReadStatusRegister(std::uint16_t address, std::uint8_t& value) {
    return MicroGetMem(kSpaceX, address, value);
}

std::int16_t CHardware::AnalogueGetMem(std::uint8_t reg, std::uint8_t& value) {
    return MicroGetMem(kSpaceI2c, reg, value);
}

std::int16_t CHardware::AnaloguePutMem(std::uint8_t reg, std::uint8_t value) {
    const std::scoped_lock hold(m_relays.Lock());
    m_relays.PrepareWrite(static_cast<char>(reg), value);
    return MicroPutMem(kSpaceI2c, reg, value, 0);
}

std::int16_t CHardware::AnaloguePutBits(std::uint8_t reg, std::uint8_t clearMask, std::uint8_t setBits) {
    const std::scoped_lock hold(m_relays.Lock());
    return AnaloguePutMem(reg, WithBits(m_relays[static_cast<char>(reg)].value, clearMask, setBits));
}

std::int16_t CHardware::DSPGetControlWord(std::uint8_t dsp, std::uint32_t& word) {
    word = m_controlWords[DspIndex(dsp)].load();
    return 0;
}

std::int16_t CHardware::DSPPutControlWord(std::uint8_t dsp, std::uint32_t word) {
    const std::scoped_lock hold(m_relays.Lock());
    m_controlWords[DspIndex(dsp)].store(word);
    return DSPPutMem24(dsp, kSpaceX, kDspControlWord, word);
}

std::int16_t CHardware::DSPPutControlBits(std::uint8_t dsp, std::uint32_t clearMask, std::uint32_t setBits) {
    const std::scoped_lock hold(m_relays.Lock());
    return DSPPutControlWord(dsp, (m_controlWords[DspIndex(dsp)].load() & ~clearMask) | setBits);
}

std::int16_t CHardware::SetMainBoardRelay(std::uint8_t relay, std::uint8_t on) {
    const std::array<std::uint8_t, 2> bytes{relay, on};
    return DoCommand(kalvio::kCommandMainBoardRelay, bytes.size(), bytes.data(), 0, nullptr);
}

int CHardware::LockHWAccess() {
    m_commands.HardwareAccess().Lock();
    return 1;
}

int CHardware::UnlockHWAccess() {
    m_commands.HardwareAccess().Unlock();
    return 1;
}

std::int16_t CHardware::PutByte(std::uint8_t device, std::uint8_t value) {
    return MicroPutMem(kSpaceI2c, device, value, 0);
}

std::int16_t CHardware::PutBlock(std::uint8_t device, const std::uint8_t* bytes, std::uint32_t length,
                                 bool checked) {
    return MicroPutMemBlock(kSpaceI2c, device, length, bytes, checked ? 1 : 0);
}

std::int16_t CHardware::GetBlock(std::uint8_t device, std::uint8_t* bytes, std::uint32_t length) {
    return MicroGetMemBlock(kSpaceI2c, device, length, bytes, 0);
}

std::int16_t CHardware::ReadStatusRegister(std::uint16_t address, std::uint8_t& value) {
    return MicroReadStatusRegister(address, value);
}

std::int16_t CHardware::ReadAnalogueRegister(char reg, std::uint8_t& value) {
    return AnalogueGetMem(static_cast<std::uint8_t>(reg), value);
}
