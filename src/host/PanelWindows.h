#pragma once

// The windows that a document, or the program itself, opened.

#include "host/Views.h"
#include "platform/Export.h"

#include <functional>
#include <memory>
#include <vector>

namespace kalvio {

// How a window comes up.
struct WindowPlace {
    int panel = -1; // the resource of one panel; -1: the whole window
    int show = -1;  // 0: not shown
    const CPoint* where = nullptr;
};

// The open window of a type and panel, moved to `where` (null: left where it is) in its own size; null when
// there is none. Asks the main window, with kMessageFindWindow.
[[nodiscard]] KALVIO_API CTypedFrameWnd* MoveOpenWindow(int type, int panel, const CPoint* where);

// Keeps every window that it opened until the user closes it, or until it goes itself. User-interface thread.
class KALVIO_API PanelWindows {
public:
    using ViewFactory = std::function<std::unique_ptr<CView>()>;

    PanelWindows();
    ~PanelWindows();
    PanelWindows(const PanelWindows&) = delete;
    PanelWindows& operator=(const PanelWindows&) = delete;

    // Opens one more window with a view of the factory and a title from the string table, under the wait
    // cursor; a settings view is initialised in it. Null when there is no factory, the factory makes no view,
    // the host no window or the view cannot be initialised (the factory and the view may also throw an int,
    // the string id of the reason); the user was told.
    CTypedFrameWnd* Open(const ViewFactory& factory, unsigned titleId, const WindowPlace& place = {});
    void CloseAll();
    // How many are open.
    [[nodiscard]] std::size_t Count() const { return m_panels.size(); }

private:
    struct Panel {
        std::unique_ptr<CTypedFrameWnd> frame;
        std::unique_ptr<CView> view; // goes first
    };
    class Sweeper;

    CTypedFrameWnd* Create(const ViewFactory& factory, unsigned titleId, const WindowPlace& place);
    void OnClosed(CTypedFrameWnd* frame);
    void DropClosed();

    std::vector<Panel> m_panels;
    std::vector<Panel> m_closed; // until no handler of theirs can run
    std::unique_ptr<Sweeper> m_sweeper;
};

} // namespace kalvio
