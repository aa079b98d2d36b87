#include "host/UpdaterManager.h"

#include <algorithm>

void CUpdaterManager::Link(CView* view, std::span<const int> controls) {
    for (const int control : controls) {
        m_links.emplace(control, view);
    }
}

void CUpdaterManager::Unlink(CView* view) {
    std::erase_if(m_links, [view](const auto& link) { return link.second == view; });
}

std::size_t CUpdaterManager::Count(const CView* view) const {
    return static_cast<std::size_t>(
        std::ranges::count_if(m_links, [view](const auto& link) { return link.second == view; }));
}

std::vector<CView*> CUpdaterManager::ViewsOf(int control) const {
    std::vector<CView*> views;
    const auto [first, last] = m_links.equal_range(control);
    std::transform(first, last, std::back_inserter(views), [](const auto& link) { return link.second; });
    return views;
}
