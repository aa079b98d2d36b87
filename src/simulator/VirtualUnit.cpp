#include "simulator/VirtualUnit.h"

#include "simulator/UnitState.h"

#include <mutex>
#include <utility>

namespace kalvio::simulator {

VirtualUnit::VirtualUnit(UnitClock clock, UnitOptions options)
    : VirtualUnit(std::make_shared<UnitState>(std::move(clock), std::move(options))) {}

VirtualUnit::VirtualUnit(const std::shared_ptr<UnitState>& state)
    : UnitMemories(state),
      UnitRecords(state),
      UnitFaults(state),
      UnitSignals(state),
      UnitPeripherals(state),
      m_state(state) {}

VirtualUnit::~VirtualUnit() = default;

DeviceHandle VirtualUnit::Open(std::string_view name) {
    const std::scoped_lock guard(m_state->lock);
    if (!m_state->CanOpen(name)) {
        return DeviceHandle::None;
    }
    m_state->handle = DeviceHandle{++m_state->lastHandle};
    return m_state->handle;
}

DriverReply VirtualUnit::Control(DeviceHandle device, const DriverRequest& request) {
    const std::uint32_t tick = m_state->clock.now();
    Transfer transfer;
    {
        const std::scoped_lock guard(m_state->lock);
        transfer = m_state->Handle(device, request, tick);
    }
    if (transfer.delayMs != 0) {
        m_state->clock.sleep(transfer.delayMs);
    }
    return {transfer.ok, transfer.bytes, transfer.error};
}

void VirtualUnit::Close(DeviceHandle device) {
    const std::scoped_lock guard(m_state->lock);
    if (device == DeviceHandle::None || device != m_state->handle) {
        return;
    }
    m_state->handle = DeviceHandle::None;
    m_state->endpoint.Reset();
}

void VirtualUnit::SetPresent(bool present) {
    const std::scoped_lock guard(m_state->lock);
    m_state->options.present = present;
}

void VirtualUnit::SetReleaseNumber(std::uint16_t release) {
    const std::scoped_lock guard(m_state->lock);
    m_state->port.SetReleaseNumber(release);
}

bool VirtualUnit::IsOpen() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->handle != DeviceHandle::None;
}

bool VirtualUnit::IsInitialised() const {
    const std::scoped_lock guard(m_state->lock);
    return m_state->boards.initialised;
}

} // namespace kalvio::simulator
