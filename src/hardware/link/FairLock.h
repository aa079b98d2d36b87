#pragma once

// A lock that leaves none of its callers behind.

#include "hardware/link/ThisThread.h"
#include "platform/ThreadAnnotations.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace kalvio {

// Recursive. Callers that have to wait queue in the order in which they came. A caller that comes while the
// lock is free may take it past the queue, which spares a change of threads for every use; but once the first
// of the queue was woken and found the lock taken again, or was passed kMostPasses times, nobody passes it
// any more. Any thread.
class KALVIO_CAPABILITY("mutex") FairLock {
public:
    void lock() KALVIO_ACQUIRE() {
        const void* const self = &thisThread;
        if (m_owner.load(std::memory_order_relaxed) == self) {
            ++m_depth;
            return;
        }
        if (m_queueFirst.load() || !TakeIfFree()) {
            Queue();
        } else if (Waiting() != 0 && ++m_passes == kMostPasses) {
            m_queueFirst.store(true);
        }
        m_owner.store(self, std::memory_order_relaxed);
        m_depth = 1;
    }

    void unlock() KALVIO_RELEASE() {
        if (--m_depth != 0) {
            return;
        }
        m_owner.store(nullptr, std::memory_order_relaxed);
        m_held.exchange(false);
        if (m_firstSleeps.load()) {
            WakeFirst();
        }
    }

    bool try_lock() KALVIO_TRY_ACQUIRE(true);

    // How many callers wait for it now.
    [[nodiscard]] std::uint32_t Waiting() const { return m_drawn.load() - m_first.load(); }

private:
    static constexpr std::size_t kWords = 16;
    static constexpr int kMostPasses = 500;

    bool TakeIfFree() { return !m_held.load() && !m_held.exchange(true); }
    void Queue();
    void WaitToBeFirst(std::uint32_t ticket);
    void WaitUntilFree();
    void LetNextBeFirst();
    void WakeFirst();

    std::atomic<bool> m_held{false};
    std::atomic<const void*> m_owner{nullptr}; // a thread finds its own mark here only if it put it here
    int m_depth = 0;                           // the owner's
    int m_passes = 0;                          // of the first of the queue; the owner's
    std::atomic<bool> m_queueFirst{false};     // nobody passes the queue
    std::atomic<bool> m_firstSleeps{false};    // the first of the queue wants to be woken
    std::atomic<std::uint32_t> m_releases{0};  // the word that the first of the queue sleeps on
    std::atomic<std::uint32_t> m_drawn{0};     // tickets drawn
    std::atomic<std::uint32_t> m_first{0};     // the ticket that is the first of the queue
    std::array<std::atomic<std::uint32_t>, kWords> m_words{}; // the others sleep here, by their tickets
};

} // namespace kalvio
