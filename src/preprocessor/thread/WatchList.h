#pragma once

// The settling watches that exist, in the order of their creation.

#include "preprocessor/PreProcessor.h"

#include <cstddef>
#include <vector>

class CSettlingWatch;

namespace kalvio::preprocessor {

// Watches may come and go while the list is walked: one that comes
// is not visited, one that goes leaves a gap, so that none is passed over.
class WatchList {
public:
    void Add(CSettlingWatch* watch) KALVIO_NEEDS_PREPROCESSOR_LOCK;
    // Nothing when it is not in the list.
    void Remove(CSettlingWatch* watch) KALVIO_NEEDS_PREPROCESSOR_LOCK;

    template<typename Visit>
    void ForEach(Visit visit) KALVIO_NEEDS_PREPROCESSOR_LOCK {
        const std::size_t visited = m_watches.size();
        ++m_walks;
        for (std::size_t place = 0; place < visited; ++place) {
            if (m_watches[place] != nullptr) {
                visit(*m_watches[place]);
            }
        }
        --m_walks;
        CloseGaps();
    }

private:
    // When they are many and nobody walks.
    void CloseGaps() KALVIO_NEEDS_PREPROCESSOR_LOCK;

    std::vector<CSettlingWatch*> m_watches KALVIO_UNDER_PREPROCESSOR_LOCK; // null: a gap
    std::size_t m_gaps KALVIO_UNDER_PREPROCESSOR_LOCK = 0;
    int m_walks KALVIO_UNDER_PREPROCESSOR_LOCK = 0;
};

} // namespace kalvio::preprocessor
