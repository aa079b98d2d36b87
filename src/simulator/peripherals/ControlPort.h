#pragma once

// What hangs on the control port of a KEDA adapter: an SPI and an I2C device under test, each with a small
// file of registers.

#include "simulator/Bytes.h"

#include <array>

namespace kalvio::simulator {

inline constexpr std::size_t kControlRegisterCount = 16;
using ControlRegisters = std::array<std::uint8_t, kControlRegisterCount>;

struct SpiMode {
    bool phase = true;
    bool polarity = true;

    bool operator==(const SpiMode&) const = default;
};

// The first byte of a transfer names a register, with bit 7 set to read; the bytes behind it are written to
// or read from there on, wrapping at the end. Under another clock phase or polarity than its own every bit
// is taken one clock late, both ways.
class SpiRegisterFile {
public:
    explicit SpiRegisterFile(SpiMode mode) : m_mode(mode) {}

    // As many bytes come back as are sent.
    ByteVector Transfer(ByteView sent, SpiMode mode);
    [[nodiscard]] const ControlRegisters& Registers() const { return m_registers; }

private:
    ByteVector Exchange(ByteView sent);

    SpiMode m_mode;
    ControlRegisters m_registers{};
};

// The first byte behind the address names a register, the others are written from there on, wrapping at the
// end.
class I2cRegisterFile {
public:
    explicit I2cRegisterFile(std::uint8_t address) : m_address(address) {}

    // A message with its address byte in front. False when nobody acknowledges: another address, a read, a
    // register that does not exist.
    bool Write(ByteView message);
    [[nodiscard]] const ControlRegisters& Registers() const { return m_registers; }

private:
    std::uint8_t m_address;
    ControlRegisters m_registers{};
};

} // namespace kalvio::simulator
