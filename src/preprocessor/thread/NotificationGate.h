#pragma once

// Lets notifications in, or keeps them out and knows when the last one has left. This is what allows filters
// to be removed although notifiers walk the filter tables without a lock.
//
// Why nobody is inside a closed gate: a notifier (1) raises the count, (2) looks at the closed flag; who
// closes (a) sets the flag, (b) waits until the count is zero. All four are sequentially consistent. If (2)
// missed (a), then (1) came before (b) began to look, so (b) waits for this notifier to leave. If (2) saw it,
// the notifier touches nothing.

#include <atomic>
#include <cstdint>

namespace kalvio {

class NotificationGate {
public:
    // One notifier's way through the gate. Any thread; no lock, no waiting.
    class Passage {
    public:
        explicit Passage(NotificationGate& gate) : m_gate(gate) { m_gate.m_inside.fetch_add(1); }
        ~Passage() { m_gate.m_inside.fetch_sub(1); }
        Passage(const Passage&) = delete;
        Passage& operator=(const Passage&) = delete;

        [[nodiscard]] bool IsOpen() const { return !m_gate.IsClosed(); }

    private:
        NotificationGate& m_gate;
    };

    // Returns when no notifier is inside any more. Under the pre-processor lock, which no notifier takes.
    void Close();
    void Open() { m_closed.store(false); }
    // No notifier is inside at this moment; one that comes in later sees all that was published before.
    [[nodiscard]] bool IsEmpty() const { return m_inside.load() == 0; }
    [[nodiscard]] bool IsClosed() const { return m_closed.load(); } // any thread

private:
    std::atomic<std::uint32_t> m_inside{0}; // a count: several notifiers can be inside at once
    std::atomic<bool> m_closed{true};
};

} // namespace kalvio
