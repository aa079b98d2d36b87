#pragma once

// The analogue board's registers as they were last written, and the rule that no relay bit is toggled back
// within 120 ms of its previous toggle.

#include "hardware/link/QuietLock.h"
#include "platform/Clock.h"

#include <array>
#include <cstdint>
#include <initializer_list>

namespace kalvio {

inline constexpr std::uint32_t kRelayHoldMs = 120;

// One register's state.
struct RegisterShadow {
    std::uint8_t value = 0;       // last written
    std::uint8_t lastChanged = 0; // bits that the last write changed
    std::uint32_t stamp = 0;      // tick of the last write
};

// Callers hold the lock across looking, waiting, sending and stamping. Generator writes come from the
// pre-processor thread as well. Lock order: after hardware access, before endpoint. Nothing that takes the
// hardware-access lock (a checked write, a peripheral exchange) is called while it is held.
class RelayGuard {
public:
    QuietLock lock;

    // The state of a register, by its address.
    RegisterShadow& At(char reg) KALVIO_REQUIRES(lock) { return m_registers[static_cast<std::uint8_t>(reg)]; }
    // Waits until 120 ms have passed since the last write of each of the registers.
    void WaitFor(std::initializer_list<char> registers) KALVIO_REQUIRES(lock);
    // Before the write of one register: stores the value, waits when a relay bit would toggle back too
    // soon, and stamps the write.
    void PrepareWrite(char reg, std::uint8_t value) KALVIO_REQUIRES(lock);

private:
    std::array<RegisterShadow, 256> m_registers KALVIO_GUARDED_BY(lock){};
};

} // namespace kalvio
