#pragma once

// The filters of one kind of result, and the event that says that one of them holds a new value.
//
// Notifiers walk the filters without a lock. A table of filters that they can see is not changed: an addition
// publishes a longer copy, and a notifier that still walks the shorter one finds every filter that was there
// when it came. The replaced table is kept until the notification gate has been closed and found empty; only
// then is it certain that nobody walks it any more. Filters are removed behind the closed gate for the same
// reason.

#include "platform/Sync.h"
#include "preprocessor/SettlingFilter.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
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
    void OfferTo(std::uint32_t key); // the first filter of that key takes its live value
    void OfferToAll();               // every filter does; the event is set once

    // --- Under the pre-processor lock ---
    [[nodiscard]] std::span<CSettlingFilter* const> Filters() const;
    [[nodiscard]] CSettlingFilter* Find(std::uint32_t key) const; // or null
    // Throws std::bad_alloc, with nothing changed.
    CSettlingFilter* Append(std::unique_ptr<CSettlingFilter> filter);
    // Sets the event when a filter holds a value that nobody will be told of again.
    void SignalPending();

    // --- Under the pre-processor lock, with the notification gate closed ---
    void Remove(CSettlingFilter* filter); // deletes it; allocates nothing
    void FreeReplacedTables();

private:
    // Keys apart from the filters, so that a walk for one key stays within a few cache lines.
    struct Table {
        std::vector<std::uint32_t> keys;
        std::vector<CSettlingFilter*> filters;
        [[nodiscard]] CSettlingFilter* Find(std::uint32_t key) const;
    };

    void Publish(std::unique_ptr<Table> table);

    const std::uint32_t m_dataTimeout; // ms
    CEvent m_event;
    std::vector<std::unique_ptr<CSettlingFilter>> m_filters; // guarded by the pre-processor lock
    std::vector<std::unique_ptr<Table>> m_tables; // guarded by the pre-processor lock; last: current
    std::atomic<const Table*> m_current;
};

} // namespace kalvio
