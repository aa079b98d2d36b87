#include "platform/Clock.h"

namespace kalvio {

namespace {

std::atomic<Clock*> g_installed{nullptr};

} // namespace

Clock& CurrentClock() {
    Clock* installed = g_installed.load();
    return installed != nullptr ? *installed : SystemClock();
}

Clock* InstallClock(Clock* clock) {
    return g_installed.exchange(clock);
}

std::uint32_t GetTickCount() {
    return CurrentClock().TickCount();
}

void Sleep(std::uint32_t milliseconds) {
    CurrentClock().Sleep(milliseconds);
}

LocalTime GetLocalTime() {
    return CurrentClock().Local();
}

void BusyWaitSince(std::uint32_t since, std::uint32_t milliseconds) {
    Clock& clock = CurrentClock();
    while (clock.TickCount() - since < milliseconds) {
        clock.BusyTurn();
    }
}

} // namespace kalvio
