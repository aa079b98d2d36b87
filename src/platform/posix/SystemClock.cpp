#include "platform/Clock.h"
#include "platform/posix/Futex.h"

#include <chrono>
#include <ctime>
#include <sched.h>
#include <thread>

namespace kalvio {

namespace {

class MonotonicClock final : public Clock {
public:
    std::uint32_t TickCount() override;
    void Sleep(std::uint32_t milliseconds) override;
    void BusyTurn() override { sched_yield(); }
    LocalTime Local() override;
    void Block(std::atomic<std::uint32_t>& word, std::uint32_t seen, std::uint32_t milliseconds) override {
        FutexWait(word, seen, milliseconds);
    }
};

std::uint32_t MonotonicClock::TickCount() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const auto milliseconds =
        static_cast<std::uint64_t>(now.tv_sec) * 1000 + static_cast<std::uint64_t>(now.tv_nsec) / 1'000'000;
    return static_cast<std::uint32_t>(milliseconds);
}

void MonotonicClock::Sleep(std::uint32_t milliseconds) {
    if (milliseconds == 0) {
        sched_yield();
    } else {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }
}

LocalTime MonotonicClock::Local() {
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    const auto narrow = [](int value) { return static_cast<std::uint16_t>(value); };
    return {narrow(local.tm_year + 1900), narrow(local.tm_mon + 1), narrow(local.tm_mday),
            narrow(local.tm_hour),        narrow(local.tm_min),     narrow(local.tm_sec)};
}

} // namespace

Clock& SystemClock() {
    // Never destroyed: a thread that was abandoned may still wait on it while the process ends.
    static Clock& clock = *new MonotonicClock;
    return clock;
}

void WakeWaiters(std::atomic<std::uint32_t>& word) {
    FutexWakeAll(word);
}

} // namespace kalvio
