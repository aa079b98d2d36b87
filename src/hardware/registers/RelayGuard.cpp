#include "hardware/registers/RelayGuard.h"

namespace kalvio {

namespace {

// The one bit of 'p', 'q', 't' and 'u' that switches no relay.
constexpr std::uint8_t kNoRelayBit = 0x01;

bool SwitchesRelays(char reg, std::uint8_t changed) {
    switch (reg) {
    case 'r':
        return true;
    case 'p':
    case 'q':
    case 't':
    case 'u':
        return changed != kNoRelayBit;
    default:
        return false;
    }
}

} // namespace

void RelayGuard::WaitFor(std::initializer_list<char> registers) {
    for (const char reg : registers) {
        BusyWaitSince(At(reg).stamp, kRelayHoldMs);
    }
}

void RelayGuard::PrepareWrite(char reg, std::uint8_t value) {
    RegisterShadow& shadow = At(reg);
    const auto changed = static_cast<std::uint8_t>(shadow.value ^ value);
    shadow.value = value;
    if ((changed & shadow.lastChanged) != 0 && SwitchesRelays(reg, changed)) {
        WaitFor({reg});
    }
    shadow.lastChanged = changed;
    shadow.stamp = GetTickCount();
}

} // namespace kalvio
