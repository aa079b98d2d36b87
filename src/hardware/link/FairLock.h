#pragma once

// A lock that callers get in the order in which they asked for it.

#include "platform/ThreadAnnotations.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>

namespace kalvio {

// Recursive. Each caller draws a ticket and is served in turn, so that none of many is left behind by others
// that come back at once. Each ticket has a word of its own to sleep on (tickets that lie kWords apart share
// one), so that only the next caller is woken. Any thread.
class KALVIO_CAPABILITY("mutex") FairLock {
public:
    void lock() KALVIO_ACQUIRE() {
        const std::thread::id self = std::this_thread::get_id();
        if (m_owner.load(std::memory_order_relaxed) == self) {
            ++m_depth;
            return;
        }
        const std::uint32_t ticket = m_next.fetch_add(1);
        if (m_serving.load() != ticket) {
            WaitFor(ticket);
        }
        m_owner.store(self, std::memory_order_relaxed);
        m_depth = 1;
    }

    void unlock() KALVIO_RELEASE() {
        if (--m_depth != 0) {
            return;
        }
        m_owner.store(std::thread::id(), std::memory_order_relaxed);
        const std::uint32_t next = m_serving.fetch_add(1) + 1;
        if (m_next.load() != next) {
            Wake(next);
        }
    }

    bool try_lock() KALVIO_TRY_ACQUIRE(true);

    // How many callers wait for it now.
    [[nodiscard]] std::uint32_t Waiting() const;

private:
    static constexpr std::size_t kWords = 16;

    void WaitFor(std::uint32_t ticket);
    void Wake(std::uint32_t ticket);

    std::atomic<std::uint32_t> m_next{0};    // the ticket that the next caller draws
    std::atomic<std::uint32_t> m_serving{0}; // the ticket whose turn it is
    std::atomic<std::thread::id> m_owner{};  // a caller finds its own id here only if it put it here
    int m_depth = 0;                         // the owner's
    std::array<std::atomic<std::uint32_t>, kWords> m_words{};
};

} // namespace kalvio
