#include "preprocessor/SignalList.h"

#include <algorithm>
#include <utility>

namespace kalvio {

SignalList::SignalList(std::uint32_t dataTimeout) : m_dataTimeout(dataTimeout) {
    Publish(std::make_unique<Table>());
}

CSettlingFilter* SignalList::Table::Find(std::uint32_t key) const {
    const auto found = std::find(keys.begin(), keys.end(), key);
    return found != keys.end() ? filters[static_cast<std::size_t>(found - keys.begin())] : nullptr;
}

void SignalList::OfferTo(std::uint32_t key) {
    CSettlingFilter* filter = m_current.load()->Find(key);
    if (filter != nullptr && filter->Offer()) {
        m_event.SetEvent();
    }
}

void SignalList::OfferToAll() {
    bool copied = false;
    for (CSettlingFilter* filter : m_current.load()->filters) {
        copied = filter->Offer() || copied;
    }
    if (copied) {
        m_event.SetEvent();
    }
}

std::span<CSettlingFilter* const> SignalList::Filters() const {
    return m_current.load()->filters;
}

CSettlingFilter* SignalList::Find(std::uint32_t key) const {
    return m_current.load()->Find(key);
}

CSettlingFilter* SignalList::Append(std::unique_ptr<CSettlingFilter> filter) {
    CSettlingFilter* const added = filter.get();
    auto table = std::make_unique<Table>(*m_current.load());
    table->keys.push_back(added->Key());
    table->filters.push_back(added);
    m_filters.reserve(m_filters.size() + 1);
    m_tables.reserve(m_tables.size() + 1);
    m_filters.push_back(std::move(filter));
    Publish(std::move(table));
    return added;
}

void SignalList::SignalPending() {
    const auto filters = Filters();
    if (std::any_of(filters.begin(), filters.end(),
                    [](const CSettlingFilter* filter) { return filter->HasPending(); })) {
        m_event.SetEvent();
    }
}

void SignalList::Remove(CSettlingFilter* filter) {
    FreeReplacedTables();
    Table& table = *m_tables.back();
    std::erase(table.keys, filter->Key());
    std::erase(table.filters, filter);
    std::erase_if(m_filters, [=](const auto& held) { return held.get() == filter; });
}

void SignalList::FreeReplacedTables() {
    m_tables.erase(m_tables.begin(), m_tables.end() - 1);
}

void SignalList::Publish(std::unique_ptr<Table> table) {
    m_tables.push_back(std::move(table));
    m_current.store(m_tables.back().get());
}

} // namespace kalvio
