#include "bench/terminal/Interrupt.h"

#include <atomic>
#include <csignal>

namespace kalvio::bench {

namespace {

std::atomic<bool> interrupted{false}; // a signal handler has nowhere else to write
static_assert(std::atomic<bool>::is_always_lock_free);

void OnSignal(int number) {
    interrupted.store(true);
    static_cast<void>(std::signal(number, SIG_DFL));
}

} // namespace

void CatchInterrupt() {
    for (const int number : {SIGINT, SIGTERM})
        static_cast<void>(std::signal(number, OnSignal));
#ifdef SIGPIPE
    // A reader that goes away shows as a stream that fails, and the unit is shut down as always.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
#endif
}

bool IsInterrupted() {
    return interrupted.load();
}

void SetInterrupted(bool on) {
    interrupted.store(on);
}

} // namespace kalvio::bench
