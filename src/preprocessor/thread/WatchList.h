#pragma once

// The settling watches that exist, in the order of their creation.

#include <cstddef>
#include <vector>

class CSettlingWatch;

namespace kalvio::preprocessor {

// Under the pre-processor lock, all of it. Watches may come and go while the list is walked: one that comes
// is not visited, one that goes leaves a gap, so that none is passed over.
class WatchList {
public:
    void Add(CSettlingWatch* watch);
    void Remove(CSettlingWatch* watch); // nothing when it is not in the list

    template<typename Visit>
    void ForEach(Visit visit) {
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
    void CloseGaps(); // when they are many and nobody walks

    std::vector<CSettlingWatch*> m_watches; // null: a gap
    std::size_t m_gaps = 0;
    int m_walks = 0;
};

} // namespace kalvio::preprocessor
