#include "platform/posix/Futex.h"

#include "platform/Clock.h"

#include <climits>
#include <ctime>
#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kalvio {

namespace {

static_assert(std::atomic<std::uint32_t>::is_always_lock_free);
static_assert(sizeof(std::atomic<std::uint32_t>) == sizeof(std::uint32_t));

} // namespace

void FutexWait(std::atomic<std::uint32_t>& word, std::uint32_t seen, std::uint32_t milliseconds) {
    timespec limit{};
    limit.tv_sec = static_cast<time_t>(milliseconds / 1000);
    limit.tv_nsec = static_cast<long>(milliseconds % 1000) * 1'000'000;
    // Every result (woken, changed, interrupted, timed out) sends the caller to look again.
    syscall(SYS_futex, &word, FUTEX_WAIT_PRIVATE, seen, milliseconds == kInfinite ? nullptr : &limit, nullptr,
            0);
}

void FutexWakeAll(std::atomic<std::uint32_t>& word) {
    syscall(SYS_futex, &word, FUTEX_WAKE_PRIVATE, INT_MAX, nullptr, nullptr, 0);
}

} // namespace kalvio
