#pragma once

// The faults that a virtual unit is told to show. Any thread.

#include "simulator/Faults.h"

#include <memory>

namespace kalvio::simulator {

struct UnitState;

class UnitFaults {
public:
    explicit UnitFaults(std::shared_ptr<UnitState> state);

    void AddFault(const Fault& fault);
    // Also plugs a disconnected unit in again.
    void ClearFaults();
    // Events that showed a fault, since construction.
    [[nodiscard]] std::uint32_t FaultsShown() const;

private:
    std::shared_ptr<UnitState> m_state;
};

} // namespace kalvio::simulator
