#include "preprocessor/thread/WatchList.h"

#include "preprocessor/SettlingWatch.h"

namespace kalvio::preprocessor {

void WatchList::Add(CSettlingWatch* watch) {
    m_watches.push_back(watch);
    watch->SetPlace(m_watches.size() - 1);
}

void WatchList::Remove(CSettlingWatch* watch) {
    const std::size_t place = watch->Place();
    if (place < m_watches.size() && m_watches[place] == watch) {
        m_watches[place] = nullptr;
        ++m_gaps;
        CloseGaps();
    }
}

void WatchList::CloseGaps() {
    if (m_walks != 0 || 2 * m_gaps <= m_watches.size()) {
        return;
    }
    std::erase(m_watches, nullptr);
    for (std::size_t place = 0; place < m_watches.size(); ++place) {
        m_watches[place]->SetPlace(place);
    }
    m_gaps = 0;
}

} // namespace kalvio::preprocessor
