#include "preprocessor/thread/SignalList.h"

#include <utility>

namespace kalvio {

namespace {

constexpr std::size_t kSmallestTable = 16;

} // namespace

SignalList::Table::Table(std::size_t places) : order(places), buckets(2 * places) {}

std::size_t SignalList::Table::BucketOf(std::uint32_t key) const {
    constexpr std::uint32_t kGoldenRatio = 0x9E3779B1;
    const std::uint32_t mixed = key * kGoldenRatio;
    return Wrapped(mixed ^ mixed >> 16U);
}

// The last bucket is followed by the first.
std::size_t SignalList::Table::Wrapped(std::size_t bucket) const {
    return bucket & (buckets.size() - 1);
}

// At most half of the buckets are taken, so every walk meets an empty one.
CSettlingFilter* SignalList::Table::Find(std::uint32_t key) const {
    for (std::size_t bucket = BucketOf(key);; bucket = Wrapped(bucket + 1)) {
        CSettlingFilter* filter = buckets[bucket].load();
        if (filter == nullptr || filter->Key() == key) {
            return filter;
        }
    }
}

void SignalList::Table::Enter(CSettlingFilter* filter) {
    const std::size_t place = used.load();
    filter->SetPlace(place);
    order[place].store(filter);
    used.store(place + 1);
    std::size_t bucket = BucketOf(filter->Key());
    while (buckets[bucket].load() != nullptr) {
        bucket = Wrapped(bucket + 1);
    }
    buckets[bucket].store(filter);
}

void SignalList::Table::Erase(const CSettlingFilter* filter) {
    order[filter->Place()].store(nullptr);
    ++gaps;
    std::size_t hole = BucketOf(filter->Key());
    while (buckets[hole].load() != filter) {
        hole = Wrapped(hole + 1);
    }
    buckets[hole].store(nullptr);
    // What follows in the run and may stand nearer to its own bucket moves up, so that no walk ends early.
    for (std::size_t next = Wrapped(hole + 1); buckets[next].load() != nullptr; next = Wrapped(next + 1)) {
        CSettlingFilter* moved = buckets[next].load();
        if (Wrapped(next - BucketOf(moved->Key())) >= Wrapped(next - hole)) {
            buckets[hole].store(moved);
            buckets[next].store(nullptr);
            hole = next;
        }
    }
    if (2 * gaps > used.load()) {
        CloseGaps();
    }
}

void SignalList::Table::CloseGaps() {
    std::size_t kept = 0;
    for (std::size_t place = 0; place < used.load(); ++place) {
        if (CSettlingFilter* filter = order[place].exchange(nullptr); filter != nullptr) {
            filter->SetPlace(kept);
            order[kept++].store(filter);
        }
    }
    used.store(kept);
    gaps = 0;
}

SignalList::SignalList(std::uint32_t dataTimeout) : m_dataTimeout(dataTimeout) {
    const LockGuard guard(preprocessor::Lock());
    Publish(std::make_unique<Table>(kSmallestTable));
}

void SignalList::OfferTo(std::uint32_t key) {
    CSettlingFilter* filter = m_current.load()->Find(key);
    if (filter != nullptr && filter->Offer()) {
        m_event.SetEvent();
    }
}

void SignalList::OfferToAll() {
    bool copied = false;
    const Table& table = *m_current.load();
    for (std::size_t place = 0; place < table.used.load(); ++place) {
        CSettlingFilter* filter = table.order[place].load();
        copied = (filter != nullptr && filter->Offer()) || copied;
    }
    if (copied) {
        m_event.SetEvent();
    }
}

CSettlingFilter* SignalList::Find(std::uint32_t key) const {
    return m_current.load()->Find(key);
}

CSettlingFilter* SignalList::Append(std::unique_ptr<CSettlingFilter> filter) {
    if (m_current.load()->IsFull()) {
        auto larger = std::make_unique<Table>(2 * m_current.load()->order.size());
        ForEach([&larger](CSettlingFilter& each) KALVIO_NEEDS_PREPROCESSOR_LOCK { larger->Enter(&each); });
        Publish(std::move(larger));
    }
    m_current.load()->Enter(filter.get());
    return filter.release();
}

void SignalList::MakeUpForLostWakeUp() {
    if (std::exchange(m_lostWakeUp, false)) {
        m_event.SetEvent();
    }
}

void SignalList::Remove(CSettlingFilter* filter) {
    const std::unique_ptr<CSettlingFilter> removed(filter);
    FreeReplacedTables();
    m_current.load()->Erase(filter);
}

void SignalList::FreeReplacedTables() {
    m_tables.erase(m_tables.begin(), m_tables.end() - 1);
}

void SignalList::Publish(std::unique_ptr<Table> table) {
    m_tables.reserve(m_tables.size() + 1);
    m_current.store(table.get());
    m_tables.push_back(std::move(table));
}

} // namespace kalvio
