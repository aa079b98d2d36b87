#include "simulator/UnitPeripherals.h"

#include "simulator/UnitState.h"
#include "simulator/peripherals/FunctionPeripheral.h"

#include <mutex>

namespace kalvio::simulator {

UnitPeripherals::UnitPeripherals(std::shared_ptr<UnitState> state) : m_state(std::move(state)) {}

void UnitPeripherals::Attach(std::shared_ptr<Peripheral> peripheral) {
    const std::uint32_t tick = m_state->clock.now();
    const std::scoped_lock guard(m_state->lock);
    if (peripheral != nullptr) {
        m_state->boards.peripherals.Attach(std::move(peripheral));
    }
    m_state->FollowSignalPath(tick);
}

void UnitPeripherals::Detach(const Peripheral& peripheral) {
    const std::uint32_t tick = m_state->clock.now();
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.peripherals.Detach(peripheral);
    m_state->FollowSignalPath(tick);
}

void UnitPeripherals::AttachPeripheral(std::uint8_t address, PeripheralFunction function) {
    {
        const std::scoped_lock guard(m_state->lock);
        m_state->boards.peripherals.Vacate(address);
    }
    Attach(function ? std::make_shared<FunctionPeripheral>(address, std::move(function)) : nullptr);
}

std::uint32_t UnitPeripherals::PeripheralAttempts(std::uint8_t address) const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.peripherals.Attempts(address);
}

std::uint32_t UnitPeripherals::PeripheralCollisions() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.peripherals.Collisions();
}

} // namespace kalvio::simulator
