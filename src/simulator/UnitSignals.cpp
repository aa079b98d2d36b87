#include "simulator/UnitSignals.h"

#include "simulator/UnitState.h"

#include <mutex>
#include <utility>

namespace kalvio::simulator {

UnitSignals::UnitSignals(std::shared_ptr<UnitState> state) : m_state(std::move(state)) {}

void UnitSignals::SetDeviceUnderTest(DeviceUnderTest device) {
    const std::uint32_t tick = m_state->clock.now();
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.measurement.SetDevice(std::move(device), m_state->PassTime(tick));
}

void UnitSignals::SetResultCadence(std::uint32_t milliseconds) {
    const std::uint32_t tick = m_state->clock.now();
    const std::scoped_lock guard(m_state->lock);
    m_state->PassTime(tick);
    m_state->boards.measurement.SetCadence(milliseconds);
}

Stimulus UnitSignals::GetStimulus(int channel) const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.measurement.GetStimulus(channel == 1 ? 1 : 0);
}

} // namespace kalvio::simulator
