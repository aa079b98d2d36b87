#include "platform/Waiting.h"

namespace kalvio {

namespace {

// Plain atomics without a destructor, so that an abandoned thread may wait and wake until the process is
// gone.
constinit std::atomic<std::uint32_t> g_waitWord{0};
constinit std::atomic<std::uint32_t> g_waiters{0};

} // namespace

std::atomic<std::uint32_t>& WaitWord() {
    return g_waitWord;
}

WaiterCount::WaiterCount() {
    g_waiters.fetch_add(1);
}

WaiterCount::~WaiterCount() {
    g_waiters.fetch_sub(1);
}

void WakeAllWaiters() {
    g_waitWord.fetch_add(1);
    if (g_waiters.load() != 0) {
        WakeWaiters(g_waitWord);
    }
}

} // namespace kalvio
