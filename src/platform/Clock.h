#pragma once

// All time and all waiting of the library go through one replaceable clock.

#include "platform/Export.h"

#include <atomic>
#include <cstdint>

namespace kalvio {

struct LocalTime {
    std::uint16_t year = 0;
    std::uint16_t month = 0; // 1 to 12
    std::uint16_t day = 0;
    std::uint16_t hour = 0;
    std::uint16_t minute = 0;
    std::uint16_t second = 0;
};

inline constexpr std::uint32_t kInfinite = 0xFFFFFFFF;

// Every operation may be called from any thread.
class KALVIO_API Clock {
public:
    virtual ~Clock() = default;

    // Milliseconds since some start, unsigned 32 bits; wraps after 49.7 days.
    virtual std::uint32_t TickCount() = 0;

    // Lets at least that many milliseconds pass. 0 gives the processor away once.
    virtual void Sleep(std::uint32_t milliseconds) = 0;

    // One turn of a busy wait: called between two looks at TickCount. A clock that only moves when told
    // moves here, so that no busy wait can hang.
    virtual void BusyTurn() = 0;

    virtual LocalTime Local() = 0;

    // Blocks while `word` still holds `seen`, until woken through WakeWaiters or until about
    // `milliseconds` of this clock have passed (kInfinite: no limit). May return early.
    virtual void Block(std::atomic<std::uint32_t>& word, std::uint32_t seen, std::uint32_t milliseconds) = 0;
};

// The clock in force: the system clock unless another was installed.
[[nodiscard]] KALVIO_API Clock& CurrentClock();

// Installs a clock, or the system clock again with null; returns the one before (null for the system's).
// The clock must outlive its installation. Install while no other thread uses the library.
KALVIO_API Clock* InstallClock(Clock* clock);

// The system's own clock, whichever is installed: monotonic time, real sleeping.
[[nodiscard]] KALVIO_API Clock& SystemClock();

// Wakes every thread that blocks on the word. The caller has changed the word before.
KALVIO_API void WakeWaiters(std::atomic<std::uint32_t>& word);

// Wakes every thread that waits for an event or a message, so that it looks at the clock again. A clock
// that moves only when told calls this after it moved.
KALVIO_API void WakeAllWaiters();

[[nodiscard]] KALVIO_API std::uint32_t GetTickCount();
KALVIO_API void Sleep(std::uint32_t milliseconds);
[[nodiscard]] KALVIO_API LocalTime GetLocalTime();

// Waits, looking at the tick again and again, until `milliseconds` have passed since the tick `since`.
KALVIO_API void BusyWaitSince(std::uint32_t since, std::uint32_t milliseconds);

} // namespace kalvio
