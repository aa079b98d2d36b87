#pragma once

// The one way to wait: for a condition that some thread makes true and then announces through
// WakeAllWaiters. Events, message queues and thread ends all wait on one process-wide word.
//
// Why no wake-up is lost. A waiter (1) counts itself in, (2) reads the word, (3) looks at its condition and
// at the clock, (4) blocks while the word still holds what it read. A setter (a) makes the condition true,
// (b) raises the word, (c) reads the count and wakes when it is not zero. All are sequentially consistent.
// - If (3) missed what (a) did, (a) came after (3), so (b) came after (2): the word differs from what was
//   read, and (4) does not block, or is woken when (b) falls between the look of (4) and its sleep, which
//   the system makes one step.
// - If (c) read zero, (1) came after it, so (3) sees what (a) did.
// - A setter that finds an event set already leaves (b) and (c) to the setter that set it, which has them
//   still to come or done; either way they come after that setter's (a), and the first point holds for it.
// The word wraps after 2^32 changes; they do not fit between (2) and (4).

#include "platform/Clock.h"

#include <algorithm>

namespace kalvio {

// The process-wide word. Atomic; never destroyed.
std::atomic<std::uint32_t>& WaitWord();

// Counts the calling thread among the waiters for its lifetime.
class WaiterCount {
public:
    WaiterCount();
    ~WaiterCount();
    WaiterCount(const WaiterCount&) = delete;
    WaiterCount& operator=(const WaiterCount&) = delete;
};

// Waits until `ready` returns true; false after `milliseconds` of the clock in force (kInfinite: never).
// `ready` runs in the calling thread, at once and after every change. `nextLook` says after how many
// milliseconds at most `ready` wants to be asked again even without a change.
template<typename Ready, typename NextLook>
bool WaitUntil(Ready ready, std::uint32_t milliseconds, NextLook nextLook) {
    const WaiterCount counted;
    Clock& clock = CurrentClock();
    const std::uint32_t start = clock.TickCount();
    for (;;) {
        const std::uint32_t seen = WaitWord().load();
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
        clock.Block(WaitWord(), seen, std::min<std::uint32_t>(left, nextLook()));
    }
}

template<typename Ready>
bool WaitUntil(Ready ready, std::uint32_t milliseconds) {
    return WaitUntil(ready, milliseconds, [] { return kInfinite; });
}

} // namespace kalvio
