#include "platform/Sync.h"

#include "platform/Waiting.h"

void CEvent::SetEvent() {
    // Nothing of the event is touched after the exchange: a waiter may take it and destroy it at once.
    if (!m_set.exchange(true)) {
        kalvio::WakeAllWaiters();
    }
}

bool CEvent::Wait(std::uint32_t milliseconds) {
    return kalvio::WaitUntil([this] { return TryTake(); }, milliseconds);
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
    kalvio::WaitUntil(takeLowest, milliseconds);
    return taken;
}
