#include "simulator/FaultPlan.h"

namespace kalvio::simulator {

namespace {

bool Lasts(const Fault& fault) {
    return fault.repeat == 0 || fault.kind == FaultKind::Disconnect || fault.kind == FaultKind::WriteProtect;
}

bool Shows(const Fault& fault, std::uint32_t seen) {
    return seen >= fault.occurrence && (Lasts(fault) || seen - fault.occurrence < fault.repeat);
}

} // namespace

void FaultPlan::Add(const Fault& fault) {
    m_entries.push_back({fault, 0});
}

void FaultPlan::Clear() {
    m_entries.clear();
}

std::optional<Fault> FaultPlan::Strike(FaultKind kind, std::uint32_t command) {
    std::optional<Fault> shown;
    for (Entry& entry : m_entries) {
        if (entry.fault.kind != kind || (entry.fault.command != 0 && entry.fault.command != command)) {
            continue;
        }
        ++entry.seen;
        if (!shown && Shows(entry.fault, entry.seen)) {
            shown = entry.fault;
        }
    }
    m_shown += shown ? 1U : 0U;
    return shown;
}

bool FaultPlan::HasBegun(FaultKind kind) const {
    for (const Entry& entry : m_entries) {
        if (entry.fault.kind == kind && Shows(entry.fault, entry.seen)) {
            return true;
        }
    }
    return false;
}

} // namespace kalvio::simulator
