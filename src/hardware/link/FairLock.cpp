#include "hardware/link/FairLock.h"

namespace kalvio {

constinit thread_local ThisThread thisThread;

bool FairLock::try_lock() {
    const void* const self = &thisThread;
    if (m_owner.load(std::memory_order_relaxed) != self) {
        if (m_queueFirst.load() || !TakeIfFree()) {
            return false;
        }
        m_owner.store(self, std::memory_order_relaxed);
    }
    ++m_depth;
    return true;
}

void FairLock::Queue() {
    WaitToBeFirst(m_drawn.fetch_add(1));
    WaitUntilFree();
    m_queueFirst.store(false);
    m_passes = 0;
    LetNextBeFirst();
}

// The word is read before the turn is looked at and changed after the turn was given: a waiter that misses
// its turn finds its word changed.
void FairLock::WaitToBeFirst(std::uint32_t ticket) {
    std::atomic<std::uint32_t>& word = m_words[ticket % kWords];
    for (;;) {
        const std::uint32_t seen = word.load();
        if (m_first.load() == ticket) {
            return;
        }
        word.wait(seen);
    }
}

void FairLock::LetNextBeFirst() {
    const std::uint32_t next = m_first.fetch_add(1) + 1;
    if (m_drawn.load() != next) {
        std::atomic<std::uint32_t>& word = m_words[next % kWords];
        word.fetch_add(1);
        word.notify_all();
    }
}

// Between reading the word and sleeping on it the lock is tried again with the wish to be woken announced: a
// release that did not see the wish came before that try, one that saw it has changed the word.
void FairLock::WaitUntilFree() {
    for (;;) {
        const std::uint32_t seen = m_releases.load();
        m_firstSleeps.store(true);
        if (TakeIfFree()) {
            break;
        }
        m_releases.wait(seen);
        if (TakeIfFree()) {
            break;
        }
        m_queueFirst.store(true);
    }
    m_firstSleeps.store(false);
}

void FairLock::WakeFirst() {
    if (m_firstSleeps.exchange(false)) {
        m_releases.fetch_add(1);
        m_releases.notify_one();
    }
}

} // namespace kalvio
