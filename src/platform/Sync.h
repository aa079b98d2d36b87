#pragma once

// Locks and events.

#include "platform/Clock.h"
#include "platform/Export.h"
#include "platform/ThreadAnnotations.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <span>
#include <vector>

// A lock that its owner may take again; it must be released as often. Any thread.
class KALVIO_API KALVIO_CAPABILITY("lock") CCriticalSection {
public:
    void Lock() KALVIO_ACQUIRE() { m_mutex.lock(); }
    void Unlock() KALVIO_RELEASE() { m_mutex.unlock(); }
    // The names that the standard's guards ask for.
    void lock() KALVIO_ACQUIRE() { m_mutex.lock(); }
    bool try_lock() KALVIO_TRY_ACQUIRE(true) { return m_mutex.try_lock(); }
    void unlock() KALVIO_RELEASE() { m_mutex.unlock(); }

private:
    std::recursive_mutex m_mutex;
};

// The same, under the name that the pre-processor uses.
class KALVIO_API KALVIO_CAPABILITY("lock") CMutex : public CCriticalSection {};

namespace kalvio {

// A plain lock that its owner must not take again. Any thread.
class KALVIO_CAPABILITY("lock") Mutex {
public:
    void lock() KALVIO_ACQUIRE() { m_mutex.lock(); }
    bool try_lock() KALVIO_TRY_ACQUIRE(true) { return m_mutex.try_lock(); }
    void unlock() KALVIO_RELEASE() { m_mutex.unlock(); }

private:
    std::mutex m_mutex;
};

// Holds a lock for its lifetime. The standard's guards do the same, but compilers cannot follow those when
// they check which lock guards what.
template<typename Lockable>
class KALVIO_SCOPED_CAPABILITY LockGuard {
public:
    explicit LockGuard(Lockable& lock) KALVIO_ACQUIRE(lock) : m_lock(lock) { m_lock.lock(); }
    ~LockGuard() KALVIO_RELEASE() { m_lock.unlock(); }
    LockGuard(const LockGuard&) = delete;
    LockGuard& operator=(const LockGuard&) = delete;

private:
    Lockable& m_lock;
};

} // namespace kalvio

// An auto-reset event: a wait that finds it set clears it. Any thread.
class KALVIO_API CEvent {
public:
    // Sets the event. Takes no lock, allocates nothing, never waits.
    void SetEvent();
    void ResetEvent() { m_set.store(false); }
    // Takes the event without waiting: true when it was set (and is clear now).
    bool TryTake() { return m_set.exchange(false); }
    [[nodiscard]] bool IsSet() const { return m_set.load(); }
    // Waits until the event is set and takes it; false after `milliseconds` of the clock in force.
    bool Wait(std::uint32_t milliseconds = kalvio::kInfinite);

private:
    std::atomic<bool> m_set{false};
};

// Waits for any of several events.
class KALVIO_API CMultiLock {
public:
    static constexpr int kTimedOut = -1;

    explicit CMultiLock(std::vector<CEvent*> events) : m_events(std::move(events)) {}

    // Waits until one of the events is set, takes only that one and returns its index (the lowest when
    // several are set), or kTimedOut after `milliseconds` of the clock in force.
    int Wait(std::uint32_t milliseconds = kalvio::kInfinite);

private:
    std::vector<CEvent*> m_events;
};
