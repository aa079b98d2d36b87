#pragma once

// The faults that are still to come: each counts the events of its kind and says when it shows.

#include "simulator/Faults.h"

#include <optional>
#include <vector>

namespace kalvio::simulator {

class FaultPlan {
public:
    void Add(const Fault& fault);
    void Clear();

    // Counts one event of a kind that belongs to `command`; gives the fault that this event shows, the
    // one added first when several do.
    std::optional<Fault> Strike(FaultKind kind, std::uint32_t command);

    // Whether a fault that lasts (Disconnect, WriteProtect) has begun.
    [[nodiscard]] bool HasBegun(FaultKind kind) const;

    // Events that showed a fault, since construction.
    [[nodiscard]] std::uint32_t Shown() const { return m_shown; }

private:
    struct Entry {
        Fault fault;
        std::uint32_t seen = 0;
    };
    std::vector<Entry> m_entries;
    std::uint32_t m_shown = 0;
};

} // namespace kalvio::simulator
