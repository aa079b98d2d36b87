#include "simulator/UnitRecords.h"

#include "simulator/UnitState.h"

#include <mutex>
#include <utility>

namespace kalvio::simulator {

UnitRecords::UnitRecords(std::shared_ptr<UnitState> state) : m_state(std::move(state)) {}

std::vector<std::string> UnitRecords::ProtocolErrors() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.protocolErrors.Copy();
}

void UnitRecords::ClearProtocolErrors() {
    const std::scoped_lock guard(m_state->lock);
    m_state->boards.protocolErrors.Clear();
}

std::vector<Exchange> UnitRecords::Exchanges() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->carrier.Exchanges();
}

std::vector<RequestRecord> UnitRecords::Requests() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->requests.Copy();
}

void UnitRecords::ClearLogs() {
    const std::scoped_lock guard(m_state->lock);
    m_state->carrier.ClearExchanges();
    m_state->requests.Clear();
}

std::uint32_t UnitRecords::RequestCount() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->requestCount;
}

std::vector<RegisterWrite> UnitRecords::RegisterWrites() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.analogue.Writes().Copy();
}

std::vector<LoadedImage> UnitRecords::Images() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.images.Copy();
}

std::vector<std::string> UnitRecords::RelayViolations() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.analogue.Violations();
}

} // namespace kalvio::simulator
