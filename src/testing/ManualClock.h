#pragma once

// A clock that moves only when told: by Advance, by a sleep, or by a turn of a busy wait.

#include "platform/Clock.h"

#include <atomic>

namespace kalvio::test {

// Installs itself for its lifetime. TickCount starts at `start`. Any thread.
class ManualClock final : public Clock {
public:
    explicit ManualClock(std::uint32_t start = 1000);
    ~ManualClock() override;
    ManualClock(const ManualClock&) = delete;
    ManualClock& operator=(const ManualClock&) = delete;

    std::uint32_t TickCount() override { return m_tick.load(); }
    void Sleep(std::uint32_t milliseconds) override; // advances; Sleep(0) yields
    void BusyTurn() override { Advance(1); }
    LocalTime Local() override { return m_local; }
    void Block(std::atomic<std::uint32_t>& word, std::uint32_t seen, std::uint32_t milliseconds) override;

    void Advance(std::uint32_t milliseconds); // wakes whoever waits
    void SetTick(std::uint32_t tick);
    void SetLocal(const LocalTime& local) { m_local = local; }
    [[nodiscard]] std::uint32_t SleptMs() const { return m_slept.load(); } // all sleeps together

private:
    std::atomic<std::uint32_t> m_tick;
    std::atomic<std::uint32_t> m_slept{0};
    LocalTime m_local{2026, 3, 14, 15, 9, 26}; // set before other threads start
    Clock* m_previous;
};

} // namespace kalvio::test
