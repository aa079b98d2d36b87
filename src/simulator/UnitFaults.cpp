#include "simulator/UnitFaults.h"

#include "simulator/UnitState.h"

#include <mutex>
#include <utility>

namespace kalvio::simulator {

UnitFaults::UnitFaults(std::shared_ptr<UnitState> state) : m_state(std::move(state)) {}

void UnitFaults::AddFault(const Fault& fault) {
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.faults.Add(fault);
}

void UnitFaults::ClearFaults() {
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.faults.Clear();
}

std::uint32_t UnitFaults::FaultsShown() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.faults.Shown();
}

} // namespace kalvio::simulator
