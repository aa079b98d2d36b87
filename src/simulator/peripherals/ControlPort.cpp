#include "simulator/peripherals/ControlPort.h"

namespace kalvio::simulator {

namespace {

constexpr std::uint8_t kSpiRead = 0x80;
constexpr std::uint8_t kSpiRegister = 0x7F;

ByteVector OneBitLate(ByteView bytes) {
    ByteVector late;
    unsigned carried = 0;
    for (const std::uint8_t byte : bytes) {
        late.push_back(static_cast<std::uint8_t>(carried | byte >> 1));
        carried = byte << 7 & 0x80;
    }
    return late;
}

} // namespace

ByteVector SpiRegisterFile::Transfer(ByteView sent, SpiMode mode) {
    if (mode == m_mode) {
        return Exchange(sent);
    }
    return OneBitLate(Exchange(OneBitLate(sent)));
}

ByteVector SpiRegisterFile::Exchange(ByteView sent) {
    ByteVector answered(sent.size());
    for (std::size_t i = 1; i < sent.size(); ++i) {
        std::uint8_t& reg = m_registers[((sent[0] & kSpiRegister) + i - 1) % kControlRegisterCount];
        if ((sent[0] & kSpiRead) != 0) {
            answered[i] = reg;
        } else {
            reg = sent[i];
        }
    }
    return answered;
}

bool I2cRegisterFile::Write(ByteView message) {
    if (message[0] != m_address << 1 || (message.size() > 1 && message[1] >= kControlRegisterCount)) {
        return false;
    }
    for (std::size_t i = 2; i < message.size(); ++i) {
        m_registers[(message[1] + i - 2) % kControlRegisterCount] = message[i];
    }
    return true;
}

} // namespace kalvio::simulator
