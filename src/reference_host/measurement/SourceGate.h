#pragma once

// Keeps results that belong to an old source value from being published after the source was written.

#include "platform/Sync.h"

#include <cstdint>

namespace kalvio::reference_host {

// The writer brackets its write to the unit with Close and Open; the reader notes the pass before it looks at
// the unit and publishes only if no write began or ended since. Any thread. The lock is held while results
// are published; below it stands the results lock alone.
class SourceGate {
public:
    void Close() { Step(); }
    void Open() { Step(); }

    // What the reader hands to Publish.
    [[nodiscard]] std::uint64_t Pass() {
        const LockGuard guard(m_lock);
        return m_steps;
    }

    // Calls `publish` and answers true when the results still belong to the present source value.
    template<typename Publish>
    bool PublishIfCurrent(std::uint64_t pass, Publish publish) {
        const LockGuard guard(m_lock);
        if (m_steps != pass || IsClosed()) {
            return false;
        }
        publish();
        return true;
    }

private:
    void Step() {
        const LockGuard guard(m_lock);
        ++m_steps;
    }
    [[nodiscard]] bool IsClosed() const KALVIO_REQUIRES(m_lock) { return m_steps % 2 != 0; }

    Mutex m_lock;
    std::uint64_t m_steps KALVIO_GUARDED_BY(m_lock) = 0; // odd while a write is under way
};

} // namespace kalvio::reference_host
