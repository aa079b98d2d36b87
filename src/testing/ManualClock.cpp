#include "testing/ManualClock.h"

namespace kalvio::test {

ManualClock::ManualClock(std::uint32_t start) : m_tick(start), m_previous(InstallClock(this)) {}

ManualClock::~ManualClock() {
    InstallClock(m_previous);
}

void ManualClock::Sleep(std::uint32_t milliseconds) {
    if (milliseconds != 0) {
        m_slept += milliseconds;
        Advance(milliseconds);
    }
    SystemClock().Sleep(0); // other threads get their turn, as in a real sleep
}

void ManualClock::Block(std::atomic<std::uint32_t>& word, std::uint32_t seen, std::uint32_t) {
    // This clock's time passes only through Advance, which changes the word.
    SystemClock().Block(word, seen, kInfinite);
}

void ManualClock::Advance(std::uint32_t milliseconds) {
    m_tick += milliseconds;
    WakeAllWaiters();
}

void ManualClock::SetTick(std::uint32_t tick) {
    m_tick = tick;
    WakeAllWaiters();
}

} // namespace kalvio::test
