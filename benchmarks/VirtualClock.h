#pragma once

// A clock for benchmarks: time passes only when told.

#include "platform/Clock.h"

#include <cstdint>

namespace kalvio::benchmarks {

// Installs itself for its lifetime. One thread.
class VirtualClock final : public Clock {
public:
    VirtualClock() : m_previous(InstallClock(this)) {}
    ~VirtualClock() override { InstallClock(m_previous); }
    VirtualClock(const VirtualClock&) = delete;
    VirtualClock& operator=(const VirtualClock&) = delete;

    std::uint32_t TickCount() override { return m_tick; }
    void Sleep(std::uint32_t milliseconds) override { m_tick += milliseconds; }
    void BusyTurn() override { ++m_tick; }
    LocalTime Local() override { return {}; }
    void Block(std::atomic<std::uint32_t>&, std::uint32_t, std::uint32_t milliseconds) override {
        m_tick += milliseconds;
    }
    void Advance(std::uint32_t milliseconds) { m_tick += milliseconds; }

private:
    std::uint32_t m_tick = 1000;
    Clock* m_previous;
};

} // namespace kalvio::benchmarks
