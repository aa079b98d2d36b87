#pragma once

// The windows that a document opened for panels of its own.

#include "host/Views.h"
#include "platform/Export.h"

#include <functional>
#include <memory>
#include <vector>

namespace kalvio {

// Keeps every window that it opened until it goes. User-interface thread.
class KALVIO_API PanelWindows {
public:
    using ViewFactory = std::function<std::unique_ptr<CView>()>;

    PanelWindows() = default;
    ~PanelWindows() = default;
    PanelWindows(const PanelWindows&) = delete;
    PanelWindows& operator=(const PanelWindows&) = delete;

    // Opens one more window with a view of the factory and a title from the string table, under the wait
    // cursor. Null when there is no factory, the factory makes no view or the host no window (it may also
    // throw an int, the string id of the reason); the user was told.
    CTypedFrameWnd* Open(const ViewFactory& factory, unsigned titleId);

private:
    struct Panel {
        std::unique_ptr<CTypedFrameWnd> frame;
        std::unique_ptr<CView> view; // goes first
    };

    CTypedFrameWnd* Create(const ViewFactory& factory, unsigned titleId);

    std::vector<Panel> m_panels;
};

} // namespace kalvio
