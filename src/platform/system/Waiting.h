#pragma once

// The one way to wait: for a condition that some thread makes true and then announces under the address of
// what holds the condition. Events, message queues and thread ends wait here, each woken for its own address
// only, so that threads that wait for something else sleep on.
//
// Addresses are hashed to a table of words; nothing is read through an address, so what it belonged to may be
// gone. Who waits for one address sleeps on that address's word; who waits for several notes its interest
// with each of them and sleeps on one word that all such waiters share.
//
// Why no wake-up is lost. A waiter (1) counts itself in, (2) reads the word, (3) looks at its condition and
// at the clock, (4) blocks while the word still holds what it read. A setter (a) makes the condition true,
// (b) reads the count, (c) when it is not zero raises the word and wakes. All are sequentially consistent.
// - If (b) read zero, (1) came after it, so (3) sees what (a) did.
// - If (3) missed what (a) did, (a) came after (3), so (1) came before (b), and (c) after (2): the word
// differs
//   from what was read, and (4) does not block, or is woken when (c) falls between the look of (4) and its
//   sleep, which the system makes one step.
// - A setter that finds an event set already leaves (b) and (c) to the setter that set it, which has them
// still
//   to come or done; either way they come after that setter's (a), and the points above hold for it.
// A word wraps after 2^32 changes; they do not fit between (2) and (4). Two addresses that share a word wake
// each other's waiters, who look and sleep again.

#include "platform/Clock.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

namespace kalvio {

// Wakes who waits for this address. The condition has been made true before. Any thread; takes no lock.
void Announce(const void* address);

// Counts the calling thread among the waiters of the addresses for its lifetime.
class WaiterCount {
public:
    explicit WaiterCount(std::span<const void* const> addresses);
    ~WaiterCount();
    WaiterCount(const WaiterCount&) = delete;
    WaiterCount& operator=(const WaiterCount&) = delete;

    [[nodiscard]] std::atomic<std::uint32_t>& Word() const { return m_word; }

private:
    const std::span<const void* const> m_addresses;
    std::atomic<std::uint32_t>& m_word;
};

// Waits until `ready` returns true; false after `milliseconds` of the clock in force (kInfinite: never).
// `ready` runs in the calling thread, at once and after every announcement. `nextLook` says after how many
// milliseconds at most `ready` wants to be asked again even without one.
template<typename Ready, typename NextLook>
bool WaitUntil(std::span<const void* const> addresses, Ready ready, std::uint32_t milliseconds,
               NextLook nextLook) {
    const WaiterCount counted(addresses);
    Clock& clock = CurrentClock();
    const std::uint32_t start = clock.TickCount();
    for (;;) {
        const std::uint32_t seen = counted.Word().load();
        if (ready()) {
            return true;
        }
        std::uint32_t left = kInfinite;
        if (milliseconds != kInfinite) {
            const std::uint32_t elapsed = clock.TickCount() - start;
            if (elapsed >= milliseconds) {
                return false;
            }
            left = milliseconds - elapsed;
        }
        clock.Block(counted.Word(), seen, std::min<std::uint32_t>(left, nextLook()));
    }
}

template<typename Ready>
bool WaitUntil(const void* address, Ready ready, std::uint32_t milliseconds) {
    return WaitUntil(std::span(&address, 1), ready, milliseconds, [] { return kInfinite; });
}

} // namespace kalvio
