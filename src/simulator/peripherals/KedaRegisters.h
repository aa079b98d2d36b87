#pragma once

// The control registers of a KEDA adapter, in the order in which its status tells them, and what they
// mean for the signals.

#include "simulator/signals/SignalPath.h"

namespace kalvio::simulator {

enum KedaRegister : std::size_t {
    kKedaRelays = 0,     // bit 1 analyser path, bit 2 generator path through the adapter
    kKedaIo = 1,         // voltages and output switches
    kKedaGenRouting = 2, // routed 8-15, routed 0-7, B 8-15, B 0-7
    kKedaGenFormat = 6,  // bits 0-1 slots per wire; lead pad; trail pad
    kKedaGenClocks = 9,
    kKedaAnaRouting = 11, // the slots of analyser A and B
    kKedaAnaFormat = 13,
    kKedaAnaClocks = 16,
    kKedaControlMode = 18, // bit 0 I2C, bit 1 clock phase, bit 2 clock polarity
    kKedaDelays = 19,
    kKedaRegisterCount = 20,
};

using KedaRegisters = std::array<std::uint8_t, kKedaRegisterCount>;

// As they are after power-up.
inline constexpr KedaRegisters kKedaPowerUp{0x00, 0x00, 0x00, 0xFF, 0x00, 0xAA, 0x30, 0x00, 0x08, 0x80,
                                            0x00, 0x00, 0x01, 0x30, 0x00, 0x08, 0x80, 0x80, 0x06, 0x21};

// Puts an adapter into the way of the signals: through it, generator slots carry A, B or nothing as they
// are routed, and the analyser hears the slots that it picks.
void RouteThrough(const KedaRegisters& registers, SignalPath& path);

} // namespace kalvio::simulator
