#pragma once

// The pre-processor: one background thread that supervises measurement results while the analyser runs.

#include "hardware/PreProcessorNotifications.h"
#include "platform/Export.h"
#include "platform/Sync.h"

#include <cstdint>

// What is called under the pre-processor lock, and what is touched under it.
#define KALVIO_NEEDS_PREPROCESSOR_LOCK KALVIO_REQUIRES(kalvio::preprocessor::Lock())
#define KALVIO_UNDER_PREPROCESSOR_LOCK KALVIO_GUARDED_BY(kalvio::preprocessor::Lock())

class CSettlingFilter;
class CSettlingWatch;

namespace NPreProcessor {

// Notifications copy nothing and watches are not evaluated until Resume. Any thread; takes the
// pre-processor lock and waits until no notification is half-way through.
KALVIO_API void Halt();
KALVIO_API void Resume();

// The thread function; the argument is not used. Returns 0 after the thread was stopped, and at once in any
// thread but the pre-processor's own.
KALVIO_API unsigned PreProcThreadProc(void* argument);

} // namespace NPreProcessor

namespace kalvio::preprocessor {

inline constexpr std::uint32_t kSingleListTimeoutMs = 8000;
inline constexpr std::uint32_t kBlockListTimeoutMs = 2000;
inline constexpr std::uint32_t kStopWaitMs = 2000;

enum class ListIndex : int { Single = 0, Block = 1, TimedOut = -1 };

// The pre-processor lock: recursive, first in the lock order.
KALVIO_API CMutex& Lock();

// Any thread. True when the thread runs or none is wanted (SetThreaded); false when it could not be made.
bool StartThread();
// Clears the run flag, wakes the thread and waits up to 2000 ms for it; then it is abandoned, and leaves when
// it wakes. Call without the lock, not even once: the thread may be waiting for it.
void StopThread();
void HaltNotifications() KALVIO_NEEDS_PREPROCESSOR_LOCK;
void ResumeNotifications() KALVIO_NEEDS_PREPROCESSOR_LOCK;
[[nodiscard]] bool AreNotificationsHalted() KALVIO_NEEDS_PREPROCESSOR_LOCK;
void AddWatch(CSettlingWatch* watch) KALVIO_NEEDS_PREPROCESSOR_LOCK;
// Nothing when it is not in the list.
void RemoveWatch(CSettlingWatch* watch) KALVIO_NEEDS_PREPROCESSOR_LOCK;
// Counts one more user of the filter; null when it could not be made.
CSettlingFilter* FindOrCreateFilter(int resultID, int detector) KALVIO_NEEDS_PREPROCESSOR_LOCK;
// While halted: the last release deletes it.
void ReleaseFilter(CSettlingFilter* filter) KALVIO_NEEDS_PREPROCESSOR_LOCK;
// The data time-out of the list that holds results of this id.
[[nodiscard]] std::uint32_t DataTimeout(int resultID);
// The tick that the thread last read.
[[nodiscard]] std::uint32_t LastTick() KALVIO_NEEDS_PREPROCESSOR_LOCK;

// One wake-up of the thread: takes the lock, steps the filters of the list that was signalled (none after a
// time-out) and evaluates every watch. Tests call it in place of the thread.
KALVIO_API void WakeUp(ListIndex list);

// Takes the event of a list that is signalled (single first) and runs its wake-up, without waiting; false
// when neither is signalled.
KALVIO_API bool RunPendingWakeUp();

// Whether starting a watch starts the thread. Off, wake-ups come from RunPendingWakeUp and WakeUp alone;
// for programs and tests that drive the pre-processor themselves. On by default. Set while no watch runs,
// without the lock: turning it off stops the thread.
KALVIO_API void SetThreaded(bool on);
[[nodiscard]] KALVIO_API bool IsThreadRunning(); // any thread

} // namespace kalvio::preprocessor
