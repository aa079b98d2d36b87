#pragma once

// Which views show which controls.

#include "platform/Export.h"

#include <cstddef>
#include <map>
#include <span>
#include <vector>

class CView;

// A view links the controls that it shows when it comes up and unlinks them before it goes. User-interface
// thread.
class KALVIO_API CUpdaterManager {
public:
    void Link(CView* view, std::span<const int> controls); // adds to what the view has linked
    void Unlink(CView* view);                              // all of the view's
    [[nodiscard]] std::size_t Count(const CView* view) const;
    // The views that show a control, in the order that they were linked.
    [[nodiscard]] std::vector<CView*> ViewsOf(int control) const;

private:
    std::multimap<int, CView*> m_links;
};
