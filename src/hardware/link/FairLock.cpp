#include "hardware/link/FairLock.h"

namespace kalvio {

bool FairLock::try_lock() {
    const std::thread::id self = std::this_thread::get_id();
    if (m_owner.load(std::memory_order_relaxed) != self) {
        std::uint32_t ticket = m_serving.load();
        if (!m_next.compare_exchange_strong(ticket, ticket + 1)) {
            return false;
        }
        m_owner.store(self, std::memory_order_relaxed);
    }
    ++m_depth;
    return true;
}

std::uint32_t FairLock::Waiting() const {
    const std::uint32_t serving = m_serving.load();
    const std::uint32_t drawn = m_next.load() - serving;
    return drawn == 0 ? 0 : drawn - 1;
}

// The word is read before the turn is looked at and changed after the turn was given: a waiter that misses
// its turn finds its word changed.
void FairLock::WaitFor(std::uint32_t ticket) {
    std::atomic<std::uint32_t>& word = m_words[ticket % kWords];
    for (;;) {
        const std::uint32_t seen = word.load();
        if (m_serving.load() == ticket) {
            return;
        }
        word.wait(seen);
    }
}

void FairLock::Wake(std::uint32_t ticket) {
    std::atomic<std::uint32_t>& word = m_words[ticket % kWords];
    word.fetch_add(1);
    word.notify_all();
}

} // namespace kalvio
