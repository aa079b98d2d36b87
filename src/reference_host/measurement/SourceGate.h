#pragma once

// Keeps results that belong to an old source value from being published after the source was written.

#include <cstdint>
#include <mutex>

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
        const std::scoped_lock guard(m_lock);
        return m_steps;
    }

    // Calls `publish` and answers true when the results still belong to the present source value.
    template<typename Publish>
    bool PublishIfCurrent(std::uint64_t pass, Publish publish) {
        const std::scoped_lock guard(m_lock);
        if (m_steps != pass || IsClosed())
            return false;
        publish();
        return true;
    }

private:
    void Step() {
        const std::scoped_lock guard(m_lock);
        ++m_steps;
    }
    [[nodiscard]] bool IsClosed() const { return m_steps % 2 != 0; }

    std::mutex m_lock;
    std::uint64_t m_steps = 0; // guarded by m_lock; odd while a write is under way
};

} // namespace kalvio::reference_host
