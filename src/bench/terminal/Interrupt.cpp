#include "bench/terminal/Interrupt.h"

#include <atomic>
#include <csignal>

namespace kalvio::bench {

namespace {

// A signal handler has nowhere else to write.
std::atomic<bool> interrupted{false};
std::atomic<bool> terminated{false};
std::atomic<bool> readerGone{false};
static_assert(std::atomic<bool>::is_always_lock_free);

void OnInterrupt(int number) {
    if (!interrupted.exchange(true)) {
        return;
    }
    static_cast<void>(std::signal(number, SIG_DFL));
    static_cast<void>(std::raise(number));
}

void OnTerminate(int) {
    terminated.store(true);
}

void OnReaderGone(int) {
    readerGone.store(true);
}

} // namespace

void CatchInterrupt() {
    static_cast<void>(std::signal(SIGINT, OnInterrupt));
    static_cast<void>(std::signal(SIGTERM, OnTerminate));
#ifdef SIGHUP
    static_cast<void>(std::signal(SIGHUP, OnTerminate));
#endif
#ifdef SIGPIPE
    // A reader that goes away shows as a stream that fails, and the unit is shut down as always.
    static_cast<void>(std::signal(SIGPIPE, OnReaderGone));
#endif
}

bool IsInterrupted() {
    return interrupted.load() || terminated.load();
}

bool IsTerminated() {
    return terminated.load();
}

bool IsReaderGone() {
    return readerGone.load();
}

void SetInterrupted(bool on) {
    interrupted.store(on);
}

} // namespace kalvio::bench
