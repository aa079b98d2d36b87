#include "platform/Sync.h"

#include "platform/system/Waiting.h"

void CEvent::SetEvent() {
    // Nothing of the event is touched after the exchange: a waiter may take it and destroy it at once. Its
    // address is only a name by then.
    if (!m_set.exchange(true)) {
        kalvio::Announce(this);
    }
}

bool CEvent::Wait(std::uint32_t milliseconds) {
    return kalvio::WaitUntil(
        this, [this] { return TryTake(); }, milliseconds);
}

int CMultiLock::Wait(std::uint32_t milliseconds) {
    int taken = kTimedOut;
    const auto takeLowest = [&] {
        const auto found =
            std::find_if(m_events.begin(), m_events.end(), [](CEvent* event) { return event->TryTake(); });
        if (found == m_events.end()) {
            return false;
        }
        taken = static_cast<int>(found - m_events.begin());
        return true;
    };
    const std::vector<const void*> addresses(m_events.begin(), m_events.end());
    kalvio::WaitUntil(addresses, takeLowest, milliseconds, [] { return kalvio::kInfinite; });
    return taken;
}
