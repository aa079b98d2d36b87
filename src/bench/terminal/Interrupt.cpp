#include "bench/terminal/Interrupt.h"

#include <atomic>
#include <csignal>

namespace kalvio::bench {

namespace {

// A signal handler has nowhere else to write.
std::atomic<bool> interrupted{false};
std::atomic<bool> readerGone{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void OnSignal(int number) {
    interrupted.store(true);
    static_cast<void>(std::signal(number, SIG_DFL));
}

void OnReaderGone(int) {
    readerGone.store(true);
}

} // namespace

void CatchInterrupt() {
    for (const int number : {SIGINT, SIGTERM})
        static_cast<void>(std::signal(number, OnSignal));
#ifdef SIGHUP
    static_cast<void>(std::signal(SIGHUP, OnSignal));
#endif
#ifdef SIGPIPE
    // A reader that goes away shows as a stream that fails, and the unit is shut down as always.
    static_cast<void>(std::signal(SIGPIPE, OnReaderGone));
#endif
}

bool IsInterrupted() {
    return interrupted.load();
}

bool IsReaderGone() {
    return readerGone.load();
}

void SetInterrupted(bool on) {
    interrupted.store(on);
}

} // namespace kalvio::bench
