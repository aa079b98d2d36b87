#pragma once

// The filters of one kind of result, and the event that says that one of them holds a new value.
//
// Notifiers walk the filters without a lock. A filter enters the table in force in place: first its place in
// the order, then its bucket, each one atomic store, so that a notifier sees it whole or not at all. A full
// table is replaced by one of twice the size; the old one is kept until no notifier is inside the
// notification gate. Filters are removed behind the closed gate, when nobody walks at all.

#include "platform/Sync.h"
#include "preprocessor/PreProcessor.h"
#include "preprocessor/SettlingFilter.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace kalvio {

class SignalList {
public:
    // The time in milliseconds after which a result of this list that brought no value counts as silent.
    explicit SignalList(std::uint32_t dataTimeout);
    SignalList(const SignalList&) = delete;
    SignalList& operator=(const SignalList&) = delete;

    [[nodiscard]] std::uint32_t DataTimeout() const { return m_dataTimeout; }
    CEvent& Event() { return m_event; }

    // --- Inside the notification gate: any thread, no lock, no allocation, no waiting ---
    void OfferTo(std::uint32_t key); // the filter of that key takes its live value
    void OfferToAll();               // every filter does; the event is set once

    // --- Under the pre-processor lock ---
    // Calls `visit(filter)` for every filter, in the order of their addition.
    template<typename Visit>
    void ForEach(Visit visit) const KALVIO_NEEDS_PREPROCESSOR_LOCK {
        const Table& table = *m_current.load();
        for (std::size_t place = 0; place < table.used.load(); ++place) {
            if (CSettlingFilter* filter = table.order[place].load(); filter != nullptr) {
                visit(*filter);
            }
        }
    }
    [[nodiscard]] CSettlingFilter* Find(std::uint32_t key) const KALVIO_NEEDS_PREPROCESSOR_LOCK; // or null
    // Throws std::bad_alloc, with nothing changed.
    CSettlingFilter* Append(std::unique_ptr<CSettlingFilter> filter) KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // A wake-up took the event and looked at no filter; nobody announces a value that is pending already, so
    // the event must be set again before the filters can be looked at.
    void NoteLostWakeUp() KALVIO_NEEDS_PREPROCESSOR_LOCK { m_lostWakeUp = true; }
    void MakeUpForLostWakeUp() KALVIO_NEEDS_PREPROCESSOR_LOCK;

    // --- Under the pre-processor lock, with no notifier inside the gate ---
    void FreeReplacedTables() KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // --- Likewise, and the gate closed ---
    // Deletes it; allocates nothing.
    void Remove(CSettlingFilter* filter) KALVIO_NEEDS_PREPROCESSOR_LOCK;

private:
    using Slot = std::atomic<CSettlingFilter*>;

    struct Table {
        explicit Table(std::size_t places); // a power of two
        [[nodiscard]] CSettlingFilter* Find(std::uint32_t key) const;
        void Enter(CSettlingFilter* filter) KALVIO_NEEDS_PREPROCESSOR_LOCK;
        void Erase(const CSettlingFilter* filter) KALVIO_NEEDS_PREPROCESSOR_LOCK;
        void CloseGaps() KALVIO_NEEDS_PREPROCESSOR_LOCK;
        [[nodiscard]] bool IsFull() const { return used.load() == order.size(); }
        [[nodiscard]] std::size_t BucketOf(std::uint32_t key) const;
        [[nodiscard]] std::size_t Wrapped(std::size_t bucket) const;

        std::vector<Slot> order;          // never resized; null: a filter that went
        std::vector<Slot> buckets;        // twice as many, by key; open addressing
        std::atomic<std::size_t> used{0}; // places of the order
        std::size_t gaps KALVIO_UNDER_PREPROCESSOR_LOCK = 0;
    };

    void Publish(std::unique_ptr<Table> table) KALVIO_NEEDS_PREPROCESSOR_LOCK;

    const std::uint32_t m_dataTimeout; // ms
    CEvent m_event;
    bool m_lostWakeUp KALVIO_UNDER_PREPROCESSOR_LOCK = false;
    std::vector<std::unique_ptr<Table>> m_tables KALVIO_UNDER_PREPROCESSOR_LOCK; // last: current
    std::atomic<Table*> m_current;
};

} // namespace kalvio
